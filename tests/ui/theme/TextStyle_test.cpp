// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "TextStyle.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <functional>

using namespace lapsa;
using namespace Qt::StringLiterals;

class TextStyle_test final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theSizesOfDesktopsAreTakenAsUsual_data();
    void theSizesOfDesktopsAreTakenAsUsual();
    void aStyleIsAFontOfThatManyPixels();
    void everyRunningNumberIsEquallyWide();
    void aFirstDigitStandsFlush();
    void noGapOpensBehindANarrowFirstDigit();
    void aNameIsShownOnOneLine_data();
    void aNameIsShownOnOneLine();
    void aToolTipShowsMarkupAsText();
};

void TextStyle_test::init()
{
    test::PanelWorld::setUpApplication();
}

void TextStyle_test::theSizesOfDesktopsAreTakenAsUsual_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<double>("scale");
    QTest::newRow("9 points are usual") << 9.0 << 1.0;
    QTest::newRow("10 points are usual") << 10.0 << 1.0;
    QTest::newRow("11 points are usual") << 11.0 << 1.0;
    QTest::newRow("15 points are half as large again") << 15.0 << 1.5;
    QTest::newRow("20 points are twice as large") << 20.0 << 2.0;
    QTest::newRow("nothing grows without end") << 90.0 << 3.0;
}

void TextStyle_test::theSizesOfDesktopsAreTakenAsUsual()
{
    QFETCH(const double, points);
    QFETCH(const double, scale);
    QFont font = QApplication::font();
    font.setPointSizeF(points);

    QApplication::setFont(font);

    QCOMPARE(textScale(), scale);
    QCOMPARE(fontFor(headlineText).pixelSize(), qRound(13 * scale));
    QCOMPARE(fontFor(panelTitleText).pixelSize(), qRound(28 * (1 + (scale - 1) / 2)));
}

void TextStyle_test::aStyleIsAFontOfThatManyPixels()
{
    QCOMPARE(fontFor(panelTitleText).pixelSize(), 28);
    QCOMPARE(fontFor(panelTitleText).weight(), QFont::Bold);
    QCOMPARE(fontFor(dropZoneText).pixelSize(), 18);
    QCOMPARE(fontFor(dropZoneText).weight(), QFont::DemiBold);
    QCOMPARE(fontFor(countText).pixelSize(), 14);
    QCOMPARE(fontFor(countText).weight(), QFont::Bold);
    QCOMPARE(fontFor(calloutText).pixelSize(), 12);
    QCOMPARE(fontFor(headlineText).family(), QApplication::font().family());
}

namespace {

/// A font whose digits differ in width.
QFont unevenDigits()
{
    QFont font(u"Inter"_s);
    font.setPixelSize(40);
    return font;
}

/// The columns with ink of a text that starts at column 10, in order.
QList<int> inkedColumns(const std::function<void(QPainter&)>& draw)
{
    QImage image(300, 60, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(painter);
    QList<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y).lightness() < 128) {
                columns.push_back(x);
                break;
            }
        }
    }
    return columns;
}

int firstInk(const std::function<void(QPainter&)>& draw)
{
    return inkedColumns(draw).value(0, -1);
}

} // namespace

void TextStyle_test::everyRunningNumberIsEquallyWide()
{
    const QFont font = unevenDigits();

    QCOMPARE(tabularText::width(u"11:11 left"_s, font), tabularText::width(u"48:08 left"_s, font));
}

void TextStyle_test::aFirstDigitStandsFlush()
{
    const QFont font = unevenDigits();
    QVERIFY(QFontMetricsF(font).horizontalAdvance(u'1') < QFontMetricsF(font).horizontalAdvance(u'0') - 4);
    constexpr QPointF baseline(10, 50);

    const int running = firstInk([&](QPainter& painter) { tabularText::draw(painter, baseline, u"12 min"_s, font); });

    QCOMPARE(running, firstInk([&](QPainter& painter) {
                 painter.setFont(font);
                 painter.drawText(baseline, u"12 min"_s);
             }));
}

void TextStyle_test::noGapOpensBehindANarrowFirstDigit()
{
    const QFont font = unevenDigits();
    const auto end = [&](const QString& text) {
        return inkedColumns([&](QPainter& painter) { tabularText::draw(painter, QPointF(10, 50), text, font); }).last();
    };

    QVERIFY(end(u"10"_s) < end(u"00"_s));
}

void TextStyle_test::aNameIsShownOnOneLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("line");
    QTest::newRow("a plain name stays") << u"Report.pdf"_s << u"Report.pdf"_s;
    QTest::newRow("a line break is a blank") << u"a\nb\r\tc"_s << u"a b  c"_s;
    QTest::newRow("a line separator is a blank") << u"a\u2028b"_s << u"a b"_s;
    QTest::newRow("a control character is seen") << u"a\u0007b"_s << u"a\uFFFDb"_s;
    QTest::newRow("an override of the direction is seen") << u"a\u202Egpj.exe"_s << u"a\uFFFDgpj.exe"_s;
    QTest::newRow("markup is text") << u"<b>x</b>"_s << u"<b>x</b>"_s;
    QTest::newRow("letters from right to left stay") << u"تقرير.pdf"_s << u"تقرير.pdf"_s;
}

void TextStyle_test::aNameIsShownOnOneLine()
{
    QFETCH(const QString, name);
    QFETCH(const QString, line);

    QCOMPARE(singleLine(name), line);
}

void TextStyle_test::aToolTipShowsMarkupAsText()
{
    QCOMPARE(plainToolTip(u"Report.pdf"_s), u"Report.pdf"_s);
    QCOMPARE(plainToolTip(u"<b>x</b>"_s), u"<qt>&lt;b&gt;x&lt;/b&gt;</qt>"_s);
}

QTEST_MAIN(TextStyle_test)
#include "TextStyle_test.moc"
