// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// Writes one line to standard error, which the session's journal collects. The text is data: percent signs have no
/// meaning, and characters that would break or disguise the line (control characters, line separators, bidirectional
/// controls) are escaped, so that one call always writes one line. Never waits: if the reader does not keep up, the
/// line is lost.
void systemLog(const QString& text);

} // namespace lapsa
