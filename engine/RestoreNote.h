// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "Time.h"

namespace lapsa {

/// The note on disk of copies that are being moved back to other file systems. If the process ends, part of such a copy
/// may stay beside its destination. The next start looks only in the noted folders, not in those of all parked files:
/// they may be on slow or remote disks.
namespace restoreNote {

/// On disk when this returns. If it cannot be written (full disk), the restore continues: the file matters more.
void write(const LapsaRecoveryItem& record);
/// The restore of this record has ended.
void drop(const LapsaRecoveryItem& record);
/// Removes what unfinished restores left behind. If a folder is missing now, every later start tries again until the
/// record's retention has expired.
void removeLeftovers(TimePoint now);

} // namespace restoreNote

} // namespace lapsa
