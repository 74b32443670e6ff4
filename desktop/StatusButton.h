// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>

namespace lapsa {

/// The icon under which the panel hangs, as the panel needs it.
class StatusButton
{
public:
    StatusButton() = default;
    StatusButton(const StatusButton&) = delete;
    StatusButton& operator=(const StatusButton&) = delete;
    virtual ~StatusButton() = default;

    /// Where it is on the desktop, in logical pixels; where only a click on it is known, the point of the click.
    /// Nothing where nothing is known: the panel then comes up in the top right corner of the work area.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;

    /// Shown while the panel is open, where the desktop can show it.
    virtual void setHighlighted(bool highlighted) = 0;
};

/// What stands in where there is no tray: the top right corner of the work area, with nothing to be seen.
class CornerStatusButton final : public StatusButton
{
public:
    [[nodiscard]] std::optional<QRect> frame() const override { return std::nullopt; }

    void setHighlighted(bool) override {}
};

} // namespace lapsa
