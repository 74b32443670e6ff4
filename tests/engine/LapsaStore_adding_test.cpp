// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// An item of a file, as the state file holds it.
QByteArray expiredRecord(const QByteArray& id, const QString& path)
{
    return R"({"addedAt":"2026-01-01T00:00:00Z","displayName":"x","expiresAt":"2026-01-02T00:00:00Z",)"
           R"("fiveMinuteWarningSent":true,"locked":false,"id":")" +
           id + R"(","path":")" + path.toUtf8() + "\"}";
}

} // namespace

class LapsaStore_adding_test final : public QObject
{
    Q_OBJECT

private slots:

    void anAddedFileIsAnItemAtTheEndOfTheList()
    {
        StoreWorld world;
        const QString path = world.home.makeFile(u"report.odt"_s);
        world.add(world.home.makeFile(u"first.odt"_s));

        world.store().addFiles(urlsOf({path}));

        QCOMPARE(world.listedNames(), QStringList({u"first.odt"_s, u"report.odt"_s}));
        const LapsaItem item = world.store().items().last();
        QCOMPARE(item.path, path);
        QCOMPARE(item.addedAt, world.time.now());
        QCOMPARE(item.expiresAt, world.time.now() + 120min);
        QVERIFY(!item.locked);
        QVERIFY(!item.fiveMinuteWarningSent);
        QCOMPARE(item.id, item.id.toUpper());
        QCOMPARE(item.id.size(), 36);
    }

