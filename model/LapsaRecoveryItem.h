// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Time.h"

#include <QString>
#include <QUuid>

namespace lapsa {

class JSONEncoder;
class JSONObject;

/// An expired file that is kept in the recovery folder. Equality compares all fields; `id` identifies it in lists.
struct LapsaRecoveryItem
{
    QUuid id;
    /// Where the file was before it expired, and where a restore puts it back. Absolute.
    QString originalPath;
    /// Where its copy is now. Absolute.
    QString recoveryPath;
    QString displayName;
    TimePoint deletedAt;
    /// When the copy is due to be deleted permanently.
    TimePoint purgeAfter;

    friend bool operator==(const LapsaRecoveryItem&, const LapsaRecoveryItem&) = default;
};

void write(JSONEncoder& encoder, const LapsaRecoveryItem& item);
void read(const JSONObject& object, LapsaRecoveryItem& item);

} // namespace lapsa

// A list that grows then moves its memory, not each record.
Q_DECLARE_TYPEINFO(lapsa::LapsaRecoveryItem, Q_RELOCATABLE_TYPE);
