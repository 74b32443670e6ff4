// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "Time.h"

namespace lapsa {

/// The note on the disk of copies that are being put back to other file systems. The end of the process may leave a
/// part of one beside the place that it was meant for, and a start looks there and nowhere else: the folders of all
/// parked files may be far away.
namespace restoreNote {

/// On the disk when this returns. Without it, on a full disk, the restore goes on: the file counts more.
void write(const LapsaRecoveryItem& record);
/// The restore of this record has come to its end.
void drop(const LapsaRecoveryItem& record);
/// Removes what is left of restores that did not. Where the folder is not there now, it is looked for again until the
/// record's time is up.
void removeLeftovers(TimePoint now);

} // namespace restoreNote

} // namespace lapsa
