// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddResult.h"
#include "Privileges.h"
#include "StoreSetup.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

using fileSystem::Refusal;

Q_DECLARE_METATYPE(lapsa::fileSystem::Refusal)

/// What is told to the one who adds, and what is not put on countdown.
class LapsaStore_adding_result_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void theIdsAreThoseOfTheItemsThatStartAnewInTheOrderOfTheAdd()
    {
        StoreWorld world;
        const QString listed = world.home.makeFile(u"listed.txt"_s);
        const QString fresh = world.home.makeFile(u"fresh.txt"_s);
        const LapsaItem before = world.add(listed);

        const AddResult result = world.added(urlsOf({fresh, world.home.path(u"missing"_s), listed, fresh}));

        const QString id = world.item(fresh).id;
        QCOMPARE(result, (AddResult{.ids = {id, before.id, id},
                                    .newFolders = {},
                                    .refused = {},
                                    .missing = {world.home.path(u"missing"_s)}}));
    }

    void aFolderIsNewOnce()
    {
        StoreWorld world;
        const QString folder = world.home.makeFolder(u"folder"_s);
        const QString link = world.home.path(u"link"_s);
        QVERIFY(QFile::link(folder, link));
        const QList<QUrl> urls = urlsOf({folder, world.home.makeFile(u"a.txt"_s), link, folder});

        QCOMPARE(world.added(urls).newFolders, QStringList({folder, link}));
        QCOMPARE(world.added(urls).newFolders, QStringList());
    }

    void whatMayNeverBeTakenIsNotAddedAndItsReasonIsTold_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<Refusal>("reason");

        QTest::newRow("the root") << u"/"_s << Refusal::Root;
        QTest::newRow("the home folder") << u"TOP/users/ada"_s << Refusal::Home;
        QTest::newRow("the home folder by a detour") << u"TOP/link/./ada/../ada/"_s << Refusal::Home;
        QTest::newRow("what holds the home folder") << u"TOP/users"_s << Refusal::HoldsHome;
        QTest::newRow("Lapsa's own folder") << u"TOP/data/Lapsa"_s << Refusal::ProtectedFolder;
        QTest::newRow("what holds Lapsa's own folder") << u"TOP/data"_s << Refusal::HoldsProtectedFolder;
        QTest::newRow("Recovery, which is a link") << u"TOP/data/Lapsa/Recovery"_s << Refusal::ProtectedFolder;
        QTest::newRow("the target of Recovery") << u"TOP/elsewhere/parked"_s << Refusal::ProtectedFolder;
        QTest::newRow("what holds the target of Recovery") << u"TOP/elsewhere"_s << Refusal::HoldsProtectedFolder;
    }

    void whatMayNeverBeTakenIsNotAddedAndItsReasonIsTold()
    {
        QFETCH(QString, path);
        QFETCH(const Refusal, reason);
        StoreWorld world(false);
        const QString top = world.home.path(u"."_s).chopped(2);
        world.home.makeFolder(u"users/ada"_s);
        world.home.makeFolder(u"data/Lapsa"_s);
        qputenv("HOME", world.home.path(u"users/ada"_s).toUtf8());
        qputenv("XDG_DATA_HOME", world.home.path(u"data"_s).toUtf8());
        QVERIFY(QFile::link(u"users"_s, world.home.path(u"link"_s)));
        QVERIFY(QFile::link(world.home.makeFolder(u"elsewhere/parked"_s), world.home.path(u"data/Lapsa/Recovery"_s)));
        world.start();
        const QString file = world.home.makeFile(u"users/ada/a.txt"_s);

        const AddResult result = world.added(urlsOf({path.replace(u"TOP"_s, top), file}));

        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
        QCOMPARE(result.ids, QStringList{world.item(file).id});
        QCOMPARE(result.newFolders, QStringList());
        QCOMPARE(result.refused.size(), 1);
        QCOMPARE(result.refused[0].reason, reason);
    }

    void theRefusedPathIsStandardised()
    {
        StoreWorld world;
        const QString home = world.home.path(u"."_s).chopped(2);

        const AddResult result = world.added(urlsOf({home + u"//folder/../"_s}));

        QCOMPARE(result.refused, QList({AddResult::Refused{.path = home, .reason = Refusal::Home}}));
    }

    void anAddOfWhichAllIsRefusedChangesNothing()
    {
        StoreWorld world;
        world.store().setLastMessage(u"said before"_s);
        QFile::remove(world.home.dataPath(u"state.json"_s));
        const QSignalSpy changes(&world.store(), &LapsaStore::willChange);

        world.added(urlsOf({u"/"_s}));
        world.letSavesPass();

        QCOMPARE(changes.size(), 0);
        QCOMPARE(world.store().lastMessage(), std::optional(u"said before"_s));
        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
    }

    void aMountPointIsRefusedAndAWatchedFolderPassesItOver()
    {
        if (!PrivateMounts::available()) {
            QSKIP("mounts file systems, which needs root");
        }
        StoreWorld world;
        PrivateMounts mounts;
        const QString disk = world.home.makeFolder(u"watched/disk"_s);
        const QString file = world.home.makeFile(u"watched/mounted.txt"_s);
        mounts.mountTemporary(disk);
        mounts.bind(world.home.makeFile(u"original.txt"_s), file);

        const AddResult result = world.added(urlsOf({disk, file, world.home.path(u"watched"_s)}));
        world.home.makeFile(u"watched/ordinary.txt"_s);
        world.changeSettings([&](LapsaSettings& settings) {
            settings.autoCleanFolders = {{.folderPath = world.home.path(u"watched"_s), .includeExistingFiles = true}};
        });
        world.store().scanAutoCleanFolders();

        QCOMPARE(result.refused, QList({AddResult::Refused{.path = disk, .reason = Refusal::MountPoint},
                                        AddResult::Refused{.path = file, .reason = Refusal::MountPoint},
                                        AddResult::Refused{.path = world.home.path(u"watched"_s),
                                                           .reason = Refusal::HoldsMountPoint}}));
        QCOMPARE(world.listedNames(), QStringList{u"ordinary.txt"_s});
    }

    void theResultsOfOneGestureAreOne()
    {
        AddResult result{.ids = {u"1"_s}, .newFolders = {u"/a"_s}, .refused = {{.path = u"/"_s}}};

        result.append({.ids = {u"2"_s}, .newFolders = {u"/b"_s}, .refused = {{.path = u"/c"_s}}});

        QCOMPARE(result, (AddResult{.ids = {u"1"_s, u"2"_s},
                                    .newFolders = {u"/a"_s, u"/b"_s},
                                    .refused = {{.path = u"/"_s}, {.path = u"/c"_s}}}));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_adding_result_test)

#include "LapsaStore_adding_result_test.moc"
