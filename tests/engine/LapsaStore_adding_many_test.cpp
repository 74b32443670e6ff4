// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QSet>
#include <QTest>

#include <utility>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// More than are put on the list in one turn of the main loop.
QStringList manyFiles(const TemporaryHome& home)
{
    QStringList paths;
    for (int number = 0; number < 4500; ++number) {
        paths << home.makeFile(u"many/%1"_s.arg(number), {});
    }
    return paths;
}

} // namespace

/// Adding so many files that it takes several turns of the main loop.
class LapsaStore_adding_many_test final : public QObject
{
    Q_OBJECT

private slots:

    /// Between two slices the main loop turns: what happens there must not put a file on the list twice.
    void manyFilesComeInSlicesInTheirOrder()
    {
        StoreWorld world;
        const QStringList paths = manyFiles(world.home);
        QStringList names;
        for (const QString& path : paths) {
            names << path.section(u'/', -1);
        }
        int told = 0;
        AddResult result;
        world.store().addFiles(urlsOf(paths), {}, [&](const AddResult& added) {
            ++told;
            result = added;
        });
        QVERIFY(world.store().items().size() < paths.size());
        QCOMPARE(told, 0);

        world.time.settle();
        QCOMPARE(world.listedNames(), names);
        QCOMPARE(told, 1);
        QCOMPARE(result.ids.size(), paths.size());
    }

    void whatIsAddedAndRemovedBetweenSlicesIsRespected()
    {
        StoreWorld world;
        const QStringList paths = manyFiles(world.home);
        QList<QUrl> urls = urlsOf(paths);
        const QUrl last = urls.takeLast();
        bool between = false;
        QObject::connect(&world.store(), &LapsaStore::willChange, &world.store(), [&] {
            if (!between && !world.store().items().isEmpty()) {
                between = true;
                world.time.async([&] {
                    world.store().addFiles({last, urls.last()}); // the latter comes again with its slice
                    world.store().removeFromList(world.store().items().first());
                    world.store().removeFromList(world.store().items().first());
                });
            }
        });
        world.store().addFiles(urls);
        world.time.settle();

        QVERIFY(between);
        const QStringList names = world.listedNames();
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
        QCOMPARE(names.size(), paths.size() - 2);
        QCOMPARE(names.first(), u"2"_s);
    }

    void theEndSavesWhatIsStillToCome()
    {
        StoreWorld world;
        const QStringList paths = manyFiles(world.home);
        bool ended = false;
        QObject::connect(&world.store(), &LapsaStore::willChange, &world.store(), [&] {
            if (!std::exchange(ended, true)) {
                world.time.async([&] {
                    QVERIFY(world.store().items().size() < paths.size());
                    world.store().saveNow();
                    QVERIFY(world.home.dataFile(u"state.json"_s).contains(R"("displayName" : "4499")"));
                });
            }
        });
        world.store().addFiles(urlsOf(paths));
        world.time.settle();

        QVERIFY(ended);
        QCOMPARE(world.store().items().size(), paths.size());
    }
};

QTEST_GUILESS_MAIN(LapsaStore_adding_many_test)
#include "LapsaStore_adding_many_test.moc"
