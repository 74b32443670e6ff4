// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "PanelWorld.h"
#include "ShownEditor.h"
#include "Stepper.h"
#include "TextLabel.h"
#include "TextSize.h"

#include <QApplication>
#include <QImage>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// Where the columns stand, at any text size.
class DurationEditor_layout_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void theColumnsStandAtTheirDistances();
    void theSteppersGrowWithTheText_data();
    void theSteppersGrowWithTheText();
    void everythingGrowsWhenTheTextDoes();
};

namespace {

using test::ShownEditor;
using test::TextSize;

/// How wide the plus sign of a stepper is drawn.
int widthOfSign(Stepper& stepper)
{
    QImage image(stepper.size(), QImage::Format_ARGB32);
    stepper.render(&image);
    const QRect half = stepper.incrementRect().adjusted(4, 0, -4, 0);
    int width = 0;
    for (int x = half.left(); x <= half.right(); ++x) {
        width += image.pixelColor(x, image.height() / 2).lightness() < 128 ? 1 : 0;
    }
    return width;
}

} // namespace

void DurationEditor_layout_test::theColumnsStandAtTheirDistances()
{
    ShownEditor editor(1500);
    editor.editor.adjustSize();
    QTest::qWait(0);

    const QWidget* const days = editor.stepper(u"Days"_s).parentWidget();
    const QWidget* const hours = editor.stepper(u"Hours"_s).parentWidget();
    const auto lines = days->findChildren<TextLabel*>();
    QCOMPARE(hours->x() - days->geometry().right() - 1, 8);
    QVERIFY(days->width() >= 82);
    QVERIFY(lines.at(1)->width() >= 36);
    QCOMPARE(editor.stepper(u"Days"_s).x() - lines.at(1)->geometry().right() - 1, 3);
    QCOMPARE(lines.at(0)->x(), 0);
}

void DurationEditor_layout_test::theSteppersGrowWithTheText_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("sign");
    QTest::newRow("usual text") << 10.0 << QSize(44, 24) << 7;
    QTest::newRow("text at 150 %") << 15.0 << QSize(66, 36) << 11;
    QTest::newRow("text at 200 %") << 20.0 << QSize(88, 48) << 14;
}

void DurationEditor_layout_test::theSteppersGrowWithTheText()
{
    QFETCH(const double, points);
    QFETCH(const QSize, size);
    QFETCH(const int, sign);
    const TextSize text(points);

    ShownEditor editor(1500);
    Stepper& days = editor.stepper(u"Days"_s);

    QCOMPARE(days.size(), size);
    QCOMPARE(days.incrementRect().united(days.decrementRect()).size(), size);
    QVERIFY2(widthOfSign(days) >= sign, qPrintable(QString::number(widthOfSign(days))));
    QVERIFY(editor.editor.rect().contains(QRect(days.mapTo(&editor.editor, QPoint()), days.size())));
}

void DurationEditor_layout_test::everythingGrowsWhenTheTextDoes()
{
    ShownEditor small(1500);
    const QSize usual = small.editor.sizeHint();
    const TextSize text(20);
    ShownEditor large(1500);

    TextSize::tellWidgets();

    QVERIFY(small.editor.sizeHint().height() > usual.height());
    QCOMPARE(small.editor.sizeHint(), large.editor.sizeHint());
}

QTEST_MAIN(DurationEditor_layout_test)
#include "DurationEditor_layout_test.moc"
