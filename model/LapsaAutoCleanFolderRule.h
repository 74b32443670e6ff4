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

/// A watched folder: every new file at its top level is put on countdown.
struct LapsaAutoCleanFolderRule
{
    QUuid id = QUuid::createUuid();
    /// Absolute.
    QString folderPath;
    /// Used only when `applyFileTypeRules` is false.
    std::int64_t lifespanMinutes = 10080;
    /// A disabled folder is not scanned.
    bool enabled = true;
    /// Whether files created before `createdAt` are added too.
    bool includeExistingFiles = false;
    /// Whether lifespans are determined as for files added by hand, instead of by `lifespanMinutes`.
    bool applyFileTypeRules = true;
    /// When the folder was added. Whoever creates a rule sets it to the current time of the clock.
    TimePoint createdAt = distantPast;
    /// Kept in the file but neither read nor set by the scan, on purpose: Lapsa remembers only what is on the list.
    TimePoint lastScanAt = distantPast;

    friend bool operator==(const LapsaAutoCleanFolderRule&, const LapsaAutoCleanFolderRule&) = default;
};

void write(JSONEncoder& encoder, const LapsaAutoCleanFolderRule& rule);
void read(const JSONObject& object, LapsaAutoCleanFolderRule& rule);

} // namespace lapsa
