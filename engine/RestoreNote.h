// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "Time.h"

#include <QList>

#include <functional>

namespace lapsa {

/// The note on disk of copies that are being moved back to other file systems. If the process ends, part of such a copy
/// may stay beside its destination. The next start looks only in the noted folders, not in those of all parked files:
/// they may be on slow or remote disks. All functions may be called on any thread.
namespace restoreNote {

/// On disk when this returns. If it cannot be written (full disk), the restore continues: the file matters more.
void write(const QList<LapsaRecoveryItem>& records);
/// The restores of these records have ended.
void drop(const QList<LapsaRecoveryItem>& records);
/// The noted records. From now on, those whose retention has expired are noted no more. Also removes what an
/// interrupted write of the note has left.
[[nodiscard]] QList<LapsaRecoveryItem> noted(TimePoint now);
/// Removes what an unfinished restore of this record left behind, calls `finish`, and drops the record. If its folder
/// is missing now, the record stays: every later start tries again until its retention has expired.
void removeLeftoversOf(const LapsaRecoveryItem& record, const std::function<void()>& finish);

} // namespace restoreNote

} // namespace lapsa
