// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QSet>
#include <QString>

namespace lapsa {

/// The mount table, read as text: it accesses no mount, so that a dead one cannot block the answer.
class MountPoints final
{
public:
    MountPoints();

    /// The longest mount point that is a prefix of the text of an absolute path; "/" if the table lists none. Ignores
    /// links on the way.
    [[nodiscard]] const QString& holding(const QString& path);

private:
    [[nodiscard]] bool changed() const;
    void read();

    /// Kept open: the kernel signals changes of the table on it.
    FileDescriptor m_table;
    QSet<QString> m_points;
};

} // namespace lapsa
