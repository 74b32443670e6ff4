// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "ThemePalette.h"
#include "WorkBar.h"

#include <QTest>

using namespace lapsa;

class WorkBar_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void thePartThatIsDoneIsLit_data();
    void thePartThatIsDoneIsLit();
    void withoutAnEndAPieceDriftsFromSideToSide();
    void whereNothingMayMoveTheWholeBarIsLitFaintly();
    void fromRightToLeftItFillsFromTheRight();
    void itIsPaintedInTheAccent_data();
    void itIsPaintedInTheAccent();
    void itLetsTheMouseThrough();
};

namespace {

constexpr int width = 200;

/// A bar in a window of its own.
struct ShownBar
{
    ShownBar()
    {
        window.resize(width, 20);
        bar.setGeometry(0, 10, width, WorkBar::thickness);
        bar.show();
        window.show();
    }

    QWidget window;
    WorkBar bar{&window};
};

} // namespace

void WorkBar_test::thePartThatIsDoneIsLit_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("lit");
    QTest::newRow("nothing") << 0.0 << 0.0;
    QTest::newRow("a trace is still round") << 0.001 << double(WorkBar::thickness);
    QTest::newRow("a quarter") << 0.25 << 50.0;
    QTest::newRow("everything") << 1.0 << double(width);
}

void WorkBar_test::thePartThatIsDoneIsLit()
{
    QFETCH(const double, progress);
    QFETCH(const double, lit);
    const ShownBar shown;

    const WorkBar::Look look = WorkBar::lookFor({.progress = progress, .drift = {}}, shown.bar);

    QCOMPARE(look.filled, QRectF(0, 0, lit, WorkBar::thickness));
    QCOMPARE(look.fill, themeColor(ColorRole::Accent, shown.bar.palette()));
}

void WorkBar_test::withoutAnEndAPieceDriftsFromSideToSide()
{
    const ShownBar shown;

    const QRectF left = WorkBar::lookFor({.progress = {}, .drift = 0}, shown.bar).filled;
    const QRectF middle = WorkBar::lookFor({.progress = {}, .drift = 0.5}, shown.bar).filled;
    const QRectF right = WorkBar::lookFor({.progress = {}, .drift = 1}, shown.bar).filled;

    QCOMPARE(left.left(), 0);
    QCOMPARE(middle.center().x(), width / 2.0);
    QCOMPARE(right.right(), width);
    QCOMPARE(left.width(), right.width());
}

void WorkBar_test::whereNothingMayMoveTheWholeBarIsLitFaintly()
{
    ShownBar shown;
    shown.bar.setProgress(std::nullopt);

    const WorkBar::Look look = WorkBar::lookFor({}, shown.bar);

    QVERIFY(!shown.bar.drifts());
    QCOMPARE(look.filled, QRectF(shown.bar.rect()));
    QVERIFY(look.fill.alphaF() < 1);
}

void WorkBar_test::fromRightToLeftItFillsFromTheRight()
{
    ShownBar shown;
    shown.window.setLayoutDirection(Qt::RightToLeft);

    const WorkBar::Look look = WorkBar::lookFor({.progress = 0.25, .drift = {}}, shown.bar);

    QCOMPARE(look.filled, QRectF(width - 50, 0, 50, WorkBar::thickness));
}

void WorkBar_test::itIsPaintedInTheAccent_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::newRow("light") << ColorScheme::Light;
    QTest::newRow("dark") << ColorScheme::Dark;
}

void WorkBar_test::itIsPaintedInTheAccent()
{
    QFETCH(const ColorScheme, scheme);
    ShownBar shown;
    shown.window.setPalette(themePalette(scheme));
    shown.bar.setProgress(0.5);

    const QImage picture = shown.window.grab().toImage();

    const QColor accent = themeColor(ColorRole::Accent, shown.bar.palette());
    QCOMPARE(picture.pixelColor(width / 4, 11), accent);
    QVERIFY(picture.pixelColor(width * 3 / 4, 11) != accent);
    QVERIFY(picture.pixelColor(width * 3 / 4, 11) != picture.pixelColor(width * 3 / 4, 2)); // its track
}

void WorkBar_test::itLetsTheMouseThrough()
{
    ShownBar shown;

    QCOMPARE(shown.window.childAt(width / 2, 11), nullptr);
}

QTEST_MAIN(WorkBar_test)
#include "WorkBar_test.moc"
