// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaSettings.h"

#include "JSONDecoder.h"
#include "JSONEncoder.h"

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

QList<LapsaFileTypeRule> defaultFileTypeRules()
{
    constexpr std::int64_t day = std::int64_t{24} * 60;
    return {
        {.extensionsCSV = u".zip,.rar,.7z"_s, .lifespanMinutes = 7 * day},
        {.extensionsCSV = u".exe,.msi,.pkg,.dmg"_s, .lifespanMinutes = 14 * day},
        {.extensionsCSV = u".png,.jpg,.jpeg,.webp"_s, .lifespanMinutes = 30 * day},
    };
}

const LapsaSettings& LapsaSettings::defaults()
{
    static const LapsaSettings shared;
    return shared;
}

LapsaSettings sanitize(LapsaSettings settings)
{
    using std::clamp;
    constexpr std::int64_t least = 1; // for values that are not lifespans
    settings.defaultExpirationMinutes =
        clamp(settings.defaultExpirationMinutes, minLifespanMinutes, maxLifespanMinutes);
    settings.notifyBeforeMinutes = clamp(settings.notifyBeforeMinutes, least, maxNotifyBeforeMinutes);
    settings.recoveryRetentionHours = clamp(settings.recoveryRetentionHours, least, maxRecoveryRetentionHours);
    for (LapsaFileTypeRule& rule : settings.fileTypeRules) {
        rule.lifespanMinutes = clamp(rule.lifespanMinutes, minLifespanMinutes, maxLifespanMinutes);
    }
    for (LapsaAutoCleanFolderRule& rule : settings.autoCleanFolders) {
        rule.lifespanMinutes = clamp(rule.lifespanMinutes, minLifespanMinutes, maxLifespanMinutes);
    }
    return settings;
}

void write(JSONEncoder& encoder, const LapsaSettings& settings)
{
    encoder.beginObject();
    encoder.field("autoCleanFolders", settings.autoCleanFolders);
    encoder.field("defaultExpirationMinutes", settings.defaultExpirationMinutes);
    encoder.field("enableExpiryNotifications", settings.enableExpiryNotifications);
    encoder.field("fileTypeRules", settings.fileTypeRules);
    encoder.field("keepPanelOpen", settings.keepPanelOpen);
    encoder.field("notifyBeforeMinutes", settings.notifyBeforeMinutes);
    encoder.field("pauseAllCountdowns", settings.pauseAllCountdowns);
    encoder.field("recoveryRetentionHours", settings.recoveryRetentionHours);
    encoder.field("theme", rawValue(settings.theme));
    encoder.field("useRecoveryWindow", settings.useRecoveryWindow);
    encoder.field("useTrash", settings.useTrash);
    encoder.endObject();
}

// All or nothing, on purpose: a file that lacks a key is rejected, not completed from the defaults.
void read(const JSONObject& object, LapsaSettings& settings)
{
    settings.defaultExpirationMinutes = object.integer("defaultExpirationMinutes");
    settings.useTrash = object.boolean("useTrash");
    settings.keepPanelOpen = object.boolean("keepPanelOpen");
    settings.pauseAllCountdowns = object.boolean("pauseAllCountdowns");
    settings.enableExpiryNotifications = object.boolean("enableExpiryNotifications");
    settings.notifyBeforeMinutes = object.integer("notifyBeforeMinutes");
    settings.useRecoveryWindow = object.boolean("useRecoveryWindow");
    settings.recoveryRetentionHours = object.integer("recoveryRetentionHours");
    if (const auto theme = lapsaThemeFromRawValue(object.text("theme"))) {
        settings.theme = *theme;
    } else {
        object.fail();
    }
    settings.fileTypeRules = object.list<LapsaFileTypeRule>("fileTypeRules");
    settings.autoCleanFolders = object.list<LapsaAutoCleanFolderRule>("autoCleanFolders");
}

} // namespace lapsa
