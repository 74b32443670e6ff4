// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QIcon;
class QUrl;

namespace lapsa {

/// Where a row gets the icon of its file.
class FileIconSource
{
public:
    FileIconSource() = default;
    FileIconSource(const FileIconSource&) = delete;
    FileIconSource& operator=(const FileIconSource&) = delete;
    virtual ~FileIconSource() = default;

    /// The icon for a file URL, to be drawn at 24 x 24. Never a null icon, also for a file that is not there.
    [[nodiscard]] virtual QIcon icon(const QUrl& url) = 0;
};

} // namespace lapsa
