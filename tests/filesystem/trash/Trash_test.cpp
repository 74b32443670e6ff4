// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "HomeTrash.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <thread>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// The freedesktop trash of the home.
class Trash_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void everyKindOfEntryGoesIntoTheTrash_data();
    void everyKindOfEntryGoesIntoTheTrash();
    void theRecordSaysWhereItCameFromAndWhen();
    void equalNamesGetANumberBeforeTheExtension();
    void theSearchForAFreeNameGoesOnBehindTheLast();
    void everyThreadKnowsTheLastName();
    void aNameWithoutRoomForTheEndingIsShortened();
    void theTrashIsMadeForItsOwnerOnly();
    void aFailureLeavesTheFileAndNoRecord_data();
    void aFailureLeavesTheFileAndNoRecord();
    void theTrashItselfIsNotTrashed_data();
    void theTrashItselfIsNotTrashed();
    void theDesktopListsWhatWasTrashed();

private:
    [[nodiscard]] QByteArray contentAt(const QString& relative) const { return contentOf(m_home->path(relative)); }

    std::unique_ptr<TemporaryHome> m_home;
};

void Trash_test::everyKindOfEntryGoesIntoTheTrash_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("recorded");
    QTest::newRow("a file") << QByteArray("file.txt") << QByteArray("file.txt");
    QTest::newRow("a folder") << QByteArray("folder") << QByteArray("folder");
    QTest::newRow("a link to a folder") << QByteArray("link") << QByteArray("link");
    QTest::newRow("a dangling link") << QByteArray("dangling") << QByteArray("dangling");
    QTest::newRow("a line break") << QByteArray("a\nPath=b") << QByteArray("a%0APath%3Db");
    QTest::newRow("percent, quotes, backslash") << QByteArray("a%20 \"b\" \\") << QByteArray("a%2520%20%22b%22%20%5C");
    QTest::newRow("beyond ASCII") << QByteArray("\xc3\xa4\xe2\x82\xac") << QByteArray("%C3%A4%E2%82%AC");
}

void Trash_test::everyKindOfEntryGoesIntoTheTrash()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, recorded);
    const QString path = m_home->makeFolder(u"in"_s) + u'/' + QString::fromUtf8(name);
    if (name == "folder") {
        m_home->makeFile(u"in/folder/inside"_s);
    } else if (name == "link" || name == "dangling") {
        m_home->makeFile(u"target/precious"_s);
        QVERIFY(QFile::link(name == "link" ? u"../target"_s : u"nowhere"_s, path));
    } else {
        makeRawFile(path.toUtf8());
    }
    const auto before = treeAt(path);

    QCOMPARE(trash(path), 0);

    QVERIFY(treeAt(path).isEmpty());
    QCOMPARE(treeAt(m_home->path(trashedFiles + u'/' + QString::fromUtf8(name))), before);
    QVERIFY(
        contentAt(trashRecords + u'/' + QString::fromUtf8(name) + u".trashinfo"_s).contains("/in/" + recorded + '\n'));
    QVERIFY(name != "link" || rawNames(m_home->path(u"target"_s)) == QList<QByteArray>{"precious"});
}

void Trash_test::theRecordSaysWhereItCameFromAndWhen()
{
    const QString path = m_home->makeFile(u"a file.txt"_s);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);

    QCOMPARE(trash(path), 0);

    const QRegularExpression form(uR"(^\[Trash Info\]\nPath=(.*)\nDeletionDate=(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)\n$)"_s);
    const auto match = form.match(QString::fromUtf8(contentAt(trashRecords + u"/a file.txt.trashinfo"_s)));
    QVERIFY(match.hasMatch());
    QCOMPARE(match.captured(1), QString(path).replace(u' ', u"%20"_s));
    const QDateTime written = QDateTime::fromString(match.captured(2), Qt::ISODate);
    QVERIFY(before <= written && written <= QDateTime::currentDateTime());
}

void Trash_test::equalNamesGetANumberBeforeTheExtension()
{
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(trash(m_home->makeFile(u"in/%1/report.pdf"_s.arg(i))), 0);
        QCOMPARE(trash(m_home->makeFile(u"in/%1/.hidden"_s.arg(i))), 0);
    }
    // One that has no record, as another program may leave it.
    m_home->makeFile(trashedFiles + u"/orphan"_s);
    QCOMPARE(trash(m_home->makeFile(u"in/orphan"_s)), 0);

    const QStringList expected = {u".hidden"_s,  u".hidden.2"_s,    u".hidden.3"_s,    u"orphan"_s,
                                  u"orphan.2"_s, u"report.2.pdf"_s, u"report.3.pdf"_s, u"report.pdf"_s};
    QCOMPARE(m_home->names(trashedFiles), expected);
    QCOMPARE(m_home->names(trashRecords).size(), 7);
}

void Trash_test::theSearchForAFreeNameGoesOnBehindTheLast()
{
    constexpr int count = 5;
    for (int i = 0; i < count; ++i) {
        QCOMPARE(trash(m_home->makeFile(u"in/%1/same"_s.arg(i))), 0);
    }
    // A name that is free again is met by a search that starts anew each time, which many equal names cannot afford.
    QVERIFY(QFile::remove(m_home->path(trashedFiles + u"/same.2"_s)));
    QVERIFY(QFile::remove(m_home->path(trashRecords + u"/same.2.trashinfo"_s)));

    QCOMPARE(trash(m_home->makeFile(u"in/last/same"_s)), 0);

    const QStringList expected = {u"same"_s, u"same.3"_s, u"same.4"_s, u"same.5"_s, u"same.6"_s};
    QCOMPARE(m_home->names(trashedFiles), expected);
}

