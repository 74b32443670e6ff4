// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryMessages.h"

#include "FileName.h"
#include "Localized.h"
#include "RecoveryTexts.h"
#include "TextStyle.h"

#include <QHash>

#include <algorithm>
#include <cerrno>

namespace lapsa::recoveryMessages {

using namespace Qt::StringLiterals;

namespace {

using recoveryTexts::shortPath;

/// What has failed, without what was stopped on purpose or is under way twice.
bool hasFailed(const RecoveryResult& result)
{
    return result.copyGone || (result.error && result.error->code != ECANCELED && result.error->code != EBUSY);
}

QString shownName(const LapsaRecoveryItem& record)
{
    return singleLine(record.displayName);
}

/// Why a copy cannot go to a folder, as the end of a sentence.
QString reasonFor(const FileError& error, const QString& folder)
{
    switch (error.code) {
    case EACCES:
    case EPERM:
    case EROFS:
        return Localized::text(u"%1 cannot be written to"_s, u"non si può scrivere in %1"_s).arg(folder);
    case ENOSPC:
    case EDQUOT:
        return Localized::text(u"there is not enough room in %1"_s, u"non c’è abbastanza spazio in %1"_s).arg(folder);
    case EEXIST:
    case ENOTDIR:
        return Localized::text(u"a file is in the way of %1"_s, u"un file occupa il posto di %1"_s).arg(folder);
    default:
        return error.description;
    }
}

QString failureOf(const LapsaRecoveryItem& record, const RecoveryResult& result)
{
    const QString name = shownName(record);
    if (result.copyGone) {
        return Localized::text(u"%1 is no longer in Recovery."_s, u"%1 non è più in Recupero."_s).arg(name);
    }
    const QString folder = singleLine(shortPath(parentPath(record.originalPath)));
    return Localized::text(u"%1 stays in Recovery: %2."_s, u"%1 resta in Recupero: %2."_s)
        .arg(name, reasonFor(*result.error, folder));
}

QString placeOf(const LapsaRecoveryItem& record, const RecoveryResult& result)
{
    const QString name = shownName(record);
    const QString folder = singleLine(shortPath(parentPath(result.path)));
    const QString newName = singleLine(lastPathComponent(result.path));
    if (result.otherPlace && newName != lastPathComponent(record.originalPath)) {
        return Localized::text(u"%1 is back in %2 as %3."_s, u"%1 è di nuovo in %2 come %3."_s)
            .arg(name, folder, newName);
    }
    return Localized::text(u"%1 is back in %2."_s, u"%1 è di nuovo in %2."_s).arg(name, folder);
}

QString placesOf(qsizetype files, qsizetype renamed)
{
    const QString all =
        Localized::text(u"%1 files are back"_s, u"%1 file sono di nuovo al loro posto"_s).arg(Localized::number(files));
    if (renamed == 0) {
        return all + Localized::text(u" where they were."_s, u"."_s);
    }
    return all + (renamed == 1 ? Localized::text(u", one of them under another name."_s, u", uno con un altro nome."_s)
                               : Localized::text(u", %1 of them under another name."_s, u", %1 con un altro nome."_s)
                                     .arg(Localized::number(renamed)));
}

/// Results with their records.
struct Sorted
{
    QHash<QUuid, LapsaRecoveryItem> records;
    QList<RecoveryResult> done;
    QList<RecoveryResult> failed;
};

Sorted sorted(const QList<LapsaRecoveryItem>& asked, const QList<RecoveryResult>& results)
{
    Sorted sorted;
    for (const LapsaRecoveryItem& record : asked) {
        sorted.records.insert(record.id, record);
    }
    for (const RecoveryResult& result : results) {
        if (hasFailed(result)) {
            sorted.failed.push_back(result);
        } else if (!result.error) {
            sorted.done.push_back(result);
        }
    }
    return sorted;
}

} // namespace

Message putBack(const QList<LapsaRecoveryItem>& asked, const QList<RecoveryResult>& results)
{
    const Sorted found = sorted(asked, results);
    if (!found.failed.isEmpty()) {
        const RecoveryResult& first = found.failed.constFirst();
        const QString why = failureOf(found.records.value(first.id), first);
        if (found.failed.size() == 1) {
            return {.text = why, .failed = true};
        }
        return {.text =
                    Localized::text(u"%1 files were not put back. %2"_s, u"%1 file non sono stati ripristinati. %2"_s)
                        .arg(Localized::number(found.failed.size()), why),
                .failed = true};
    }
    if (found.done.isEmpty()) {
        return {};
    }
    if (found.done.size() == 1) {
        const RecoveryResult& only = found.done.constFirst();
        return {.text = placeOf(found.records.value(only.id), only)};
    }
    return {.text = placesOf(found.done.size(), std::ranges::count_if(found.done, &RecoveryResult::otherPlace))};
}

Message deleted(const QList<LapsaRecoveryItem>& asked, const QList<RecoveryResult>& results)
{
    const Sorted found = sorted(asked, results);
    const auto first =
        std::ranges::find_if(found.failed, [](const RecoveryResult& result) { return !result.copyGone; });
    if (first == found.failed.cend()) {
        return {};
    }
    return {.text = Localized::text(u"%1 could not be deleted: %2."_s, u"Impossibile eliminare %1: %2."_s)
                        .arg(shownName(found.records.value(first->id)), first->error->description),
            .failed = true};
}

} // namespace lapsa::recoveryMessages
