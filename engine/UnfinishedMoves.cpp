// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UnfinishedMoves.h"

#include "AppPaths.h"
#include "AtPath.h"
#include "DisposalWork.h"
#include "DuplicateRemoval.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FreeNames.h"
#include "InterruptedCopies.h"
#include "LaneJob.h"
#include "RecoveryFolder.h"
#include "WorkObserver.h"

#include <QHash>
#include <QSet>

#include <cerrno>
#include <optional>

namespace lapsa::unfinishedMoves {

namespace {

/// In seconds: between a move and the save of a list that knew nothing of it yet, and how coarsely disks keep times.
constexpr std::int64_t slack = 60;

class JobObserver final : public fileSystem::WorkObserver
{
public:
    explicit JobObserver(LaneJob& job)
        : m_job(job)
    {}

    void copied(std::int64_t /*bytes*/, std::int64_t /*total*/) override { m_job.alive(); }

    void removed(std::int64_t /*entries*/) override { m_job.alive(); }

    [[nodiscard]] bool stopRequested() const override { return m_job.stopRequested(); }

private:
    LaneJob& m_job;
};

Result<struct statx> statusOf(const QString& path)
{
    const Result<AtPath> place = openParentOf(path);
    return place ? statAt(place.value().folder.get(), place.value().name.constData(), STATX_BASIC_STATS)
                 : place.error();
}

bool isMissing(const QString& path)
{
    const Result<AtPath> place = openParentOf(path);
    return place ? isGone(place.value().folder.get(), place.value().name.constData())
                 : place.error().code == ENOENT || place.error().code == ENOTDIR;
}

/// Whether the name is `wanted`, or one that was free instead.
bool isVariantOf(const QString& name, const QString& wanted)
{
    if (name == fileNameVariant(wanted, 0)) {
        return true;
    }
    const FileName parts = FileName::of(name);
    for (const QString& base : {parts.base, name}) {
        bool isNumber = false;
        const qsizetype mark = base.lastIndexOf(u'-');
        const std::int64_t number = mark < 0 ? 0 : base.sliced(mark + 1).toLongLong(&isNumber);
        if (isNumber && number > 0 && name == fileNameVariant(wanted, number)) {
            return true;
        }
    }
    return false;
}

/// The names in Recovery, but not those of records.
QSet<QString> namesWithoutRecord(const QString& folder, const QSet<QString>& recorded)
{
    QSet<QString> names;
    const Result<void> listed = fileSystem::forEachName(folder, [&](const QString& name) {
        if (!recorded.contains(name)) {
            names.insert(name);
        }
    });
    static_cast<void>(listed); // what cannot be listed is looked for at the next start
    return names;
}

/// What stands in the place of an entry under its name, or one that was free instead.
QList<QString> variantsOf(const QString& path)
{
    const QString folder = parentPath(path);
    QList<QString> variants;
    const Result<void> listed = fileSystem::forEachName(folder, [&](const QString& name) {
        if (isVariantOf(name, lastPathComponent(path))) {
            variants.push_back(folder + u'/' + name);
        }
    });
    static_cast<void>(listed); // nothing is done
    return variants;
}

} // namespace

Found find(const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items, LaneJob& job)
{
    Found found;
    const QString folder = AppPaths::recoveryDirectory().toLocalFile();
    RecoveryFolder recovery;
    QSet<QString> recorded;
    for (const LapsaRecoveryItem& record : records) {
        job.alive();
        const std::optional<QString> name = recovery.nameOf(record.recoveryPath);
        const auto status = name ? recovery.held().info(*name) : FileError::fromErrno(ENOENT);
        if (name) {
            recorded.insert(*name);
        }
        if (status && fileSystem::isUnfinished(recovery.pathOf(*name))) {
            found.marked.push_back(record);
        }
        if (status && status.value().folderOfName) {
            found.withMoreNames.push_back(record);
        }
    }
    const Result<struct statx> saved = statusOf(AppPaths::recoveryStateURL().toLocalFile());
    const QSet<QString> names = namesWithoutRecord(folder, recorded);
    for (const QString& name : names) {
        job.alive();
        Copy copy{.path = recovery.pathOf(name), .items = {}};
        const Result<struct statx> status = statusOf(copy.path);
        if (!status || (saved && status.value().stx_ctime.tv_sec + slack < saved.value().stx_mtime.tv_sec)) {
            continue;
        }
        for (const LapsaItem& item : items) {
            if (isVariantOf(name, recoveryFileName(item))) {
                copy.items.push_back(item);
            }
        }
        if (!copy.items.isEmpty()) {
            found.copies.push_back(copy);
        }
    }
    return found;
}

Fate finish(const QString& path, const QString& originalPath, const fileSystem::KnownPaths& knownPaths, LaneJob& job)
{
    const Result<struct statx> copy = statusOf(path);
    const Result<struct statx> original = statusOf(originalPath);
    if (!copy || (!original && !isMissing(originalPath))) {
        return Fate::Unknown;
    }
    if (!original) {
        // Where the disk is not there, a later start looks again.
        if (fileSystem::isDirectory(parentPath(originalPath))) {
            fileSystem::forgetCopy(path, originalPath);
        }
        return Fate::Moved;
    }
    // Only where nobody else can have led the path to another place.
    fileSystem::Batch batch(
        {.folder = AppPaths::applicationSupportDirectory().toLocalFile(), .knownPaths = &knownPaths});
    const std::optional<fileSystem::EntryInfo> info = batch.find(originalPath).info();
    if (!info) {
        return Fate::Unknown;
    }
    using fileSystem::Duplicate;
    JobObserver observer(job);
    switch (fileSystem::removeDuplicate(path, originalPath, info->identity, fileSystem::MarkIs::OnCopy, &observer)) {
    case Duplicate::Gone:
        return Fate::Gone;
    case Duplicate::Differs:
        // The file was changed since, or a part of the folder had already gone.
        fileSystem::forgetCopy(path, originalPath);
        return Fate::Moved;
    case Duplicate::Unknown:
    case Duplicate::NotMarked:
        break;
    }
    return Fate::Unknown;
}

Fate finish(const LapsaRecoveryItem& record, const fileSystem::KnownPaths& knownPaths, LaneJob& job)
{
    RecoveryFolder recovery;
    const std::optional<QString> name = recovery.nameOf(record.recoveryPath);
    return name ? finish(recovery.pathOf(*name), record.originalPath, knownPaths, job) : Fate::Unknown;
}

bool finishPuttingBack(const LapsaRecoveryItem& record, LaneJob& job)
{
    RecoveryFolder recovery;
    const std::optional<QString> name = recovery.nameOf(record.recoveryPath);
    if (!name) {
        return false;
    }
    const QString path = recovery.pathOf(*name);
    const auto copy = recovery.held().info(*name);
    if (!copy && copy.error().code != ENOENT) {
        return false;
    }
    JobObserver observer(job);
    for (const QString& candidate : variantsOf(record.originalPath)) {
        const Result<struct statx> status = statusOf(candidate);
        if (!copy) {
            if (fileSystem::isUnfinished(candidate)) {
                fileSystem::forgetCopy(candidate, path); // only that was left to do
            }
        } else if (status && fileSystem::removeDuplicate(path, candidate, identityOf(status.value()),
                                                         fileSystem::MarkIs::OnOriginal,
                                                         &observer) == fileSystem::Duplicate::Gone) {
            fileSystem::forgetCopy(candidate, path);
            return true;
        }
    }
    return false;
}

} // namespace lapsa::unfinishedMoves
