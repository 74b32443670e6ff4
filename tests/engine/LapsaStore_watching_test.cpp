// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"
#include "CleanupService.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QFile>
#include <QTest>

#include <dirent.h>
#include <dlfcn.h>

#include <cerrno>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// After so many entries a listing fails; never while it is negative.
int entriesUntilFailure = -1;

void watch(test::StoreWorld& world, const QString& path)
{
    world.changeSettings([&](LapsaSettings& settings) {
        settings.autoCleanFolders.push_back({.folderPath = path, .includeExistingFiles = true});
    });
}

} // namespace

/// Stands in the place of the system's, and fails as a disk does that is pulled out in the middle.
extern "C" dirent* readdir(DIR* folder)
{
    using ReadDir = dirent* (*)(DIR*);
    static const auto real = reinterpret_cast<ReadDir>(::dlsym(RTLD_NEXT, "readdir"));
    if (entriesUntilFailure == 0) {
        errno = EIO;
        return nullptr;
    }
    entriesUntilFailure -= entriesUntilFailure > 0 ? 1 : 0;
    return real(folder);
}

class LapsaStore_watching_test final : public QObject
{
    Q_OBJECT

private slots:

    void cleanup() { entriesUntilFailure = -1; }

    void aListingThatFailsInTheMiddleAddsNothing()
    {
        test::StoreWorld world;
        for (const QString& name : {u"watched/a"_s, u"watched/b"_s, u"watched/c"_s}) {
            world.home.makeFile(name);
        }
        watch(world, world.home.path(u"watched"_s));
        entriesUntilFailure = 4; // among them "." and ".."

        world.store().scanAutoCleanFolders();
        QCOMPARE(entriesUntilFailure, 0);
        QCOMPARE(world.listedNames(), QStringList());

        entriesUntilFailure = -1;
        world.store().scanAutoCleanFolders();
        QCOMPARE(world.store().items().size(), 3);
    }

    void aFolderThatCouldNotBeListedIsLookedAtAgain()
    {
        test::StoreWorld world;
        watch(world, world.home.path(u"later"_s));
        world.store().scanAutoCleanFolders();
        QCOMPARE(world.listedNames(), QStringList());

        world.home.makeFile(u"later/a.txt"_s);
        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
    }

    void aRuleWithDoubledSlashesMeansAFolderOfThisMachine()
    {
        test::StoreWorld world;
        const QString file = world.home.makeFile(u"watched/a.txt"_s);
        watch(world, u'/' + world.home.path(u"watched/"_s));

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.store().items().size(), 1);
        QCOMPARE(world.store().items().first().path, file);
    }

    void aPausedPassWithAWatchedFolderAddsNothing()
    {
        test::StoreWorld world;
        test::RecordingWarnings warnings;
        CleanupService service(world.store(), warnings, {.clock = world.time, .mainQueue = world.time});
        world.home.makeFile(u"watched/a.txt"_s);
        watch(world, world.home.path(u"watched"_s));
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });

        service.tick();
        QCOMPARE(world.listedNames(), QStringList());

        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = false; });
        service.tick();
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
    }

    void twoSpellingsOfAFileAreTwoItems()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        test::StoreWorld world;
        const auto disk = test::CaselessDisk::mountedAt(world.home.path(u"volume"_s));
        if (!disk) {
            QSKIP("The system has no exFAT");
        }
        const QString file = world.home.makeFile(u"volume/A.txt"_s);
        const QString other = world.home.path(u"volume/a.txt"_s);
        QVERIFY(QFile::exists(other));

        world.store().addFiles({QUrl::fromLocalFile(file), QUrl::fromLocalFile(other)});

        QCOMPARE(world.listedNames(), QStringList({u"A.txt"_s, u"a.txt"_s}));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_watching_test)

#include "LapsaStore_watching_test.moc"
