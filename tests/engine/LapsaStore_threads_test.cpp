// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SteeredDisk.h"
#include "TemporaryHome.h"
#include "ThreadWorld.h"

#include <QFile>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = ThreadWorld::patience;

} // namespace

/// The store with threads, where the lanes run when they like.
class LapsaStore_threads_test final : public QObject
{
    Q_OBJECT

private slots:

    void manyFilesGoAtOnce()
    {
        constexpr int files = 2000;
        ThreadWorld world;
        QStringList paths;
        for (int number = 0; number < files; ++number) {
            paths << m_home->makeFile(u"many/%1"_s.arg(number));
        }
        world.add(paths);
        QCOMPARE(world.store.items().size(), files);
        // Deleted by hand, each on its own, some at the same time as others are locked.
        const QList<LapsaItem> items = world.store.items();
        int done = 0;
        for (const LapsaItem& item : items) {
            world.store.deleteNow(item, [&done](const LapsaStore::Deletion&) { ++done; });
        }

        QTRY_COMPARE_WITH_TIMEOUT(done, files, patience);

        QVERIFY(world.store.items().isEmpty());
        QCOMPARE(world.store.recoveryItems().size(), files);
        QCOMPARE(world.copies(), files);
        QTRY_VERIFY_WITH_TIMEOUT(!world.store.isWorking(), patience);
    }

    void aLongCopyIsSeenAndStopped_data()
    {
        QTest::addColumn<bool>("folder");

        QTest::newRow("a file") << false;
        QTest::newRow("a folder") << true;
    }

    void aLongCopyIsSeenAndStopped()
    {
        QFETCH(const bool, folder);
        constexpr qint64 size = qint64(64) << 20;
        constexpr int files = 64;
        for (int number = 0; number < (folder ? files : 1); ++number) {
            m_home->makeFile(folder ? u"source/big/%1"_s.arg(number) : u"source/big"_s,
                             QByteArray(folder ? size / files : size, 'x'));
        }
        SteeredDisk disk(m_home->path(u"source"_s), m_home->path(u"disk"_s));
        ThreadWorld world;
        world.add({m_home->path(u"disk/big"_s)});
        const LapsaItem item = world.store.items().constFirst();
        disk.answerAfter(20ms);
        std::optional<LapsaStore::DeleteOutcome> outcome;
        world.store.deleteNow(item, [&outcome](const LapsaStore::Deletion& known) { outcome = known.outcome; });

        const auto isSeen = [&] {
            const std::optional<ItemWork> work = world.store.workOn(item.id);
            return work && work->kind == ItemWork::Kind::Moving && work->total == size;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isSeen() || outcome, patience);
        QVERIFY2(!outcome, "the copy was not seen");
        world.store.lockItem(item.id);
        QTRY_VERIFY_WITH_TIMEOUT(outcome, patience);

        QCOMPARE(*outcome, LapsaStore::DeleteOutcome::Stopped);
        QCOMPARE(m_home->names(folder ? u"source/big"_s : u"source"_s).size(), folder ? files : 1);
        QCOMPARE(world.copies(), 0);
        QCOMPARE(world.store.items().size(), 1);
        QVERIFY(world.store.recoveryItems().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!world.store.isWorking(), patience);
    }

    void aDeadDiskHoldsUpItsOwnFilesOnly()
    {
        m_home->makeFile(u"source/a"_s);
        m_home->makeFile(u"source/b"_s);
        SteeredDisk disk(m_home->path(u"source"_s), m_home->path(u"disk"_s));
        QVERIFY(QFile::link(m_home->path(u"disk"_s), m_home->path(u"link"_s)));
        ThreadWorld world;
        // The link leads into the disk, but its text does not show that.
        world.add({m_home->path(u"disk/a"_s), m_home->path(u"link/b"_s), m_home->makeFile(u"here"_s)});
        const QList<LapsaItem> items = world.store.items();
        QCOMPARE(items.size(), 3);
        disk.stopAnswering();
        int done = 0;
        for (const LapsaItem& item : items) {
            world.store.deleteNow(item, [&done](const LapsaStore::Deletion&) { ++done; });
        }

        const auto waits = [&](const LapsaItem& item) {
            const std::optional<ItemWork> work = world.store.workOn(item.id);
            return work && work->kind == ItemWork::Kind::WaitingForDisk;
        };
        QTRY_VERIFY_WITH_TIMEOUT(done == 1 && waits(items[0]) && waits(items[1]), patience);
        QCOMPARE(world.store.items(), items.first(2));
        world.add({m_home->makeFile(u"there"_s)}); // the dead disk does not hold up an add

        disk.answerAgain();
        QTRY_COMPARE_WITH_TIMEOUT(done, 3, patience);
        QTRY_VERIFY_WITH_TIMEOUT(!world.store.isWorking(), patience);
        QCOMPARE(world.store.items().size(), 1);
        QCOMPARE(world.copies(), 3);
    }

    void aLockedItemOfADeadDiskHoldsUpNothingElse()
    {
        m_home->makeFile(u"source/locked"_s);
        SteeredDisk disk(m_home->path(u"source"_s), m_home->path(u"disk"_s));
        ThreadWorld world;
        world.add({m_home->path(u"disk/locked"_s), m_home->makeFile(u"here"_s)});
        world.store.lockItem(world.store.items().constFirst().id);
        disk.stopAnswering();
        bool done = false;
        world.store.deleteNow(world.store.items().constLast(), [&done](const LapsaStore::Deletion&) { done = true; });

        QTRY_VERIFY_WITH_TIMEOUT(done, patience);
        QCOMPARE(world.store.items().size(), 1);
        disk.answerAgain();
    }

    void init()
    {
        if (!SteeredDisk::available()) {
            QSKIP("needs a file system of its own");
        }
        m_home.emplace();
    }

private:
    std::optional<TemporaryHome> m_home;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_threads_test)
#include "LapsaStore_threads_test.moc"
