// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDocument.h"
#include "LapsaSettings.h"

#include <algorithm>

namespace lapsa::fuzz {

using namespace Qt::StringLiterals;

namespace {

const QStringList keys{u"defaultExpirationMinutes"_s,
                       u"useTrash"_s,
                       u"keepPanelOpen"_s,
                       u"pauseAllCountdowns"_s,
                       u"notifyBeforeMinutes"_s,
                       u"enableExpiryNotifications"_s,
                       u"useRecoveryWindow"_s,
                       u"theme"_s,
                       u"recoveryRetentionHours"_s,
                       u"fileTypeRules"_s,
                       u"autoCleanFolders"_s};
const QStringList ruleKeys{u"enabled"_s, u"extensionsCSV"_s, u"id"_s, u"lifespanMinutes"_s};
const QStringList folderKeys{u"applyFileTypeRules"_s,   u"createdAt"_s,  u"enabled"_s,        u"folderPath"_s, u"id"_s,
                             u"includeExistingFiles"_s, u"lastScanAt"_s, u"lifespanMinutes"_s};

bool isLifespan(std::int64_t minutes)
{
    return minutes >= 1 && minutes <= maxLifespanMinutes;
}

/// Of a key that is there twice, we take the first value and the other reader the last.
bool isSaidOnce(const QByteArray& bytes, const char* key)
{
    return bytes.count(key) == 1 && !bytes.contains("\\u");
}

void checkSanitized(const LapsaSettings& settings)
{
    const LapsaSettings clean = sanitize(settings);
    demand(clean == sanitize(clean), "sanitising twice changes nothing more");
    demand(isLifespan(clean.defaultExpirationMinutes), "the default lifespan is within its bounds");
    demand(clean.notifyBeforeMinutes >= 1 && clean.notifyBeforeMinutes <= maxNotifyBeforeMinutes,
           "the lead time is within its bounds");
    demand(clean.recoveryRetentionHours >= 1 && clean.recoveryRetentionHours <= maxRecoveryRetentionHours,
           "the retention is within its bounds");
    demand(std::ranges::all_of(clean.fileTypeRules, isLifespan, &LapsaFileTypeRule::lifespanMinutes) &&
               std::ranges::all_of(clean.autoCleanFolders, isLifespan, &LapsaAutoCleanFolderRule::lifespanMinutes),
           "the lifespan of every rule is within its bounds");
    demand(clean.fileTypeRules.size() == settings.fileTypeRules.size() &&
               clean.autoCleanFolders.size() == settings.autoCleanFolders.size(),
           "sanitising drops no rule");
}

} // namespace

void run(QByteArrayView input)
{
    const QByteArray bytes = input.toByteArray();
    const auto settings = checkDocument(
        bytes, [](const QByteArray& document) { return JSONDecoder::lapsa().decode<LapsaSettings>(document); });
    if (!settings) {
        return;
    }
    checkSanitized(*settings);
    if (const auto document = readOtherwise(bytes)) {
        const QJsonObject object = document->object();
        demand(haveKeys({object}, keys), "every setting is there");
        demand(!isSaidOnce(bytes, "fileTypeRules") || haveKeys(object[u"fileTypeRules"].toArray(), ruleKeys),
               "every field of a file type rule is there");
        demand(!isSaidOnce(bytes, "autoCleanFolders") || haveKeys(object[u"autoCleanFolders"].toArray(), folderKeys),
               "every field of a folder is there");
    }
}

} // namespace lapsa::fuzz
