// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CallRecords.h"

#include "FileUri.h"
#include "Refusal.h"
#include "Time.h"

#include <QHash>

#include <chrono>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

QString uriOf(const QString& path)
{
    return QString::fromLatin1(fileUri(path));
}

qlonglong secondsOf(TimePoint time)
{
    return std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
}

QString textOf(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString textOf(fileSystem::Refusal refusal)
{
    using enum fileSystem::Refusal;
    switch (refusal) {
    case Root:
        return u"root"_s;
    case Home:
        return u"home"_s;
    case ProtectedFolder:
        return u"lapsa-folder"_s;
    case MountPoint:
        return u"mount-point"_s;
    case HoldsHome:
        return u"holds-home"_s;
    case HoldsProtectedFolder:
        return u"holds-lapsa-folder"_s;
    case HoldsMountPoint:
        return u"holds-mount-point"_s;
    }
    return {};
}

QVariantMap dictionaryOf(const RecoveryResult& result)
{
    QVariantMap dictionary{{u"id"_s, textOf(result.id)}};
    if (result.copyGone) {
        dictionary.insert(u"outcome"_s, u"gone"_s);
    } else if (result.error) {
        dictionary.insert(u"outcome"_s, u"failed"_s);
        dictionary.insert(u"error"_s, result.error->description);
    } else {
        dictionary.insert(u"outcome"_s, u"put-back"_s);
        dictionary.insert(u"path"_s, result.path);
        dictionary.insert(u"uri"_s, uriOf(result.path));
        dictionary.insert(u"otherPlace"_s, result.otherPlace);
    }
    return dictionary;
}

} // namespace

QVariantMap dictionaryOf(const LapsaItem& item)
{
    return {
        {u"id"_s, item.id},           {u"name"_s, item.displayName},         {u"path"_s, item.path},
        {u"uri"_s, uriOf(item.path)}, {u"added"_s, secondsOf(item.addedAt)}, {u"expires"_s, secondsOf(item.expiresAt)},
        {u"locked"_s, item.locked}};
}

QVariantMap dictionaryOf(const LapsaRecoveryItem& record)
{
    return {{u"id"_s, textOf(record.id)},
            {u"name"_s, record.displayName},
            {u"originalPath"_s, record.originalPath},
            {u"originalUri"_s, uriOf(record.originalPath)},
            {u"path"_s, record.recoveryPath},
            {u"uri"_s, uriOf(record.recoveryPath)},
            {u"deleted"_s, secondsOf(record.deletedAt)},
            {u"purge"_s, secondsOf(record.purgeAfter)}};
}

QVariantMap dictionaryOf(const ListService::AddOutcome& outcome)
{
    QVariantMap dictionary{{u"uri"_s, uriOf(outcome.path)}, {u"path"_s, outcome.path}};
    if (outcome.item) {
        dictionary.insert(u"outcome"_s, u"added"_s);
        dictionary.insert(u"id"_s, outcome.item->id);
        dictionary.insert(u"expires"_s, secondsOf(outcome.item->expiresAt));
    } else if (outcome.refusal) {
        dictionary.insert(u"outcome"_s, u"refused"_s);
        dictionary.insert(u"reason"_s, textOf(*outcome.refusal));
    } else {
        dictionary.insert(u"outcome"_s, outcome.nothingThere ? u"missing"_s : u"waiting"_s);
    }
    return dictionary;
}

QList<QVariantMap> dictionariesOf(const QList<QUuid>& ids, const QList<RecoveryResult>& results)
{
    QHash<QUuid, QVariantMap> known;
    for (const RecoveryResult& result : results) {
        known.insert(result.id, dictionaryOf(result));
    }
    QList<QVariantMap> dictionaries;
    for (const QUuid& id : ids) {
        const QVariantMap waiting{{u"id"_s, textOf(id)}, {u"outcome"_s, u"waiting"_s}};
        dictionaries.push_back(known.value(id, waiting));
    }
    return dictionaries;
}

} // namespace lapsa
