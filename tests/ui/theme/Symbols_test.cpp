// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Symbols.h"

#include <QFile>
#include <QImage>
#include <QSvgRenderer>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class Symbols_test final : public QObject
{
    Q_OBJECT

private slots:
    void everySymbolIsDrawnCentredInItsSquare_data();
    void everySymbolIsDrawnCentredInItsSquare();
    void aSymbolIsTintedWithItsColourAlone();
    void aSymbolHasThePixelsOfItsScale();
    void aSemiboldSymbolHasMoreInk();
    void onSixteenPixelsTheBarsOfTheTrashCanStandApart();
    void onSixteenPixelsTheSidesOfALockAreSharp_data();
    void onSixteenPixelsTheSidesOfALockAreSharp();
    void thePicturesOfTheProgramAreThere_data();
    void thePicturesOfTheProgramAreThere();
};

namespace {

constexpr double size = 96;

QImage drawn(const QString& name, SymbolWeight weight = SymbolWeight::Medium)
{
    return symbolPixmap({name, size, weight, Qt::black}, 1).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// As it is on a row's button, on a screen without scaling.
QImage small(const QString& name)
{
    const QImage image = symbolPixmap({name, 13, SymbolWeight::Semibold, Qt::black}, 1).toImage();
    return image.convertToFormat(QImage::Format_ARGB32);
}

qint64 ink(const QImage& image)
{
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += image.pixelColor(x, y).alpha();
        }
    }
    return sum;
}

QRect inkBounds(const QImage& image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

} // namespace

void Symbols_test::everySymbolIsDrawnCentredInItsSquare_data()
{
    QTest::addColumn<QString>("name");
    for (const char* const name : {"gearshape",
                                   "arrow.down.doc",
                                   "timer",
                                   "lock.open",
                                   "lock.fill",
                                   "xmark",
                                   "trash",
                                   "plus",
                                   "minus",
                                   "doc.badge.gearshape",
                                   "folder.badge.gearshape",
                                   "folder.badge.plus",
                                   "chevron.up",
                                   "chevron.down",
                                   "chevron.left",
                                   "chevron.right",
                                   "checkmark",
                                   "arrow.up",
                                   "house",
                                   "desktopcomputer",
                                   "doc",
                                   "arrow.down.circle",
                                   "photo",
                                   "music.note",
                                   "film",
                                   "internaldrive"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void Symbols_test::everySymbolIsDrawnCentredInItsSquare()
{
    QFETCH(const QString, name);

    const QImage image = drawn(name);

    const QRect bounds = inkBounds(image);
    const double unit = image.width() / 24.0;
    QVERIFY(ink(image) > 0);
    QVERIFY(QRect(0, 0, image.width(), image.height()).contains(bounds));
    QVERIFY(std::abs(bounds.left() + bounds.right() + 1 - image.width()) / 2.0 <= unit);
    QVERIFY(std::abs(bounds.top() + bounds.bottom() + 1 - image.height()) / 2.0 <= unit);
}

void Symbols_test::aSymbolIsTintedWithItsColourAlone()
{
    const QColor color(0x0A62DA);

    const QImage image = symbolPixmap({u"lock.fill"_s, 13, SymbolWeight::Semibold, color}, 2)
                             .toImage()
                             .convertToFormat(QImage::Format_ARGB32);

    int opaque = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255) {
                QCOMPARE(image.pixelColor(x, y).rgb(), color.rgb());
                ++opaque;
            }
        }
    }
    QVERIFY(opaque > 50);
}

void Symbols_test::aSymbolHasThePixelsOfItsScale()
{
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const QPixmap pixmap = symbolPixmap({u"timer"_s, 13, SymbolWeight::Semibold, Qt::black}, ratio);
        QCOMPARE(pixmap.width(), qCeil(16 * ratio));
        QCOMPARE(pixmap.devicePixelRatio(), ratio);
    }
}

void Symbols_test::aSemiboldSymbolHasMoreInk()
{
    QVERIFY(ink(drawn(u"timer"_s, SymbolWeight::Semibold)) > ink(drawn(u"timer"_s)));
}

void Symbols_test::onSixteenPixelsTheBarsOfTheTrashCanStandApart()
{
    const QImage image = small(u"trash"_s);
    const int middle = 9;

    // From the left: nothing, wall, its inner edge, nothing, bar, nothing, nothing, bar and so on.
    for (const int x : {3, 6, 9, 12}) {
        QVERIFY2(image.pixelColor(x, middle).alpha() > 250, qPrintable(QString::number(x)));
    }
    for (const int x : {2, 5, 7, 8, 10, 13}) {
        QVERIFY2(image.pixelColor(x, middle).alpha() < 5, qPrintable(QString::number(x)));
    }
}

void Symbols_test::onSixteenPixelsTheSidesOfALockAreSharp_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("open") << u"lock.open"_s;
    QTest::newRow("closed") << u"lock.fill"_s;
}

void Symbols_test::onSixteenPixelsTheSidesOfALockAreSharp()
{
    QFETCH(const QString, name);
    const QImage image = small(name);
    const QRect bounds = inkBounds(image);
    const int body = 11;

    for (const int side : {bounds.left(), bounds.right()}) {
        QVERIFY(image.pixelColor(side, body).alpha() > 250);
    }
    QVERIFY(image.pixelColor(bounds.center().x(), bounds.bottom()).alpha() > 250);
    QVERIFY(qAbs(bounds.left() + bounds.right() + 1 - image.width()) <= 1);
}

void Symbols_test::thePicturesOfTheProgramAreThere_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("aspect");
    QTest::newRow("status icon") << u"StatusIcon"_s << 1.0;
    QTest::newRow("logo") << u"LapsaLogo"_s << 1.0;
    QTest::newRow("splash") << u"LapsaSplash"_s << 1.0;
    QTest::newRow("application icon") << u"org.lapsa.Lapsa"_s << 1.0;
    QTest::newRow("symbolic application icon") << u"org.lapsa.Lapsa-symbolic"_s << 1.0;
}

void Symbols_test::thePicturesOfTheProgramAreThere()
{
    QFETCH(const QString, name);
    QFETCH(const double, aspect);

    QSvgRenderer picture(u":/lapsa/%1.svg"_s.arg(name));

    QVERIFY(picture.isValid());
    QCOMPARE(double(picture.defaultSize().width()) / picture.defaultSize().height(), aspect);
}

QTEST_MAIN(Symbols_test)
#include "Symbols_test.moc"
