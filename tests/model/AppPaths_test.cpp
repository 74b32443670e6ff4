// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <tuple>

using namespace lapsa;
using namespace Qt::StringLiterals;

class AppPaths_test final : public QObject
{
    Q_OBJECT

private slots:

    void everythingLiesInTheDataFolder()
    {
        const test::TemporaryHome home;

        QCOMPARE(AppPaths::applicationSupportDirectory(), QUrl::fromLocalFile(home.dataPath()));
        QCOMPARE(AppPaths::recoveryDirectory(), QUrl::fromLocalFile(home.dataPath(u"Recovery"_s)));
        QCOMPARE(AppPaths::settingsURL(), QUrl::fromLocalFile(home.dataPath(u"settings.json"_s)));
        QCOMPARE(AppPaths::stateURL(), QUrl::fromLocalFile(home.dataPath(u"state.json"_s)));
        QCOMPARE(AppPaths::recoveryStateURL(), QUrl::fromLocalFile(home.dataPath(u"recovery.json"_s)));
    }

    void askingForAFileMakesTheFolderButNotTheFile()
    {
        const test::TemporaryHome home;

        std::ignore = AppPaths::settingsURL();

        QVERIFY(QFileInfo(home.dataPath()).isDir());
        QCOMPARE(home.names(u".local/share/Lapsa"_s), QStringList());
    }

    void theFoldersAreForTheUserAlone()
    {
        const test::TemporaryHome home;
        constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser |
                                   QFile::WriteUser | QFile::ExeUser;

        std::ignore = AppPaths::recoveryDirectory();

        QCOMPARE(QFileInfo(home.dataPath()).permissions(), ownerOnly);
        QCOMPARE(QFileInfo(home.dataPath(u"Recovery"_s)).permissions(), ownerOnly);
    }

    void aFolderThatCannotBeMadeIsNamedAllTheSame()
    {
        const test::TemporaryHome home;
        home.makeFile(u".local"_s, "in the way");

        QCOMPARE(AppPaths::recoveryDirectory(), QUrl::fromLocalFile(home.dataPath(u"Recovery"_s)));
        QVERIFY(!QFileInfo::exists(home.dataPath()));
    }

    void theLocationFollowsTheEnvironmentAtEachUse()
    {
        const test::TemporaryHome home;
        std::ignore = AppPaths::applicationSupportDirectory();

        qputenv("XDG_DATA_HOME", home.path(u"elsewhere"_s).toUtf8());

        QCOMPARE(AppPaths::stateURL(), QUrl::fromLocalFile(home.path(u"elsewhere/Lapsa/state.json"_s)));
    }
};

QTEST_GUILESS_MAIN(AppPaths_test)

#include "AppPaths_test.moc"
