// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIconSource.h"

#include <QHash>
#include <QIcon>

#include <functional>

namespace lapsa {

/// The icons of files, one for each extension: a list that is drawn again and again asks the desktop once for each.
/// Every folder and every file without an extension shows the icon that was found for the first such path. Main thread
/// only.
class FileIconProvider final : public FileIconSource
{
public:
    /// Finds the icon of a file for the first time.
    using Lookup = std::function<QIcon(const QUrl&)>;

    explicit FileIconProvider(Lookup lookup);

    /// The one with the desktop's own icons, made on first use.
    [[nodiscard]] static FileIconProvider& shared();

    /// The same image for all files of one extension, large or small letters; 24 x 24.
    [[nodiscard]] QIcon icon(const QUrl& url) override;

private:
    Lookup m_lookup;
    /// Kept on purpose: never emptied, and without a limit. There are only so many extensions.
    QHash<QString, QIcon> m_cache;
};

/// The icon of a file or folder in the desktop's icon theme, by its name alone; drawn for Lapsa where the theme has
/// none.
[[nodiscard]] QIcon themedFileIcon(const QUrl& url);

} // namespace lapsa
