// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"
#include "RowIconButton.h"
#include "RowLook.h"
#include "ThemePalette.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class ThemePalette_test final : public QObject
{
    Q_OBJECT

private slots:
    void everyRoleHasItsColour_data();
    void everyRoleHasItsColour();
    void textKeepsItsContrastOnEveryGround_data();
    void textKeepsItsContrastOnEveryGround();
    void symbolsOfRowButtonsKeepTheirContrast_data();
    void symbolsOfRowButtonsKeepTheirContrast();
    void anAccentOfTheDesktopBecomesLegible_data();
    void anAccentOfTheDesktopBecomesLegible();
    void aLegibleAccentOfTheDesktopIsTakenAsItIs();
    void aGreyOrTheToolkitsOwnHighlightTellsNoAccent();
    void aPaletteTellsItsScheme();
};

namespace {

constexpr ColorScheme light = ColorScheme::Light;
constexpr ColorScheme dark = ColorScheme::Dark;

/// The colours of a row's ground, from top to bottom.
QList<QColor> rowGrounds(const QPalette& palette)
{
    QImage picture(1, FileRowView::rowHeight(), QImage::Format_ARGB32);
    picture.fill(rowLook::baseFor(palette));
    QPainter(&picture).fillRect(picture.rect(), rowLook::groundFor(picture.rect(), palette));
    QList<QColor> grounds;
    for (int y = 0; y < picture.height(); ++y) {
        grounds.push_back(picture.pixelColor(0, y));
    }
    return grounds;
}

void addSchemeRows()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::newRow("light") << light;
    QTest::newRow("dark") << dark;
}

} // namespace

void ThemePalette_test::everyRoleHasItsColour_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<ColorRole>("role");
    QTest::addColumn<QColor>("color");
    QTest::newRow("window, light") << light << ColorRole::Window << QColor(0xF6F6F8);
    QTest::newRow("window, dark") << dark << ColorRole::Window << QColor(0x1F2024);
    QTest::newRow("surface, light") << light << ColorRole::Surface << QColor(0xFFFFFF);
    QTest::newRow("surface, dark") << dark << ColorRole::Surface << QColor(0x2A2B30);
    QTest::newRow("primary, light") << light << ColorRole::Primary << QColor(0x1C1C1E);
    QTest::newRow("primary, dark") << dark << ColorRole::Primary << QColor(0xF2F2F4);
    QTest::newRow("secondary, light") << light << ColorRole::Secondary << QColor(0x5B5D66);
    QTest::newRow("secondary, dark") << dark << ColorRole::Secondary << QColor(0xA9ABB3);
    QTest::newRow("accent, light") << light << ColorRole::Accent << QColor(0x0A62DA);
    QTest::newRow("accent, dark") << dark << ColorRole::Accent << QColor(0x5AA2FF);
    QTest::newRow("danger, light") << light << ColorRole::Danger << QColor(0xC62828);
    QTest::newRow("danger, dark") << dark << ColorRole::Danger << QColor(0xFF6B6B);
    QTest::newRow("notice, light") << light << ColorRole::Notice << QColor(0xA8500A);
    QTest::newRow("notice, dark") << dark << ColorRole::Notice << QColor(0xFFB454);
}

void ThemePalette_test::everyRoleHasItsColour()
{
    QFETCH(const ColorScheme, scheme);
    QFETCH(const ColorRole, role);
    QFETCH(const QColor, color);

    QCOMPARE(themeColor(role, themePalette(scheme)), color);
}

void ThemePalette_test::textKeepsItsContrastOnEveryGround_data()
{
    addSchemeRows();
}

void ThemePalette_test::textKeepsItsContrastOnEveryGround()
{
    QFETCH(const ColorScheme, scheme);
    const QPalette palette = themePalette(scheme);
    const QColor window = themeColor(ColorRole::Window, palette);
    const QColor surface = themeColor(ColorRole::Surface, palette);
    const QList<QColor> grounds = QList{window, surface} + rowGrounds(palette);

    for (const ColorRole role :
         {ColorRole::Primary, ColorRole::Secondary, ColorRole::Notice, ColorRole::Accent, ColorRole::Danger}) {
        for (const QColor& ground : grounds) {
            // No text on a row is in the accent or in red.
            const bool onRow = ground != window && ground != surface;
            const double wanted =
                onRow && (role == ColorRole::Accent || role == ColorRole::Danger) ? symbolContrast : textContrast;
            const double found = contrastRatio(themeColor(role, palette), ground);
            QVERIFY2(found >= wanted, qPrintable(u"role %1 on %2: %3"_s.arg(int(role)).arg(ground.name()).arg(found)));
        }
    }
    QVERIFY(contrastRatio(themeColor(ColorRole::OnAccent, palette), themeColor(ColorRole::Accent, palette)) >=
            textContrast);
}

void ThemePalette_test::symbolsOfRowButtonsKeepTheirContrast_data()
{
    addSchemeRows();
}

void ThemePalette_test::symbolsOfRowButtonsKeepTheirContrast()
{
    QFETCH(const ColorScheme, scheme);
    const QPalette palette = themePalette(scheme);

    for (const QColor& row : rowGrounds(palette)) {
        for (const bool danger : {false, true}) {
            for (const bool hovered : {false, true}) {
                const auto look = RowIconButton::lookFor(danger, hovered, palette);
                const double found = contrastRatio(look.foreground, blended(look.background, row));
                QVERIFY2(found >= symbolContrast,
                         qPrintable(u"danger %1 hovered %2: %3"_s.arg(danger).arg(hovered).arg(found)));
            }
        }
    }
}

void ThemePalette_test::anAccentOfTheDesktopBecomesLegible_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<QColor>("accent");
    QTest::newRow("yellow on light") << light << QColor(0xFFD400);
    QTest::newRow("pale blue on light") << light << QColor(0xBBDDFF);
    QTest::newRow("navy on dark") << dark << QColor(0x001A66);
    QTest::newRow("dark red on dark") << dark << QColor(0x550000);
}

void ThemePalette_test::anAccentOfTheDesktopBecomesLegible()
{
    QFETCH(const ColorScheme, scheme);
    QFETCH(const QColor, accent);

    const QPalette palette = themePalette(scheme, accent);

    const QColor found = themeColor(ColorRole::Accent, palette);
    QVERIFY(contrastRatio(found, themeColor(ColorRole::Window, palette)) >= textContrast);
    QVERIFY(contrastRatio(found, themeColor(ColorRole::Surface, palette)) >= textContrast);
    QVERIFY(std::abs(found.hslHue() - accent.hslHue()) <= 3);
}

void ThemePalette_test::aLegibleAccentOfTheDesktopIsTakenAsItIs()
{
    const QColor green(0x1B6E2E);

    QCOMPARE(themeColor(ColorRole::Accent, themePalette(light, green)), green);
}

void ThemePalette_test::aGreyOrTheToolkitsOwnHighlightTellsNoAccent()
{
    QPalette palette;
    palette.setColor(QPalette::Highlight, QColor(0x1B6E2E));
    QCOMPARE(accentOf(palette), std::optional(QColor(0x1B6E2E)));
    palette.setColor(QPalette::Highlight, QColor(0x777777));
    QCOMPARE(accentOf(palette), std::nullopt);
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    QCOMPARE(accentOf(palette), std::nullopt);
}

void ThemePalette_test::aPaletteTellsItsScheme()
{
    QCOMPARE(schemeOf(themePalette(light)), light);
    QCOMPARE(schemeOf(themePalette(dark)), dark);
}

QTEST_MAIN(ThemePalette_test)
#include "ThemePalette_test.moc"
