// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverPlacement.h"

#include <algorithm>

namespace lapsa {

namespace {

/// The start of a piece of `length` that begins as near to `wanted` as `from` and `end` allow; at `from` when it does
/// not fit.
int startInside(int wanted, int length, int from, int end)
{
    return std::max(from, std::min(wanted, end - length));
}

} // namespace

PopoverPlacement popoverPlacement(const std::optional<QRect>& icon, const QRect& workArea, const QSize& size)
{
    const int right = workArea.x() + workArea.width();
    const int bottom = workArea.y() + workArea.height();
    const QRect anchor = icon.value_or(QRect(right - 1, workArea.y(), 0, 0));
    const QPoint centre(anchor.x() + anchor.width() / 2, anchor.y() + anchor.height() / 2);
    const bool below = centre.y() < workArea.y() + workArea.height() / 2;
    // A tray may lie inside the work area: the popover must not cover its own icon.
    const int y = below ? anchor.y() + anchor.height() : anchor.y() - size.height();
    const QPoint corner(startInside(centre.x() - size.width() / 2, size.width(), workArea.x(), right),
                        startInside(y, size.height(), workArea.y(), bottom));
    return {.rect = QRect(corner, size),
            .side = below ? PopoverPlacement::Side::BelowIcon : PopoverPlacement::Side::AboveIcon};
}

} // namespace lapsa
