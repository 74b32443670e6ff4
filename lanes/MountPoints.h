// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QSet>
#include <QString>

namespace lapsa {

/// The table of mounts, read as text: no mount is touched, so that a dead one cannot hold up the answer.
class MountPoints final
{
public:
    MountPoints();

    /// The mount point that holds an absolute path by its text, the longest one; "/" where the table says nothing. A
    /// link on the way is not seen.
    [[nodiscard]] const QString& holding(const QString& path);

private:
    [[nodiscard]] bool changed() const;
    void read();

    /// Kept open: the kernel says on it when the table changes.
    FileDescriptor m_table;
    QSet<QString> m_points;
};

} // namespace lapsa
