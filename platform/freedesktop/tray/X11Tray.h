// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

#include <optional>

namespace lapsa {

/// Whether the X11 screen has a tray that icons can be embedded in.
[[nodiscard]] bool x11TrayAvailable();

/// What that tray wants its icons drawn in, where it says so (`_NET_SYSTEM_TRAY_COLORS`, which panels of the GNOME
/// family set for all their icons).
[[nodiscard]] std::optional<QColor> x11TrayForeground();

} // namespace lapsa
