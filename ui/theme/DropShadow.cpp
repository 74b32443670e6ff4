// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropShadow.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>

namespace lapsa {

namespace {

/// The number of linear pieces that approximate the fading.
constexpr int pieces = 12;

/// Fades from `solid`, the end of the even part, to the end of the shadow; both as fractions of its reach.
template <typename Gradient>
Gradient falling(Gradient gradient, double solid, double opacity)
{
    for (int piece = 0; piece <= pieces; ++piece) {
        const double distance = static_cast<double>(piece) / pieces;
        const double left = (1 - distance) * (1 - distance);
        gradient.setColorAt(solid + (1 - solid) * distance,
                            QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity * left)));
    }
    return gradient;
}

} // namespace

void DropShadow::paint(QPainter& painter, const QRectF& window, double radius) const
{
    const QRectF core = window.translated(0, drop).adjusted(radius, radius, -radius, -radius);
    const double reach = radius + extent;
    // Starts fading under the window, so that there is no even band below the lower edge.
    const double solid = std::max(0.0, radius - drop) / reach;
    const QRectF whole = core.adjusted(-reach, -reach, reach, reach);
    const auto side = [&](const QRectF& area, const QPointF& from, const QPointF& to) {
        painter.fillRect(area, falling(QLinearGradient(from, to), solid, opacity));
    };
    const auto corner = [&](const QPointF& outer, const QPointF& inner) {
        painter.fillRect(QRectF(outer, inner).normalized(), falling(QRadialGradient(inner, reach), solid, opacity));
    };
    side({whole.topLeft() + QPointF(reach, 0), QSizeF(core.width(), reach)}, core.topLeft(),
         {core.left(), whole.top()});
    side({core.bottomLeft(), QSizeF(core.width(), reach)}, core.bottomLeft(), {core.left(), whole.bottom()});
    side({whole.topLeft() + QPointF(0, reach), QSizeF(reach, core.height())}, core.topLeft(),
         {whole.left(), core.top()});
    side({core.topRight(), QSizeF(reach, core.height())}, core.topRight(), {whole.right(), core.top()});
    corner(whole.topLeft(), core.topLeft());
    corner(whole.topRight(), core.topRight());
    corner(whole.bottomLeft(), core.bottomLeft());
    corner(whole.bottomRight(), core.bottomRight());
    painter.fillRect(core, QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
}

} // namespace lapsa
