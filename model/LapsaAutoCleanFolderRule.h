// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Time.h"

#include <QString>
#include <QUuid>

#include <cstdint>

namespace lapsa {

class JSONEncoder;
class JSONObject;

/// A watched folder: every file that newly appears at its top level is put on countdown.
struct LapsaAutoCleanFolderRule
{
    QUuid id = QUuid::createUuid();
    /// Absolute.
    QString folderPath;
    /// Used only when `applyFileTypeRules` is false.
    std::int64_t lifespanMinutes = 10080;
    /// A folder that is not enabled is not scanned.
    bool enabled = true;
    /// Whether files created before `createdAt` are taken too.
    bool includeExistingFiles = false;
    /// Whether the lifespans are found as for files added by hand, in place of `lifespanMinutes`.
    bool applyFileTypeRules = true;
    /// When the folder was added. Whoever makes a rule sets it to the clock's time.
    TimePoint createdAt = distantPast;
    /// Kept in the file but neither read nor set by the scan, on purpose: the list of items is the only memory of what
    /// was seen.
    TimePoint lastScanAt = distantPast;

    friend bool operator==(const LapsaAutoCleanFolderRule&, const LapsaAutoCleanFolderRule&) = default;
};

void write(JSONEncoder& encoder, const LapsaAutoCleanFolderRule& rule);
void read(const JSONObject& object, LapsaAutoCleanFolderRule& rule);

} // namespace lapsa
