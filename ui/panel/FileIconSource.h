// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QIcon;
class QUrl;

namespace lapsa {

/// Provides the icons of files to the rows.
class FileIconSource
{
public:
    FileIconSource() = default;
    FileIconSource(const FileIconSource&) = delete;
    FileIconSource& operator=(const FileIconSource&) = delete;
    virtual ~FileIconSource() = default;

    /// The icon for a file URL, to be drawn at 24 x 24. Never null, even if the file does not exist.
    [[nodiscard]] virtual QIcon icon(const QUrl& url) = 0;
};

} // namespace lapsa
