// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayIcon.h"

#include <QFile>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// For taskbars that request no colour: a light shape in a dark outline, of which one shows on any ground.
constexpr QColor neutralForeground(0xFC, 0xFC, 0xFC);
constexpr QColor outlineColor(0x10, 0x12, 0x14, 0x50);
/// As a fraction of the icon's extent, at least a pixel.
constexpr double outlineWidth = 1.0 / 24;
constexpr double diagonal = 0.707;
constexpr std::array outlineDirections{
    QPointF(1, 0),  QPointF(diagonal, diagonal),   QPointF(0, 1),  QPointF(-diagonal, diagonal),
    QPointF(-1, 0), QPointF(-diagonal, -diagonal), QPointF(0, -1), QPointF(diagonal, -diagonal)};
/// The icon sizes of taskbars of common heights, at 1x and 2x scale.
constexpr std::array iconExtents{16, 22, 24, 32, 44, 48, 64};
constexpr float groundOpacity = 0.28F;
/// As fractions of the icon's extent.
constexpr double groundRadius = 0.25;
constexpr double highlightedDrawing = 0.84;
constexpr double titleHeight = 0.8;

} // namespace

TrayIcon::TrayIcon(QString drawings)
    : m_drawings(std::move(drawings))
{}

bool TrayIcon::setTemplateImage(const QString& name, int size)
{
    QFile file(u"%1/%2.svg"_s.arg(m_drawings, name));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    m_drawing = file.readAll();
    m_size = size;
    return true;
}

void TrayIcon::setTitle(const QString& title)
{
    m_title = title;
}

QString TrayIcon::themedSuffix() const
{
    if (m_foreground || m_drawing.isEmpty()) {
        return {};
    }
    return m_highlighted ? u"-open-symbolic"_s : u"-symbolic"_s;
}

QImage TrayIcon::image(int extent) const
{
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor foreground = m_foreground.value_or(neutralForeground);
    if (m_highlighted) {
        QColor ground = foreground;
        ground.setAlphaF(groundOpacity);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(image.rect(), extent * groundRadius, extent * groundRadius);
    }
    if (!m_foreground) {
        const QImage outline = drawn(extent, outlineColor);
        const double width = std::max(outlineWidth * extent, 1.0);
        for (const QPointF& direction : outlineDirections) {
            painter.drawImage(direction * width, outline);
        }
    }
    painter.drawImage(0, 0, drawn(extent, foreground));
    return image;
}

/// The shape alone, in one colour.
QImage TrayIcon::drawn(int extent, const QColor& color) const
{
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = m_highlighted ? extent * (1 - highlightedDrawing) / 2 : 0;
    const QRectF place = QRectF(image.rect()).adjusted(inset, inset, -inset, -inset);
    if (!m_drawing.isEmpty()) {
        QSvgRenderer(m_drawing).render(&painter, place);
    } else {
        QFont font;
        font.setPixelSize(qRound(place.height() * titleHeight));
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(place, Qt::AlignCenter, m_title);
    }
    // Only the shape of a template counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QList<QImage> TrayIcon::images() const
{
    QList<QImage> images{image(m_size), image(2 * m_size)};
    for (const int extent : iconExtents) {
        images.push_back(image(extent));
    }
    return images;
}

QIcon TrayIcon::icon() const
{
    QIcon icon;
    for (const QImage& image : images()) {
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

} // namespace lapsa