    void theListIsSaved300MillisecondsAfterAnAdd()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s));

        world.time.advance(299ms);
        QCOMPARE(world.home.dataFile(u"state.json"_s), QByteArray("[]\n"));
        world.time.advance(1ms);
        QVERIFY(world.home.dataFile(u"state.json"_s).contains("\"displayName\" : \"a.txt\""));
    }

    void addingTheSameFileTwiceKeepsOneItem()
    {
        StoreWorld world;
        world.changeSettings([](LapsaSettings& settings) {
            settings.fileTypeRules = {{.extensionsCSV = u"txt"_s, .lifespanMinutes = 30}};
        });
        const QString path = world.home.makeFile(u"a.txt"_s);
        LapsaItem before = world.add(path, 10);
        world.store().markWarningSent(before.id);
        world.time.advance(5min);

        world.store().addFiles(urlsOf({path}));

        before.expiresAt = world.time.now() + 30min;
        QCOMPARE(world.store().items(), QList{before});
    }

    void theSameFileTwiceInOneAddIsOneItem()
    {
        StoreWorld world;
        const QString path = world.home.makeFile(u"a.txt"_s);

        world.store().addFiles(urlsOf({path, world.home.makeFile(u"b.txt"_s), path}));

        QCOMPARE(world.listedNames(), QStringList({u"a.txt"_s, u"b.txt"_s}));
    }

    void addingALockedItemAgainLeavesItLocked()
    {
        StoreWorld world;
        const QString path = world.home.makeFile(u"a.txt"_s);
        world.store().toggleLock(world.add(path, 10));
        world.time.advance(5min);

        world.store().addFiles(urlsOf({path}));

        QVERIFY(world.item(path).locked);
        QCOMPARE(world.item(path).expiresAt, world.time.now() + 120min);
    }

    void ofTwoItemsWithTheSamePathTheFirstIsRefreshed()
    {
        StoreWorld world(false);
        const QString path = world.home.makeFile(u"a.txt"_s);
        world.home.writeDataFile(u"state.json"_s,
                                 '[' + expiredRecord("1", path) + ',' + expiredRecord("2", path) + ']');
        world.start();
        const LapsaItem second = world.store().items().at(1);

        for (const QStringList& paths : {QStringList{path}, QStringList{path, path}}) {
            world.store().addFiles(urlsOf(paths));

            QCOMPARE(world.store().items().size(), 2);
            QCOMPARE(world.store().items().first().expiresAt, world.time.now() + 120min);
            QCOMPARE(world.store().items().at(1), second);
        }
    }

    void aListInWhichNothingExistsChangesNothing()
    {
        StoreWorld world;
        world.store().setLastMessage(u"message"_s);
        QSignalSpy announcements(&world.store(), &LapsaStore::willChange);
        QFile::remove(world.home.dataPath(u"state.json"_s));

        world.store().addFiles(urlsOf({world.home.path(u"missing"_s)}));
        world.store().addFiles({});
        world.letSavesPass();

        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(world.store().lastMessage(), std::optional(u"message"_s));
        QCOMPARE(announcements.size(), 0);
        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
    }

    void anAddClearsTheMessage()
    {
        StoreWorld world;
        world.store().setLastMessage(u"message"_s);

        world.add(world.home.makeFile(u"a.txt"_s));

        QCOMPARE(world.store().lastMessage(), std::nullopt);
    }

    void whatDoesNotExistIsSkippedAndTheRestIsAddedInOrder()
    {
        StoreWorld world;
        const QString dangling = world.home.path(u"dangling"_s);
        QVERIFY(QFile::link(world.home.path(u"nowhere"_s), dangling));

        world.store().addFiles(urlsOf(
            {world.home.makeFile(u"b"_s), world.home.path(u"missing"_s), dangling, world.home.makeFile(u"a"_s)}));

        QCOMPARE(world.listedNames(), QStringList({u"b"_s, u"a"_s}));
    }

    void pathsAreComparedToTheLetter()
    {
        StoreWorld world;

        world.store().addFiles(urlsOf({world.home.makeFile(u"A.txt"_s), world.home.makeFile(u"a.txt"_s)}));

        QCOMPARE(world.store().items().size(), 2);
    }

    void aPathIsStandardisedButItsLinksAreKept()
    {
        StoreWorld world;
        const QString path = world.home.makeFile(u"folder/a.txt"_s);
        QVERIFY(QFile::link(world.home.path(u"folder"_s), world.home.path(u"link"_s)));

        world.store().addFiles(urlsOf({world.home.path(u"folder/./sub/../a.txt"_s), world.home.path(u"folder//a.txt"_s),
                                       world.home.path(u"link/a.txt"_s)}));

        QCOMPARE(world.store().items().size(), 2);
        QCOMPARE(world.store().items().at(0).path, path);
        QCOMPARE(world.store().items().at(1).path, world.home.path(u"link/a.txt"_s));
    }

    void oddNamesAreAddedAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");

        QTest::newRow("a line break") << u"a\nb.txt"_s;
        QTest::newRow("a percent sign") << u"100%25 %s.txt"_s;
        QTest::newRow("quotes") << u"\"it's\".txt"_s;
        QTest::newRow("a backslash") << u"a\\b.txt"_s;
        QTest::newRow("a hash and a question mark") << u"#1?.txt"_s;
        QTest::newRow("255 bytes") << QString(251, u'x') + u".txt"_s;
        QTest::newRow("beyond ASCII") << u"verrà 漢字 🗂.txt"_s;
        QTest::newRow("a leading dash") << u"-style"_s;
        QTest::newRow("blanks at both ends") << u" a "_s;
    }

    void oddNamesAreAddedAsTheyAre()
    {
        QFETCH(QString, name);
        StoreWorld world;
        const QString path = world.home.makeFile(u"folder/"_s + name);

        world.store().addFiles(urlsOf({path}));
        world.letSavesPass();
        const QList<LapsaItem> items = world.store().items();
        world.start();

        QCOMPARE(world.item(path).displayName, name);
        QCOMPARE(world.item(path).id, items.first().id);
    }

    void aNameThatIsNotUtf8IsSkippedAndNotTakenForAnother()
    {
        StoreWorld world;
        const QByteArray folder = world.home.makeFolder(u"folder"_s).toUtf8();
        const QByteArray path = folder + "/caf\xE9";
        const int created = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(created >= 0);
        ::close(created);
        world.home.makeFile(u"folder/caf\uFFFD"_s);

        world.store().addFiles({QUrl::fromEncoded("file://" + folder + "/caf%E9")});

        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(::unlink(path.constData()), 0); // still there; Qt could not clear it away
    }

    void whatIsNoLocalFileIsSkipped()
    {
        StoreWorld world;
        const QString path = world.home.makeFile(u"a.txt"_s);

        world.store().addFiles({QUrl(u"https://example.org"_s + path), QUrl(u"file://elsewhere"_s + path),
                                QUrl(u"trash:///a.txt"_s), QUrl(), QUrl::fromLocalFile(u"a.txt"_s)});

        QVERIFY(world.store().items().isEmpty());
    }
};

QTEST_GUILESS_MAIN(LapsaStore_adding_test)

#include "LapsaStore_adding_test.moc"
