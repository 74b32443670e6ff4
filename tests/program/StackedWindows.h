// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "WindowManager.h"

#include <QByteArray>
#include <QString>

#include <optional>

// The windows of the desktop as they lie one above the other.

namespace lapsa::test {

[[nodiscard]] std::optional<ManagedWindow> windowTitled(const QString& title);
[[nodiscard]] bool isAbove(const QString& upper, const QString& lower);
/// All of them, for a failure's message.
[[nodiscard]] QByteArray sight();

} // namespace lapsa::test
