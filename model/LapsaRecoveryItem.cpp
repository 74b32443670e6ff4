// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaRecoveryItem.h"

#include "JSONDecoder.h"
#include "JSONEncoder.h"

namespace lapsa {

void write(JSONEncoder& encoder, const LapsaRecoveryItem& item)
{
    encoder.beginObject();
    encoder.field("deletedAt", item.deletedAt);
    encoder.field("displayName", item.displayName);
    encoder.field("id", item.id);
    encoder.field("originalPath", item.originalPath);
    encoder.field("purgeAfter", item.purgeAfter);
    encoder.field("recoveryPath", item.recoveryPath);
    encoder.endObject();
}

void read(const JSONObject& object, LapsaRecoveryItem& item)
{
    item.deletedAt = object.timestamp("deletedAt");
    item.displayName = object.text("displayName");
    item.id = object.uuid("id");
    item.originalPath = object.text("originalPath");
    item.purgeAfter = object.timestamp("purgeAfter");
    item.recoveryPath = object.text("recoveryPath");
}

} // namespace lapsa
