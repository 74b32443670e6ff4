// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

#include <optional>

namespace lapsa {

/// Whether the X11 screen has a tray that can embed icons.
[[nodiscard]] bool x11TrayAvailable();

/// The colour that the tray requests for icons, if any (`_NET_SYSTEM_TRAY_COLORS`, which taskbars of the GNOME family
/// set for all their icons).
[[nodiscard]] std::optional<QColor> x11TrayForeground();

} // namespace lapsa
