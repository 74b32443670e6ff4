// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Symbols.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// A drawing has a margin inside its 24-pixel grid, like a letter in its line.
constexpr double extentOfSize = 1.25;
constexpr int smallEdge = 16;
constexpr double iconPixelRatios[] = {1, 1.5, 2, 3};

const QByteArray& mediumStroke()
{
    static const QByteArray text = "stroke-width=\"1.75\"";
    return text;
}

const QByteArray& semiboldStroke()
{
    static const QByteArray text = "stroke-width=\"2.1\"";
    return text;
}

/// The file of a symbol for an edge of that many pixels. If the lines of the 24-pixel grid would blur at 16 pixels,
/// there is a second drawing with its edges on pixel boundaries.
QString fileOf(const QString& name, int edge)
{
    const QString small = u":/lapsa/symbols/%1.%2.svg"_s.arg(name).arg(smallEdge);
    return edge == smallEdge && QFile::exists(small) ? small : u":/lapsa/symbols/%1.svg"_s.arg(name);
}

QByteArray drawing(const SymbolLook& look, int edge)
{
    QFile file(fileOf(look.name, edge));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("There is no symbol \"%s\"", qPrintable(look.name));
    }
    QByteArray svg = file.readAll();
    return look.weight == SymbolWeight::Semibold ? svg.replace(mediumStroke(), semiboldStroke()) : svg;
}

QPixmap render(const SymbolLook& look, double devicePixelRatio)
{
    const int edge = static_cast<int>(std::ceil(symbolExtent(look.size) * devicePixelRatio));
    QPixmap pixmap(edge, edge);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(drawing(look, edge)).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), look.color);
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QString keyOf(const SymbolLook& look, double devicePixelRatio)
{
    return u"lapsa symbol %1 %2 %3 %4 %5"_s.arg(look.name)
        .arg(look.size)
        .arg(static_cast<int>(look.weight))
        .arg(look.color.name(QColor::HexArgb))
        .arg(devicePixelRatio);
}

} // namespace

int symbolExtent(double size)
{
    return static_cast<int>(std::lround(size * extentOfSize));
}

QPixmap symbolPixmap(const SymbolLook& look, double devicePixelRatio)
{
    const QString key = keyOf(look, devicePixelRatio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = render(look, devicePixelRatio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QIcon symbolIcon(const SymbolLook& look)
{
    QIcon icon;
    for (const double ratio : iconPixelRatios) {
        icon.addPixmap(symbolPixmap(look, ratio));
    }
    return icon;
}

} // namespace lapsa
