// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UserFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <thread>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

std::atomic<int> databaseLookups = 0;

} // namespace

/// Counts, then asks the system's.
extern "C" int getpwuid_r(uid_t user, passwd* entry, char* buffer, std::size_t size, passwd** found)
{
    ++databaseLookups;
    using LookUp = int (*)(uid_t, passwd*, char*, std::size_t, passwd**);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): what dlsym(3) is for
    return reinterpret_cast<LookUp>(::dlsym(RTLD_NEXT, "getpwuid_r"))(user, entry, buffer, size, found);
}

class UserFolders_test final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theDataHomeIsUsedOnlyWhereItIsAbsolute_data();
    void theDataHomeIsUsedOnlyWhereItIsAbsolute();
    void bothHomesAreNamedOnce_data();
    void bothHomesAreNamedOnce();
    void allThreadsAskTheUserDatabaseOnce();
    void downloadsAreWhereTheDesktopHasThem_data();
    void downloadsAreWhereTheDesktopHasThem();

private:
    const QString m_database = QString::fromUtf8(::getpwuid(::getuid())->pw_dir);
};

void UserFolders_test::init()
{
    qputenv("HOME", "/home/somebody");
    qunsetenv("XDG_DATA_HOME");
}

void UserFolders_test::theDataHomeIsUsedOnlyWhereItIsAbsolute_data()
{
    QTest::addColumn<QByteArray>("dataHome");
    QTest::addColumn<QString>("folder");
    QTest::newRow("not set") << QByteArray() << u"/home/somebody/.local/share"_s;
    QTest::newRow("empty") << QByteArray("") << u"/home/somebody/.local/share"_s;
    QTest::newRow("relative") << QByteArray("data") << u"/home/somebody/.local/share"_s;
    QTest::newRow("no text") << QByteArray("/data\xff") << u"/home/somebody/.local/share"_s;
    QTest::newRow("absolute") << QByteArray("/data") << u"/data"_s;
    QTest::newRow("with more slashes and dots") << QByteArray("//data/./home/") << u"/data/home"_s;
}

void UserFolders_test::theDataHomeIsUsedOnlyWhereItIsAbsolute()
{
    QFETCH(QByteArray, dataHome);
    QFETCH(QString, folder);
    if (!dataHome.isNull()) {
        qputenv("XDG_DATA_HOME", dataHome);
    }

    QCOMPARE(userFolders::applicationSupport(), QStringList{folder});
}

void UserFolders_test::bothHomesAreNamedOnce_data()
{
    QTest::addColumn<QByteArray>("home");
    QTest::addColumn<QStringList>("homes");
    QTest::newRow("another one") << QByteArray("/home/somebody/") << QStringList{u"/home/somebody"_s, m_database};
    QTest::newRow("the same") << m_database.toUtf8() << QStringList{m_database};
    QTest::newRow("relative") << QByteArray("somebody") << QStringList{m_database};
    QTest::newRow("empty") << QByteArray("") << QStringList{m_database};
}

void UserFolders_test::bothHomesAreNamedOnce()
{
    QFETCH(QByteArray, home);
    QFETCH(QStringList, homes);
    qputenv("HOME", home);

    QCOMPARE(userFolders::home(), homes);
    QVERIFY(userFolders::applicationSupport().first().startsWith(homes.first()));
}

void UserFolders_test::allThreadsAskTheUserDatabaseOnce()
{
    const QStringList homes = userFolders::home();
    databaseLookups = 0;

    for (int i = 0; i < 3; ++i) {
        QStringList found;
        std::thread([&] { found = userFolders::home(); }).join();
        QCOMPARE(found, homes);
    }

    QCOMPARE(databaseLookups, 0);
}

void UserFolders_test::downloadsAreWhereTheDesktopHasThem_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("folder");
    QTest::newRow("nothing said, and there is one") << QByteArray() << u"/Downloads"_s;
    QTest::newRow("another name") << QByteArray("$HOME/Scaricati") << u"/Scaricati"_s;
    QTest::newRow("one that does not exist") << QByteArray("$HOME/Gone") << QString();
    QTest::newRow("the home folder itself") << QByteArray("$HOME/") << QString();
}

void UserFolders_test::downloadsAreWhereTheDesktopHasThem()
{
    QFETCH(QByteArray, entry);
    QFETCH(QString, folder);
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qunsetenv("XDG_CONFIG_HOME");
    QVERIFY(QDir(home.path()).mkpath(u"Downloads"_s) && QDir(home.path()).mkpath(u"Scaricati"_s) &&
            QDir(home.path()).mkpath(u".config"_s));
    QFile file(home.filePath(u".config/user-dirs.dirs"_s));
    if (!entry.isEmpty()) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("XDG_DOWNLOAD_DIR=\"" + entry + "\"\n");
        file.close();
    }

    QCOMPARE(userFolders::downloads(), folder.isEmpty() ? QString() : home.path() + folder);
}

QTEST_GUILESS_MAIN(UserFolders_test)
#include "UserFolders_test.moc"
