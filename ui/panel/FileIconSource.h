// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemKinds.h"

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

    /// The icon for a file URL, to be drawn at 24 x 24. Accesses nothing there; never null. While the kind is unknown,
    /// it is the icon of a file, and may be another one once the kind is known.
    [[nodiscard]] virtual QIcon icon(const QUrl& url, ItemKind kind) = 0;
};

} // namespace lapsa
