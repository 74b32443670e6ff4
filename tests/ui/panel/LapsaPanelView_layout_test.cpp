// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "PanelWorld.h"
#include "RowIconButton.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// Where everything stands, and how large it is.
class LapsaPanelView_layout_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void everythingStandsAtItsPlace();
    void theTitleAndTheTextsHaveTheirSizes();
    void theGroundIsTheThemesInLightAndDark();
    void atTwiceTheTextSizeNothingIsCutOff();
    void fromRightToLeftThePanelIsMirrored();
};

namespace {

using test::named;
using test::PanelWorld;

DropZone& zone(PanelWorld& world)
{
    return *world.panel.findChild<DropZone*>();
}

QRect placeOf(const PanelWorld& world, const QWidget& widget)
{
    return {widget.mapTo(&world.panel, QPoint()), widget.size()};
}

} // namespace

void LapsaPanelView_layout_test::everythingStandsAtItsPlace()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.addItem(u"b.txt"_s);

    const QRect gear = placeOf(world, *world.panel.findChild<SymbolButton*>());
    const QRect title = placeOf(world, *world.panel.findChildren<TextLabel*>().first());
    const QRect drops = placeOf(world, zone(world));
    const QRect list = placeOf(world, world.list());
    QCOMPARE(world.panel.size(), QSize(430, 560));
    QCOMPARE(world.panel.windowTitle(), u"Lapsa"_s);
    QCOMPARE(gear.size(), QSize(36, 36));
    QCOMPARE(gear.right() + 1, 430 - 24);
    QCOMPARE(gear.top(), 24);
    QCOMPARE(title.left(), 24);
    QCOMPARE(drops.left(), 24);
    QCOMPARE(drops.width(), 430 - 2 * 24);
    QVERIFY(drops.height() >= 126);
    QCOMPARE(drops.top(), 24 + 36 + 18);
    QCOMPARE(list.left(), 24);
    QCOMPARE(list.width(), 382);
    QCOMPARE(list.bottom() + 1, 560 - 24);
    QCOMPARE(world.row(1).y() - world.row(0).geometry().bottom() - 1, 10);
}

void LapsaPanelView_layout_test::theTitleAndTheTextsHaveTheirSizes()
{
    PanelWorld world;
    const auto labels = world.panel.findChildren<TextLabel*>();

    QCOMPARE(labels.at(0)->text(), u"Lapsa"_s);
    QCOMPARE(labels.at(0)->font().pixelSize(), 28);
    QCOMPARE(labels.at(0)->font().weight(), QFont::Bold);
    const auto inZone = zone(world).findChildren<TextLabel*>();
    QCOMPARE(inZone.at(0)->font().pixelSize(), 18);
    QCOMPARE(inZone.at(0)->font().weight(), QFont::DemiBold);
    QCOMPARE(inZone.at(1)->font().pixelSize(), 11);
    const QFont count = named<TextLabel>(world.panel, u"0 items present"_s).font();
    QCOMPARE(count.pixelSize(), 14);
    QCOMPARE(count.weight(), QFont::Bold);
}

void LapsaPanelView_layout_test::theGroundIsTheThemesInLightAndDark()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(themePalette(scheme));
        PanelWorld world;

        const QImage picture = world.panel.grab().toImage();

        const QColor ground = themeColor(ColorRole::Window, world.panel.palette());
        const QColor bottom = picture.pixelColor(200, 555);
        QVERIFY(std::abs(bottom.red() - ground.red()) <= 1);
        QVERIFY(std::abs(bottom.green() - ground.green()) <= 1);
        QVERIFY(std::abs(bottom.blue() - ground.blue()) <= 1);
        QVERIFY(contrastRatio(picture.pixelColor(200, 4), themeColor(ColorRole::Secondary, world.panel.palette())) >=
                textContrast);
    }
}

void LapsaPanelView_layout_test::atTwiceTheTextSizeNothingIsCutOff()
{
    for (const char* const locale : {"C.UTF-8", "it_IT.UTF-8"}) {
        const test::Language language(locale);
        QFont font = QApplication::font();
        font.setPointSizeF(20);
        QApplication::setFont(font);
        PanelWorld world;
        world.addItem(u"a.txt"_s);

        for (const TextLabel* const label : world.panel.findChildren<TextLabel*>()) {
            if (label->isVisible()) {
                QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
                QVERIFY2(label->width() >= label->minimumSizeHint().width(), qPrintable(label->text()));
            }
        }
        QVERIFY(world.list().height() > 0);
    }
}

void LapsaPanelView_layout_test::fromRightToLeftThePanelIsMirrored()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);

    world.panel.setLayoutDirection(Qt::RightToLeft);
    PanelWorld::settle();

    QCOMPARE(placeOf(world, *world.panel.findChild<SymbolButton*>()).left(), 24);
    QVERIFY(world.button(0, u"Delete now"_s).x() < world.button(0, u"Change timer"_s).x());
    QCOMPARE(world.button(0, u"Delete now"_s).x(), 12);
}

QTEST_MAIN(LapsaPanelView_layout_test)
#include "LapsaPanelView_layout_test.moc"
