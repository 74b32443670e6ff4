// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaFileTypeRule.h"

#include "JSONDecoder.h"
#include "JSONEncoder.h"

namespace lapsa {

void write(JSONEncoder& encoder, const LapsaFileTypeRule& rule)
{
    encoder.beginObject();
    encoder.field("enabled", rule.enabled);
    encoder.field("extensionsCSV", rule.extensionsCSV);
    encoder.field("id", rule.id);
    encoder.field("lifespanMinutes", rule.lifespanMinutes);
    encoder.endObject();
}

void read(const JSONObject& object, LapsaFileTypeRule& rule)
{
    rule.id = object.uuid("id");
    rule.extensionsCSV = object.text("extensionsCSV");
    rule.lifespanMinutes = object.integer("lifespanMinutes");
    rule.enabled = object.boolean("enabled");
}

} // namespace lapsa
