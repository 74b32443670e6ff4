// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// A file name split at its last dot.
struct FileName
{
    QString base;
    /// Without the dot; empty if there is none.
    QString extension;

    /// A leading dot starts no extension: ".profile" is all base, and so is a name that ends with a dot.
    [[nodiscard]] static FileName of(const QString& name);

    friend bool operator==(const FileName&, const FileName&) = default;
};

/// The last component of a path.
[[nodiscard]] QString lastPathComponent(const QString& path);

/// A path without its last component; "/" for a path directly below the root.
[[nodiscard]] QString parentPath(const QString& path);

} // namespace lapsa
