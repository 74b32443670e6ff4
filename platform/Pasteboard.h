// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QString;

namespace lapsa {

/// The clipboard.
class Pasteboard
{
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// Replaces the clipboard's content with plain text. The text stays available while the process runs.
    virtual void setText(const QString& text) = 0;
};

} // namespace lapsa
