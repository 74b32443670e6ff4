// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryContent.h"

#include "AppPaths.h"
#include "AtPath.h"
#include "CopyProgress.h"
#include "FolderListing.h"
#include "InterruptedCopies.h"
#include "LaneJob.h"
#include "OpenedFolder.h"
#include "RecoveryFolder.h"
#include "SystemCalls.h"
#include "TreeSize.h"
#include "UserFolders.h"
#include "WorkObserver.h"

#include <QSet>

#include <fcntl.h>

#include <chrono>
#include <utility>

namespace lapsa {

namespace {

struct Entry
{
    RecoveryCopy copy;
    TimePoint came;
};

/// When the entry came to this folder: nothing else changes a copy there.
TimePoint changeOf(const struct statx& status)
{
    return TimePoint(std::chrono::seconds(status.stx_ctime.tv_sec) +
                     std::chrono::microseconds(status.stx_ctime.tv_nsec / 1000));
}

/// By name. Empty if the folder cannot be listed.
QHash<QString, Entry> entriesOf(const QString& path, LaneJob& job)
{
    QHash<QString, Entry> entries;
    const Result<FileDescriptor> folder = openAt(AT_FDCWD, path.toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    if (!folder) {
        return entries;
    }
    const int descriptor = folder.value().get();
    const int listing = forEachRawEntry(descriptor, [&](const dirent& entry) {
        job.alive();
        const QString name = nameText(entry.d_name);
        const auto status = statAt(descriptor, entry.d_name, STATX_BASIC_STATS);
        if (!name.isEmpty() && status && !isInterruptedCopy(descriptor, entry.d_name)) {
            const bool isFolderEntry = isFolder(status.value());
            const auto bytes = static_cast<std::int64_t>(status.value().stx_size);
            entries.insert(name, {.copy = {.name = name,
                                           .isFolder = isFolderEntry,
                                           .bytes = isFolderEntry ? std::nullopt : std::optional(bytes)},
                                  .came = changeOf(status.value())});
        }
        return !job.stopRequested();
    });
    static_cast<void>(listing); // what cannot be listed cannot be shown
    return entries;
}

/// Where something goes whose old place nobody knows.
QString placeForUnknown()
{
    const QString downloads = userFolders::downloads();
    return downloads.isEmpty() ? userFolders::home().value(0) : downloads;
}

LapsaRecoveryItem madeUp(const Entry& entry, const QString& folder, const QString& place)
{
    static const QUuid names = QUuid::fromString(QStringView(u"8c1a7a5e-9d0f-5b57-9d3b-0d1b6b1a6f42"));
    const QString& name = entry.copy.name;
    return {.id = QUuid::createUuidV5(names, name),
            .originalPath = place + u'/' + name,
            .recoveryPath = folder + u'/' + name,
            .displayName = name,
            .deletedAt = entry.came,
            .purgeAfter = distantFuture};
}

/// Tells the job of signs of life, and ends with it.
class MeasureObserver final : public fileSystem::WorkObserver
{
public:
    explicit MeasureObserver(LaneJob& job)
        : m_job(job)
    {}

    void copied(std::int64_t, std::int64_t) override { m_job.alive(); }

    void removed(std::int64_t) override {}

    [[nodiscard]] bool stopRequested() const override { return m_job.stopRequested(); }

private:
    LaneJob& m_job;
};

} // namespace

RecoveryContent lookIntoRecovery(const QList<LapsaRecoveryItem>& records, LaneJob& job)
{
    const QString folder = AppPaths::recoveryDirectory().toLocalFile();
    const QHash<QString, Entry> entries = entriesOf(folder, job);
    RecoveryContent content;
    RecoveryFolder recovery;
    QSet<QString> recorded;
    for (const LapsaRecoveryItem& record : records) {
        const std::optional<QString> name = recovery.nameOf(record.recoveryPath);
        const auto entry = name ? entries.constFind(*name) : entries.cend();
        if (entry != entries.cend()) {
            content.copies.insert(record.id, entry->copy);
            recorded.insert(*name);
        } else {
            content.withoutCopy.insert(record.id);
        }
    }
    const QString place = placeForUnknown();
    for (const Entry& entry : entries) {
        if (!recorded.contains(entry.copy.name)) {
            content.withoutRecord.push_back(madeUp(entry, folder, place));
            content.copies.insert(content.withoutRecord.constLast().id, entry.copy);
        }
    }
    return content;
}

void measureRecoveryFolders(const QStringList& names, LaneJob& job,
                            const std::function<void(const QString& name, std::int64_t bytes)>& measured)
{
    const QByteArray path = AppPaths::recoveryDirectory().toLocalFile().toUtf8();
    Result<FileDescriptor> opened = openAt(AT_FDCWD, path.constData(), O_PATH | O_DIRECTORY);
    if (!opened) {
        return;
    }
    const SharedDescriptor recovery(std::move(opened).value());
    MeasureObserver observer(job);
    for (const QString& name : names) {
        if (job.stopRequested()) {
            return;
        }
        job.alive();
        const Result<QByteArray> bytes = entryName(name);
        if (!bytes) {
            continue;
        }
        const AtPath place{.folder = recovery, .name = bytes.value()};
        const Result<struct statx> status = statAt(place.folder.get(), place.name.constData(), STATX_BASIC_STATS);
        if (!status || !isFolder(status.value())) {
            continue;
        }
        CopyProgress progress({}, &observer);
        if (const auto size = sizeOfTree(place, identityOf(status.value()), progress)) {
            measured(name, size.value().bytes);
        }
    }
}

} // namespace lapsa
