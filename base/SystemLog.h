// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// Writes one line to standard error, which the session's journal collects. The text is data: a percent sign in it
/// means nothing, and whatever would break or disguise the line (control characters, line separators, bidirectional
/// controls) is escaped, so that one call is always one line. Never waits: a line that nobody takes is lost.
void systemLog(const QString& text);

} // namespace lapsa
