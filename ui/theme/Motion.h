// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QEasingCurve>

#include <chrono>

class QVariantAnimation;

/// Lapsa's animations: short, always slowing down at the end, and none if the user does not want them.
namespace lapsa::motion {

inline constexpr std::chrono::milliseconds hoverDuration{120};
inline constexpr std::chrono::milliseconds popoverDuration{140};
inline constexpr std::chrono::milliseconds sheetDuration{160};
/// How long an added item is highlighted.
inline constexpr std::chrono::milliseconds highlightDuration{1200};
inline constexpr QEasingCurve::Type easing = QEasingCurve::OutCubic;

/// False if animations are off on the desktop (stored in the application's style), and without a display.
[[nodiscard]] bool allowed();
/// Tells the application's style whether animations are on for the desktop. With any style other than LapsaStyle they
/// are on.
void setAllowedByDesktop(bool allowed);

/// `duration`, or 0 where nothing may move.
[[nodiscard]] int milliseconds(std::chrono::milliseconds duration);

/// Runs `animation` from its current value to `target`; where nothing may move, it gets there at once.
void moveTo(QVariantAnimation& animation, double target, std::chrono::milliseconds duration);

} // namespace lapsa::motion
