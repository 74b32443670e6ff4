// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "Drops.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "PanelWorld.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// What is dragged onto the panel.
class LapsaPanelView_dropping_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void threeDroppedFilesAreAddedOneByOneInTheirOrder();
    void aDropThatIsNoFileIsAcceptedAndAddsNothing_data();
    void aDropThatIsNoFileIsAcceptedAndAddsNothing();
    void theZoneIsHighlightedWhileSomethingIsDraggedOverIt();
};

namespace {

using test::PanelWorld;

DropZone& zone(PanelWorld& world)
{
    return *world.panel.findChild<DropZone*>();
}

} // namespace

void LapsaPanelView_dropping_test::threeDroppedFilesAreAddedOneByOneInTheirOrder()
{
    PanelWorld world;
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& name : {u"b.txt"_s, u"c.txt"_s, u"a.txt"_s}) {
        urls.push_back(QUrl::fromLocalFile(world.home.makeFile(name)));
    }
    data.setUrls(urls);
    // One announcement for each call, however many files are in it: the sizes of the list seen are those before each.
    QList<qsizetype> before;
    connect(&world.store(), &LapsaStore::willChange, this, [&] { before.push_back(world.store().items().size()); });

    QVERIFY(test::drop(zone(world), data));
    PanelWorld::settle();

    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s, u"a.txt"_s}));
    QVERIFY(before.contains(0) && before.contains(1) && before.contains(2));
    QCOMPARE(world.row(0).item().displayName, u"b.txt"_s);
}

void LapsaPanelView_dropping_test::aDropThatIsNoFileIsAcceptedAndAddsNothing_data()
{
    QTest::addColumn<QString>("uriList");
    QTest::newRow("plain text") << QString();
    QTest::newRow("an address of the web") << u"https://example.org/a.txt"_s;
    QTest::newRow("a file that has vanished") << u"file:///nowhere/at/all.txt"_s;
    QTest::newRow("an address without a scheme") << u"/etc/hostname"_s;
}

void LapsaPanelView_dropping_test::aDropThatIsNoFileIsAcceptedAndAddsNothing()
{
    QFETCH(const QString, uriList);
    PanelWorld world;
    QMimeData data;
    data.setText(u"some text"_s);
    if (!uriList.isEmpty()) {
        data.setData(u"text/uri-list"_s, uriList.toUtf8());
    }

    QVERIFY(test::drop(zone(world), data));

    QVERIFY(world.store().items().isEmpty());
}

void LapsaPanelView_dropping_test::theZoneIsHighlightedWhileSomethingIsDraggedOverIt()
{
    PanelWorld world;
    QMimeData data;
    const QRgb rest = zone(world).grab().toImage().pixel(30, 60);
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&zone(world), &enter);

    const QRgb dragged = zone(world).grab().toImage().pixel(30, 60);
    QCOMPARE(rest, DropZone::lookFor(false, 0, world.panel.palette()).fill.rgb());
    QCOMPARE(dragged, DropZone::lookFor(true, 0, world.panel.palette()).fill.rgb());
    QCOMPARE(DropZone::lookFor(true, 0, world.panel.palette()).border.color(),
             themeColor(ColorRole::Accent, world.panel.palette()));
    QDragLeaveEvent leave;
    QApplication::sendEvent(&zone(world), &leave);
    QCOMPARE(zone(world).grab().toImage().pixel(30, 60), rest);
}

QTEST_MAIN(LapsaPanelView_dropping_test)
#include "LapsaPanelView_dropping_test.moc"
