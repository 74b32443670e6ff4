// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Time.h"

#include <QString>
#include <QUrl>

namespace lapsa {

class JSONEncoder;
class JSONObject;

/// A file or folder on countdown. Equality compares all fields; `id` identifies it in lists.
struct LapsaItem
{
    /// For a new item, the upper-case text of a random UUID; for an item that was read, the stored text.
    QString id;
    /// Absolute.
    QString path;
    /// The last path component at the time of adding; shown in the list and in warnings.
    QString displayName;
    TimePoint addedAt;
    TimePoint expiresAt;
    /// A locked item is neither warned about nor disposed of.
    bool locked = false;
    /// Whether the warning was posted, whatever its lead time. The name is older than that setting and stays, because
    /// it is the key in users' files.
    bool fiveMinuteWarningSent = false;

    [[nodiscard]] QUrl url() const;
    /// Whether there is something at `path`.
    [[nodiscard]] bool exists() const;
    /// Whether there is something at `path` and it is a folder.
    [[nodiscard]] bool isDirectory() const;
    /// Seconds from `now` until `expiresAt`, never below 0.
    [[nodiscard]] double remainingSeconds(TimePoint now) const;
    /// True from the exact moment of `expiresAt` on.
    [[nodiscard]] bool isExpired(TimePoint now) const;

    friend bool operator==(const LapsaItem&, const LapsaItem&) = default;
};

/// The id for a new item: the upper-case canonical text of a new random UUID.
[[nodiscard]] QString newItemId();

void write(JSONEncoder& encoder, const LapsaItem& item);
void read(const JSONObject& object, LapsaItem& item);

} // namespace lapsa

// A list that grows then moves its memory, not each item.
Q_DECLARE_TYPEINFO(lapsa::LapsaItem, Q_RELOCATABLE_TYPE);
