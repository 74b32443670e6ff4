// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaAutoCleanFolderRule.h"

#include "JSONDecoder.h"
#include "JSONEncoder.h"

namespace lapsa {

void write(JSONEncoder& encoder, const LapsaAutoCleanFolderRule& rule)
{
    encoder.beginObject();
    encoder.field("applyFileTypeRules", rule.applyFileTypeRules);
    encoder.field("createdAt", rule.createdAt);
    encoder.field("enabled", rule.enabled);
    encoder.field("folderPath", rule.folderPath);
    encoder.field("id", rule.id);
    encoder.field("includeExistingFiles", rule.includeExistingFiles);
    encoder.field("lastScanAt", rule.lastScanAt);
    encoder.field("lifespanMinutes", rule.lifespanMinutes);
    encoder.endObject();
}

void read(const JSONObject& object, LapsaAutoCleanFolderRule& rule)
{
    rule.id = object.uuid("id");
    rule.folderPath = object.text("folderPath");
    rule.lifespanMinutes = object.integer("lifespanMinutes");
    rule.enabled = object.boolean("enabled");
    rule.includeExistingFiles = object.boolean("includeExistingFiles");
    rule.applyFileTypeRules = object.boolean("applyFileTypeRules");
    rule.createdAt = object.timestamp("createdAt");
    rule.lastScanAt = object.timestamp("lastScanAt");
}

} // namespace lapsa