void Trash_test::everyThreadKnowsTheLastName()
{
    for (int i = 0; i < 3; ++i) {
        std::thread([&] { std::ignore = trash(m_home->makeFile(u"in/%1/each"_s.arg(i))); }).join();
    }
    QVERIFY(QFile::remove(m_home->path(trashedFiles + u"/each.2"_s)));
    QVERIFY(QFile::remove(m_home->path(trashRecords + u"/each.2.trashinfo"_s)));

    std::thread([&] { std::ignore = trash(m_home->makeFile(u"in/last/each"_s)); }).join();

    QCOMPARE(m_home->names(trashedFiles), (QStringList{u"each"_s, u"each.3"_s, u"each.4"_s}));
}

void Trash_test::aNameWithoutRoomForTheEndingIsShortened()
{
    const QString name = QString(127, QChar(0xE4)) + u'x'; // 255 bytes
    m_home->makeFolder(u"in"_s);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(trash(m_home->makeFile(u"in/"_s + name)), 0);
    }

    const QStringList names = m_home->names(trashedFiles);
    QCOMPARE(names.size(), 2);
    for (const QString& stored : names) {
        const QByteArray record = contentAt(trashRecords + u'/' + stored + u".trashinfo"_s);
        QVERIFY(record.contains("/in/" + name.toUtf8().toPercentEncoding() + '\n'));
    }
}

void Trash_test::theTrashIsMadeForItsOwnerOnly()
{
    QCOMPARE(trash(m_home->makeFile(u"a"_s)), 0);

    for (const QString& folder : {u".local/share/Trash"_s, trashedFiles, trashRecords}) {
        struct stat status = {};
        QCOMPARE(::stat(m_home->path(folder).toUtf8().constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0700U);
    }
}

void Trash_test::aFailureLeavesTheFileAndNoRecord_data()
{
    QTest::addColumn<QString>("withoutRight");
    QTest::addColumn<QString>("trashed");
    QTest::newRow("folder without write right") << u"in"_s << u"in/file"_s;
    QTest::newRow("folder that may not be written itself") << u"in/folder"_s << u"in/folder"_s;
    QTest::newRow("trash without write right for records") << u".local/share/Trash/info"_s << u"in/file"_s;
    QTest::newRow("trash without write right for files") << u".local/share/Trash/files"_s << u"in/file"_s;
}

void Trash_test::aFailureLeavesTheFileAndNoRecord()
{
    QFETCH(QString, withoutRight);
    QFETCH(QString, trashed);
    if (::geteuid() != 0) {
        QSKIP("acts as another user, which needs root");
    }
    m_home->makeFile(u"in/file"_s);
    m_home->makeFile(u"in/folder/inside"_s);
    m_home->makeFolder(trashedFiles);
    m_home->makeFolder(trashRecords);
    for (const QString& path : {u"."_s, u"in"_s, u"in/file"_s, u"in/folder"_s, u"in/folder/inside"_s, u".local"_s,
                                u".local/share"_s, u".local/share/Trash"_s, trashedFiles, trashRecords}) {
        giveToOrdinaryUser(m_home->path(path));
    }
    QCOMPARE(::chmod(m_home->path(withoutRight).toUtf8().constData(), 0555), 0);
    const auto before = treeAt(m_home->path(u"in"_s));

    QCOMPARE(asOrdinaryUser([&] { return trash(m_home->path(trashed)); }), EACCES);

    QCOMPARE(treeAt(m_home->path(u"in"_s)), before);
    QVERIFY(m_home->names(trashedFiles).isEmpty() && m_home->names(trashRecords).isEmpty());
}

void Trash_test::theTrashItselfIsNotTrashed_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("the trash") << u".local/share/Trash"_s;
    QTest::newRow("its files") << u".local/share/Trash/files"_s;
    QTest::newRow("its records") << u".local/share/Trash/info"_s;
    QTest::newRow("a folder above") << u".local/share"_s;
    QTest::newRow("one record") << u".local/share/Trash/info/a.trashinfo"_s;
}

void Trash_test::theTrashItselfIsNotTrashed()
{
    QFETCH(QString, path);
    QCOMPARE(trash(m_home->makeFile(u"a"_s)), 0);
    const auto before = treeAt(m_home->path(u".local"_s));

    QCOMPARE(trash(m_home->path(path)), EPERM);

    QCOMPARE(treeAt(m_home->path(u".local"_s)), before);
}

void Trash_test::theDesktopListsWhatWasTrashed()
{
    const QString list = QStandardPaths::findExecutable(u"trash-list"_s);
    const QString gio = QStandardPaths::findExecutable(u"gio"_s);
    if (list.isEmpty() && gio.isEmpty()) {
        QSKIP("neither trash-list (trash-cli) nor gio (libglib2.0-bin, gvfs-daemons) is installed");
    }
    const QString path = m_home->makeFile(u"in/100% \"odd\" %20 name"_s);
    QCOMPARE(trash(path), 0);

    QProcess reader;
    if (!list.isEmpty()) {
        reader.start(list, QStringList());
        QVERIFY(reader.waitForFinished());
        QVERIFY2(reader.readAllStandardOutput().contains(path.toUtf8()), reader.readAllStandardError().constData());
    }
    if (!gio.isEmpty()) {
        reader.start(u"dbus-run-session"_s, {u"--"_s, gio, u"trash"_s, u"--list"_s});
        QVERIFY(reader.waitForFinished());
        const QByteArray listed = reader.readAllStandardOutput();
        QVERIFY2(listed.contains(path.toUtf8()), (listed + reader.readAllStandardError()).constData());
    }
}

QTEST_GUILESS_MAIN(Trash_test)
#include "Trash_test.moc"
