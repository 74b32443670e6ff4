// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>

namespace lapsa {

/// Where a popover appears.
struct PopoverPlacement
{
    enum class Side
    {
        BelowIcon,
        AboveIcon,
        RightOfIcon,
        LeftOfIcon,
    };

    QRect rect;
    Side side = Side::BelowIcon;

    friend bool operator==(const PopoverPlacement&, const PopoverPlacement&) = default;
};

/// Centred below an icon in the upper half of the screen, above one in the lower half, beside one in a taskbar along
/// the left or right edge, and entirely inside `workArea`, smaller than `size` if need be. Without an icon: in the
/// corner where a taskbar usually has its tray, along the edge of `screen` that has most room beside `workArea`; in the
/// top right corner if none has.
[[nodiscard]] PopoverPlacement popoverPlacement(const std::optional<QRect>& icon, const QRect& workArea,
                                                const QRect& screen, const QSize& size);

/// Where to place a window whose preferred frame is `wanted`: there, unless the popover would cover it; then beside the
/// popover and as near as possible. If `workArea` has too little room for both, they overlap as little as possible.
[[nodiscard]] QRect besidePopover(const QRect& wanted, const QRect& popover, const QRect& workArea);

} // namespace lapsa
