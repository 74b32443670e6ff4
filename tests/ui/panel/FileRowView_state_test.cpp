// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "PanelWorld.h"

#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What a row says of the state of its item.
class FileRowView_state_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void theRemainingTimeIsRoundedUp_data();
    void theRemainingTimeIsRoundedUp();
    void aLockedItemReadsLockedInOrange();
    void theRemainingTimeIsSecondaryHoweverLittleIsLeft();
    void aFileThatSomebodyWritesToReadsInUse_data();
    void aFileThatSomebodyWritesToReadsInUse();
};

namespace {

using test::PanelWorld;

LapsaItem itemExpiringIn(std::chrono::microseconds remaining)
{
    return {.id = u"A"_s, .path = u"/x"_s, .displayName = u"x"_s, .addedAt = {}, .expiresAt = TimePoint{remaining}};
}

ElidedLabel& label(const QWidget& row, qsizetype index)
{
    return *row.findChildren<ElidedLabel*>().at(index);
}

/// What the first row says of its item once everything due has been done.
QString stateOf(PanelWorld& world)
{
    PanelWorld::settle();
    return label(world.row(0), 1).text();
}

} // namespace

void FileRowView_state_test::theRemainingTimeIsRoundedUp_data()
{
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("59 seconds are a minute") << qint64(59000) << u"1min left"_s;
    QTest::newRow("30 seconds are a minute") << qint64(30000) << u"1min left"_s;
    QTest::newRow("60 seconds are a minute") << qint64(60000) << u"1min left"_s;
    QTest::newRow("a fraction of a second is dropped first") << qint64(60999) << u"1min left"_s;
    QTest::newRow("61 seconds are two minutes") << qint64(61000) << u"2min left"_s;
    QTest::newRow("an overdue item has a minute") << qint64(-100000) << u"1min left"_s;
    QTest::newRow("days and hours") << qint64(90000) * 1000 << u"1d 1h left"_s;
}

void FileRowView_state_test::theRemainingTimeIsRoundedUp()
{
    QFETCH(const qint64, milliseconds);
    QFETCH(const QString, text);

    QCOMPARE(FileRowView::remainingText(itemExpiringIn(std::chrono::milliseconds(milliseconds)), TimePoint{}), text);
}

void FileRowView_state_test::aLockedItemReadsLockedInOrange()
{
    PanelWorld world;
    world.store().toggleLock(world.addItem(u"a.txt"_s));
    PanelWorld::settle();

    const ElidedLabel& remaining = label(world.row(0), 1);
    QCOMPARE(remaining.text(), u"locked"_s);
    QCOMPARE(remaining.role(), ColorRole::Notice);
}

void FileRowView_state_test::theRemainingTimeIsSecondaryHoweverLittleIsLeft()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s, 1);
    world.addItem(u"b.txt"_s, 500000);

    QCOMPARE(label(world.row(0), 1).role(), ColorRole::Secondary);
    QCOMPARE(label(world.row(1), 1).role(), ColorRole::Secondary);
}

void FileRowView_state_test::aFileThatSomebodyWritesToReadsInUse_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("inUse");
    QTest::addColumn<QString>("locked");
    QTest::addColumn<QString>("left");
    QTest::newRow("English") << QByteArray("C.UTF-8") << u"In use"_s << u"locked"_s << u"10min left"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"In uso"_s << u"bloccato"_s << u"10min rimanenti"_s;
}

void FileRowView_state_test::aFileThatSomebodyWritesToReadsInUse()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, inUse);
    QFETCH(const QString, locked);
    QFETCH(const QString, left);
    const test::Language language(locale.constData());
    PanelWorld world;
    // On another file system than Recovery, so that it has to be copied.
    const QTemporaryDir disk(u"/dev/shm/lapsa-XXXXXX"_s);
    if (!disk.isValid() || QStorageInfo(disk.path()) == QStorageInfo(world.home.path({}))) {
        QSKIP("a second file system at /dev/shm is needed");
    }
    QFile film(disk.filePath(u"film.mkv"_s));
    QVERIFY(film.open(QIODevice::WriteOnly));
    const LapsaItem item = world.add(film.fileName(), 1);
    QVERIFY(stateOf(world) != inUse);

    world.time.advance(2min);
    world.store().deleteExpiredItems();
    QCOMPARE(stateOf(world), inUse);
    QCOMPARE(label(world.row(0), 1).role(), ColorRole::Secondary);
    QCOMPARE(world.row(0).accessibleDescription(), inUse);

    world.store().toggleLock(item);
    QCOMPARE(stateOf(world), locked);
    world.store().toggleLock(item);
    QCOMPARE(stateOf(world), inUse);
    world.store().updateExpiration(item, 10);
    QCOMPARE(stateOf(world), left);

    film.close();
    world.time.advance(10min);
    world.store().deleteExpiredItems();
    PanelWorld::settle();
    QVERIFY(world.list().visibleRows().isEmpty());
}

QTEST_MAIN(FileRowView_state_test)
#include "FileRowView_state_test.moc"
