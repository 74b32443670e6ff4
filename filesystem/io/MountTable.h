// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QList>

namespace lapsa {

/// The mount points in a table in the format of proc_pid_mountinfo(5), in its order.
[[nodiscard]] QList<QByteArray> mountPointsOf(const QByteArray& mountInfo);

/// Whether anything is mounted below a folder, given by its real path.
[[nodiscard]] Result<bool> hasMountBelow(const QByteArray& folder);

/// The mount points of file systems that another machine or a program serves, or that are not mounted yet (automount):
/// a look at one may block, possibly forever. Unknown kinds are included.
[[nodiscard]] Result<QList<QByteArray>> servedMounts();

} // namespace lapsa
