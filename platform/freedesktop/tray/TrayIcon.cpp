// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayIcon.h"

#include <QFile>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Has a contrast above 3 : 1 on both white and black.
constexpr QColor neutralForeground(0x3F, 0x7F, 0xE8);
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

QImage TrayIcon::image(int extent) const
{
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double drawn = m_highlighted ? extent * highlightedDrawing : extent;
    const QRectF place((extent - drawn) / 2, (extent - drawn) / 2, drawn, drawn);
    const QColor foreground = m_foreground.value_or(neutralForeground);
    if (!m_drawing.isEmpty()) {
        QSvgRenderer(m_drawing).render(&painter, place);
    } else {
        QFont font;
        font.setPixelSize(qRound(drawn * titleHeight));
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(place, Qt::AlignCenter, m_title);
    }
    // Only the shape of a template counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), foreground);
    if (m_highlighted) {
        QColor ground = foreground;
        ground.setAlphaF(groundOpacity);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(image.rect(), extent * groundRadius, extent * groundRadius);
    }
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
