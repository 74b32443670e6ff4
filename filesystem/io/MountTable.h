// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QList>

namespace lapsa {

/// The mount points in a table of the form of proc_pid_mountinfo(5), in its order.
[[nodiscard]] QList<QByteArray> mountPointsOf(const QByteArray& mountInfo);

/// Whether anything is mounted somewhere below a folder, which is named by its real path.
[[nodiscard]] Result<bool> hasMountBelow(const QByteArray& folder);

/// Where a file system is mounted that another machine or a program serves, or none yet: whoever looks at one may have
/// to wait, for good at worst. What is not known counts as one.
[[nodiscard]] Result<QList<QByteArray>> servedMounts();

} // namespace lapsa
