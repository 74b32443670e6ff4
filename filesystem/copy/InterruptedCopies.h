// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <QByteArray>

#include <sys/stat.h>

namespace lapsa {

namespace fileSystem {
class WorkObserver;
} // namespace fileSystem

/// The mode of an incomplete copy: nothing else has both this mode and such a name.
inline constexpr mode_t interruptedMode = S_ISVTX | S_IRWXU;

/// A new name for an incomplete copy.
[[nodiscard]] QByteArray interruptedName();

/// Whether the entry is an incomplete copy of this user, judged by its name, mode and owner.
[[nodiscard]] bool isInterruptedCopy(int folder, const char* name);

/// Removes a copy that is not needed after all. After a failure it stays, and the next start finds it again. `observer`
/// is borrowed; null for none.
void removeCopy(const AtPath& copy, fileSystem::WorkObserver* observer = nullptr);

namespace fileSystem {

/// Removes incomplete copies from `folder`, left by moves from other file systems that the end of the process cut
/// short. They have a name and mode that nothing else has; their sources are intact.
void removeInterruptedCopies(const QString& folder);

} // namespace fileSystem

} // namespace lapsa
