// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UserFolders.h"

#include <QTest>

#include <pwd.h>
#include <unistd.h>

using namespace lapsa;
using namespace Qt::StringLiterals;

class UserFolders_test final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theDataHomeIsUsedOnlyWhereItIsAbsolute_data();
    void theDataHomeIsUsedOnlyWhereItIsAbsolute();
    void bothHomesAreNamedOnce_data();
    void bothHomesAreNamedOnce();

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

QTEST_GUILESS_MAIN(UserFolders_test)
#include "UserFolders_test.moc"
