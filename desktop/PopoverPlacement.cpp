// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverPlacement.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace lapsa {

namespace {

/// Between the popover and a window beside it.
constexpr int gap = 16;

/// The start of a span of `length` as close to `wanted` as `from` and `end` allow; `from` if it does not fit.
int startInside(int wanted, int length, int from, int end)
{
    return std::max(from, std::min(wanted, end - length));
}

/// The work area shows on which edge the taskbar is.
PopoverPlacement::Side sideOf(const QPoint& icon, const QRect& workArea)
{
    using enum PopoverPlacement::Side;
    const bool besideWorkArea = icon.y() >= workArea.top() && icon.y() <= workArea.bottom();
    if (besideWorkArea && icon.x() < workArea.left()) {
        return RightOfIcon;
    }
    if (besideWorkArea && icon.x() > workArea.right()) {
        return LeftOfIcon;
    }
    return icon.y() < workArea.y() + workArea.height() / 2 ? BelowIcon : AboveIcon;
}

/// Beside the icon on that side, centred on it. A tray can be inside the work area: the popover must not cover its own
/// icon.
QPoint cornerBeside(const QRect& icon, PopoverPlacement::Side side, const QSize& size)
{
    const QPoint centre(icon.x() + icon.width() / 2, icon.y() + icon.height() / 2);
    const QPoint centred = centre - QPoint(size.width() / 2, size.height() / 2);
    switch (side) {
    case PopoverPlacement::Side::BelowIcon:
        return {centred.x(), icon.y() + icon.height()};
    case PopoverPlacement::Side::AboveIcon:
        return {centred.x(), icon.y() - size.height()};
    case PopoverPlacement::Side::RightOfIcon:
        return {icon.x() + icon.width(), centred.y()};
    case PopoverPlacement::Side::LeftOfIcon:
        return {icon.x() - size.width(), centred.y()};
    }
    return centred;
}

/// Where the tray probably is: at the right end of a taskbar that lies along the top or bottom edge, at the lower end
/// of one along a side.
QRect probableIcon(const QRect& workArea, const QRect& screen)
{
    const int right = workArea.x() + workArea.width();
    const int bottom = workArea.y() + workArea.height();
    const int above = workArea.y() - screen.y();
    const int below = screen.y() + screen.height() - bottom;
    const int onTheLeft = workArea.x() - screen.x();
    const int onTheRight = screen.x() + screen.width() - right;
    const int largest = std::max({above, below, onTheLeft, onTheRight});
    if (above == largest) {
        return {right - 1, workArea.y() - above, 1, above};
    }
    if (below == largest) {
        return {right - 1, bottom, 1, below};
    }
    return onTheLeft == largest ? QRect(screen.x(), bottom - 1, onTheLeft, 1) : QRect(right, bottom - 1, onTheRight, 1);
}

} // namespace

PopoverPlacement popoverPlacement(const std::optional<QRect>& icon, const QRect& workArea, const QRect& screen,
                                  const QSize& wantedSize)
{
    const QSize size = wantedSize.boundedTo(workArea.size());
    const int right = workArea.x() + workArea.width();
    const int bottom = workArea.y() + workArea.height();
    const QRect anchor = icon.value_or(probableIcon(workArea, screen));
    const PopoverPlacement::Side side = sideOf(anchor.center(), workArea);
    const QPoint wanted = cornerBeside(anchor, side, size);
    const QPoint corner(startInside(wanted.x(), size.width(), workArea.x(), right),
                        startInside(wanted.y(), size.height(), workArea.y(), bottom));
    return {.rect = QRect(corner, size), .side = side};
}

QRect besidePopover(const QRect& wanted, const QRect& popover, const QRect& workArea)
{
    if (!wanted.intersects(popover)) {
        return wanted;
    }
    const int end = workArea.x() + workArea.width();
    const auto at = [&](int x) {
        return QRect(startInside(x, wanted.width(), workArea.x(), end), wanted.y(), wanted.width(), wanted.height());
    };
    const QRect left = at(popover.x() - gap - wanted.width());
    const QRect right = at(popover.x() + popover.width() + gap);
    const auto cost = [&](const QRect& place) {
        return std::pair(place.intersected(popover).width(), std::abs(place.x() - wanted.x()));
    };
    return cost(right) < cost(left) ? right : left;
}

} // namespace lapsa
