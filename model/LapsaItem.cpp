// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaItem.h"

#include "FileSystem.h"
#include "JSONDecoder.h"
#include "JSONEncoder.h"
#include "RandomUuid.h"

#include <algorithm>

namespace lapsa {

QUrl LapsaItem::url() const
{
    // Standardised: otherwise "home" in "//home/ada", which an edited list may contain, would become a host name.
    return QUrl::fromLocalFile(fileSystem::standardizedPath(path).value_or(path));
}

bool LapsaItem::exists() const
{
    return fileSystem::exists(path);
}

bool LapsaItem::isDirectory() const
{
    return fileSystem::isDirectory(path);
}

double LapsaItem::remainingSeconds(TimePoint now) const
{
    return std::max(0.0, secondsBetween(now, expiresAt));
}

bool LapsaItem::isExpired(TimePoint now) const
{
    return remainingSeconds(now) <= 0.0;
}

QString newItemId()
{
    return upperCaseText(randomUuid());
}

void write(JSONEncoder& encoder, const LapsaItem& item)
{
    encoder.beginObject();
    encoder.field("addedAt", item.addedAt);
    encoder.field("displayName", item.displayName);
    encoder.field("expiresAt", item.expiresAt);
    encoder.field("fiveMinuteWarningSent", item.fiveMinuteWarningSent);
    encoder.field("id", item.id);
    encoder.field("locked", item.locked);
    encoder.field("path", item.path);
    encoder.endObject();
}

void read(const JSONObject& object, LapsaItem& item)
{
    item.addedAt = object.timestamp("addedAt");
    item.displayName = object.text("displayName");
    item.expiresAt = object.timestamp("expiresAt");
    item.fiveMinuteWarningSent = object.boolean("fiveMinuteWarningSent");
    item.id = object.text("id");
    item.locked = object.boolean("locked");
    item.path = object.text("path");
}

} // namespace lapsa
