// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "TrayIcon.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int extent = 22;

/// Relative luminance (Web Content Accessibility Guidelines 2.1).
double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& first, const QColor& second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor middleOf(const QImage& image)
{
    return image.pixelColor(image.rect().center());
}

/// Without a foreground: for a taskbar that requests no colour.
QImage statusIcon(const std::optional<QColor>& foreground = std::nullopt, bool highlighted = false)
{
    TrayIcon icon(exampleProgram().drawings);
    if (!icon.setTemplateImage(u"StatusIcon"_s, 18)) {
        qFatal("no such image");
    }
    icon.setForeground(foreground);
    icon.setHighlighted(highlighted);
    return icon.image(extent);
}

} // namespace

class TrayIconTest final : public QObject
{
    Q_OBJECT

private slots:

    void itShowsOnTaskbarsOfAnyColour_data()
    {
        QTest::addColumn<QColor>("taskbar");
        QTest::newRow("mid blue") << QColor(0x29, 0x80, 0xB9);
        QTest::newRow("mid grey") << QColor(0x80, 0x80, 0x80);
        QTest::newRow("white") << QColor(Qt::white);
        QTest::newRow("light grey") << QColor(0xF0, 0xF0, 0xF0);
        QTest::newRow("dark grey") << QColor(0x2B, 0x2B, 0x2B);
        QTest::newRow("black") << QColor(Qt::black);
    }

    void itShowsOnTaskbarsOfAnyColour()
    {
        QFETCH(const QColor, taskbar);
        QImage shown(extent, extent, QImage::Format_RGB32);
        shown.fill(taskbar);
        QPainter(&shown).drawImage(0, 0, statusIcon());

        int visible = 0;
        for (int i = 0; i < extent * extent; ++i) {
            visible += contrast(shown.pixelColor(i % extent, i / extent), taskbar) >= 3 ? 1 : 0;
        }

        // A tenth of the ground is what a ring and a sheet of two pixels' strength cover.
        QVERIFY2(visible >= extent * extent / 10, qPrintable(QString::number(visible)));
    }

    void theOutlineIsOnlyForTaskbarsThatRequestNoColour()
    {
        TrayIcon icon(exampleProgram().drawings);
        QVERIFY(icon.setTemplateImage(u"StatusIcon"_s, 18));
        icon.setForeground(QColor(Qt::white));

        const QImage image = icon.image(extent);

        for (int i = 0; i < extent * extent; ++i) {
            const QColor pixel = image.pixelColor(i % extent, i / extent);
            QVERIFY(pixel.alpha() == 0 || pixel.red() == 255);
        }
    }

    void ofTheDrawingOnlyTheShapeCounts()
    {
        TrayIcon icon(exampleProgram().drawings);
        QVERIFY(icon.setTemplateImage(u"StatusIcon"_s, 18));

        icon.setForeground(QColor(Qt::red));

        QCOMPARE(middleOf(icon.image(extent)), QColor(Qt::red));
        QCOMPARE(icon.image(extent).pixelColor(0, 0).alpha(), 0);
    }

    void theHighlightIsAGroundBehindTheDrawing()
    {
        const QImage plain = statusIcon(QColor(Qt::black));
        const QImage highlighted = statusIcon(QColor(Qt::black), true);

        QCOMPARE(plain.pixelColor(extent / 2, 1).alpha() > 0, true); // the ring reaches the edge
        QCOMPARE(plain.pixelColor(2, 2).alpha(), 0);
        QVERIFY(highlighted.pixelColor(2, 2).alpha() > 0);
        QCOMPARE(middleOf(highlighted), middleOf(plain));
    }

    void itComesInItsOwnSizeAndForEveryBar()
    {
        TrayIcon icon(exampleProgram().drawings);
        QVERIFY(icon.setTemplateImage(u"StatusIcon"_s, 18));

        QList<int> extents;
        for (const QImage& image : icon.images()) {
            QCOMPARE(image.width(), image.height());
            extents.push_back(image.width());
        }

        for (const int wanted : {18, 36, 16, 22, 24, 32, 48}) {
            QVERIFY2(extents.contains(wanted), qPrintable(QString::number(wanted)));
        }
    }

    void anImageThatIsNotThereIsSaid()
    {
        TrayIcon icon(exampleProgram().drawings);

        QVERIFY(!icon.setTemplateImage(u"NoSuchIcon"_s, 18));
    }

    void aTitleStandsInForTheImage()
    {
        TrayIcon icon(exampleProgram().drawings);
        icon.setTitle(u"C"_s);

        const QImage image = icon.image(extent);

        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        int drawn = 0;
        for (int y = 0; y < extent; ++y) {
            for (int x = 0; x < extent; ++x) {
                drawn += image.pixelColor(x, y).alpha() > 128 ? 1 : 0;
            }
        }
        QVERIFY(drawn > 20);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::TrayIconTest)
#include "TrayIcon_test.moc"
