// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lapsa {

/// The user's choice of appearance.
enum class LapsaTheme
{
    System,
    Dark,
    Light,
};

/// Every theme, in the order in which they are offered.
inline constexpr std::array allLapsaThemes{LapsaTheme::System, LapsaTheme::Dark, LapsaTheme::Light};

/// The stored text: "system", "dark" or "light".
[[nodiscard]] QString rawValue(LapsaTheme theme);
/// The theme for a stored text; nothing for any other text.
[[nodiscard]] std::optional<LapsaTheme> lapsaThemeFromRawValue(const QString& rawValue);

} // namespace lapsa
