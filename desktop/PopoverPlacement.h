// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>

namespace lapsa {

/// Where a popover comes up.
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

/// Centred under an icon in the upper half of the screen, over one in the lower half, beside one in a taskbar
/// along the left or right edge, and wholly inside `workArea`. Without an icon: in the top right corner.
[[nodiscard]] PopoverPlacement popoverPlacement(const std::optional<QRect>& icon, const QRect& workArea,
                                                const QSize& size);

/// Where another window goes that wants to be at `wanted`, its frame included: there, or, where it would lie under the
/// popover, beside that and as near as possible. Where `workArea` has too little room for both, they overlap as little
/// as possible.
[[nodiscard]] QRect besidePopover(const QRect& wanted, const QRect& popover, const QRect& workArea);

} // namespace lapsa
