// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <QByteArray>

#include <sys/stat.h>

namespace lapsa {

/// The mode of a copy that is not yet whole: nothing else has it, together with the name of one.
inline constexpr mode_t interruptedMode = S_ISVTX | S_IRWXU;

/// A fresh name for a copy that is not yet whole.
[[nodiscard]] QByteArray interruptedName();

/// Whether the entry is a copy of this user's that never became whole: by its name, its mode and its owner.
[[nodiscard]] bool isInterruptedCopy(int folder, const char* name);

/// Removes a copy that is not needed after all. A failure leaves it: it is found again at the next start.
void removeCopy(const AtPath& copy);

namespace fileSystem {

/// Removes what moves into `folder` from other file systems left behind when they were cut short by the end of the
/// process. The copies are known by a name and mode that nothing else has; their sources are still whole.
void removeInterruptedCopies(const QString& folder);

} // namespace fileSystem

} // namespace lapsa
