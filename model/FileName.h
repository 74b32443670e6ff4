// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// A file name taken apart at its last full stop.
struct FileName
{
    QString base;
    /// Without the full stop; empty where there is none.
    QString extension;

    /// A leading dot is no extension: ".profile" is all base, and so is a name that ends with a full stop.
    [[nodiscard]] static FileName of(const QString& name);

    friend bool operator==(const FileName&, const FileName&) = default;
};

/// The last component of a path.
[[nodiscard]] QString lastPathComponent(const QString& path);

/// A path without its last component; "/" for what lies directly in it.
[[nodiscard]] QString parentPath(const QString& path);

} // namespace lapsa
