// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIconSource.h"

#include <QHash>
#include <QIcon>

#include <functional>

namespace lapsa {

/// The icons of files, one per extension and theme, so that repainting a list asks the desktop once for each extension.
/// Files and folders without an extension share the icon that was found for the first such path whose kind is known.
/// Main thread only.
class FileIconProvider final : public FileIconSource
{
public:
    /// Finds the icon of a file that is not cached yet.
    using Lookup = std::function<QIcon(const QUrl& url, ItemKind kind)>;

    explicit FileIconProvider(Lookup lookup);

    /// The provider with the desktop's own icons, created on first use.
    [[nodiscard]] static FileIconProvider& shared();

    /// The same image for all files of one extension, in upper or lower case; 24 x 24.
    [[nodiscard]] QIcon icon(const QUrl& url, ItemKind kind) override;

private:
    Lookup m_lookup;
    /// Kept on purpose: never emptied, and without a limit. There are only so many extensions.
    QHash<QString, QIcon> m_cache;
    /// The icons of extensions for which no path of a known kind was asked for yet.
    QHash<QString, QIcon> m_provisional;
};

/// The icon of a file or folder in the desktop's icon theme, chosen by name, never by content; Lapsa's own drawing if
/// the theme has none. Accesses nothing at the URL.
[[nodiscard]] QIcon themedFileIcon(const QUrl& url, ItemKind kind);

} // namespace lapsa
