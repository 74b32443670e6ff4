// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// The text with everything escaped that would break or disguise a line: control characters, line separators,
/// bidirectional controls.
[[nodiscard]] QString onOneLine(const QString& text);

/// Writes one line to standard error, which the session's journal collects. The text is data: percent signs have no
/// meaning, and onOneLine() makes one line of every text. Never waits: if the reader does not keep up, the line is
/// lost.
void systemLog(const QString& text);

} // namespace lapsa
