// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"

#include <QColor>
#include <QPalette>

#include <optional>

namespace lapsa {

/// The purpose of a colour. Views name roles, never colours.
enum class ColorRole
{
    Window,
    /// Rows, sheets, cards and fields.
    Surface,
    Primary,
    Secondary,
    Accent,
    /// Text and symbols on an accent-coloured ground.
    OnAccent,
    Danger,
    Notice,
    /// Hairlines.
    Separator,
};

/// The minimum contrast of text and of symbols with their ground (WCAG 2.1 level AA, 1.4.3 and 1.4.11).
inline constexpr double textContrast = 4.5;
inline constexpr double symbolContrast = 3.0;

/// The palette of the whole application. The desktop's accent is darkened or lightened until text in this colour is
/// legible.
[[nodiscard]] QPalette themePalette(ColorScheme scheme, std::optional<QColor> desktopAccent = std::nullopt);

/// The accent of the desktop's own palette; nothing if the palette is the toolkit's, or its accent is grey.
[[nodiscard]] std::optional<QColor> accentOf(const QPalette& desktopPalette);

/// Whether a palette is dark or light.
[[nodiscard]] ColorScheme schemeOf(const QPalette& palette);

/// Where a palette made by themePalette() stores a role, for widgets that take their colours from the palette
/// themselves.
[[nodiscard]] QPalette::ColorRole paletteRole(ColorRole role);
/// The colour of a role in a palette made by themePalette().
[[nodiscard]] QColor themeColor(ColorRole role, const QPalette& palette);

/// `color` with its opacity multiplied, 0 to 1.
[[nodiscard]] QColor withOpacity(QColor color, double opacity);
/// The result of a translucent colour on an opaque background.
[[nodiscard]] QColor blended(const QColor& color, const QColor& ground);
/// The colour at `progress` (0 to 1) between two others.
[[nodiscard]] QColor mixed(const QColor& from, const QColor& to, double progress);
/// WCAG contrast of two opaque colours, 1 to 21.
[[nodiscard]] double contrastRatio(const QColor& one, const QColor& other);

} // namespace lapsa
