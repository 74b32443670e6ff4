// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryWork.h"

#include "AppPaths.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FreeNameMove.h"
#include "LaneJob.h"
#include "RecoveryNames.h"
#include "RestoreNote.h"
#include "WorkObserver.h"

#include <QScopeGuard>

#include <cerrno>
#include <utility>

namespace lapsa {

/// Passes progress to the job, and asks it and the user's wish whether to go on.
class RecoveryWork::Observer final : public fileSystem::WorkObserver
{
public:
    Observer(LaneJob& job, const std::atomic<bool>& stop, RecoveryWay way)
        : m_job(job)
        , m_stop(stop)
        , m_countsRemoved(way == RecoveryWay::Delete)
    {}

    void copied(std::int64_t bytes, std::int64_t total) override { m_job.report(bytes, total); }

    void removed(std::int64_t entries) override
    {
        if (m_countsRemoved) {
            m_job.report(entries, 0);
        } else {
            m_job.alive(); // the originals of a copy
        }
    }

    [[nodiscard]] bool stopRequested() const override { return m_stop || m_job.stopRequested(); }

private:
    LaneJob& m_job;
    const std::atomic<bool>& m_stop;
    bool m_countsRemoved;
};

RecoveryWork::RecoveryWork(std::shared_ptr<const RecoveryPlan> plan, std::function<void()> announce)
    : m_plan(std::move(plan))
    , m_announce(std::move(announce))
    , m_batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile()})
{
    m_batch.announceLongWork([this](std::int64_t) {
        if (m_plan->way == RecoveryWay::PutBack) {
            note(*m_current);
        }
        m_announce();
    });
}

RecoveryWork::~RecoveryWork()
{
    dropNoted();
}

RecoveryResult RecoveryWork::run(std::size_t number, LaneJob& job)
{
    const LapsaRecoveryItem& record = m_plan->records[qsizetype(number)];
    Observer observer(job, m_plan->stops[number], m_plan->way);
    if (observer.stopRequested()) {
        return {.id = record.id, .error = FileError::fromErrno(ECANCELED)};
    }
    const std::optional<QString> name = m_recovery.nameOf(record.recoveryPath);
    if (!name) {
        // Not one of our copies, whatever the record says.
        return fileSystem::exists(record.recoveryPath)
                   ? RecoveryResult{.id = record.id, .error = FileError::fromErrno(EPERM)}
                   : RecoveryResult{.id = record.id, .copyGone = true};
    }
    // A purge that begins now must not take it.
    if (!m_plan->names->claim(*name)) {
        return {.id = record.id, .error = FileError::fromErrno(EBUSY)};
    }
    m_current = &record;
    m_batch.observe(&observer);
    const auto end = qScopeGuard([&] {
        m_batch.observe(nullptr);
        m_plan->names->release(*name);
    });
    return handle(record, *name);
}

RecoveryResult RecoveryWork::handle(const LapsaRecoveryItem& record, const QString& name)
{
    const fileSystem::BatchEntry copy = m_batch.find(m_recovery.held(), name);
    if (!copy.exists()) {
        return {.id = record.id, .copyGone = true};
    }
    if (m_plan->way == RecoveryWay::PutBack) {
        return putBack(record, copy);
    }
    const Result<void> removed = m_batch.remove(copy);
    return {.id = record.id, .error = removed ? std::nullopt : std::optional(removed.error())};
}

RecoveryResult RecoveryWork::putBack(const LapsaRecoveryItem& record, const fileSystem::BatchEntry& copy)
{
    const QString folder = parentPath(record.originalPath);
    const bool known = std::exchange(m_lastFolder, folder) == folder;
    Result<NewPlace> moved = FileError::fromErrno(ENOENT);
    if (known) {
        moved = moveToFreeName(m_batch, copy, record.originalPath, m_freeNames);
    }
    // The first in its folder, or the folder has gone since.
    if (!moved && moved.error().code == ENOENT) {
        if (const auto made = fileSystem::createDirectory(folder, fileSystem::Access::Default); !made) {
            return {.id = record.id, .error = made.error()};
        }
        moved = moveToFreeName(m_batch, copy, record.originalPath, m_freeNames);
    }
    if (!moved) {
        m_noted.clear(); // stays on disk: something may be left in the folder
        return {.id = record.id, .error = moved.error()};
    }
    if (moved.value().isCopy) {
        m_noted.clear(); // stays on disk: the next start finishes it
    }
    return {.id = record.id,
            .path = moved.value().path,
            .otherPlace = moved.value().path != record.originalPath,
            .copyStays = moved.value().isCopy};
}

/// A start finds by the note what a power cut brings back: first it must be on the disk that it is gone.
void RecoveryWork::dropNoted()
{
    m_batch.settleCopies();
    restoreNote::drop(std::exchange(m_noted, {}));
}

// Once for all copies that go to the same folder: each write waits for the disk.
void RecoveryWork::note(const LapsaRecoveryItem& record)
{
    const QString folder = parentPath(record.originalPath);
    if (!m_noted.isEmpty() && parentPath(m_noted.constFirst().originalPath) == folder) {
        return;
    }
    dropNoted();
    for (const LapsaRecoveryItem& other : m_plan->records) {
        if (parentPath(other.originalPath) == folder) {
            m_noted.push_back(other);
        }
    }
    restoreNote::write(m_noted);
}

} // namespace lapsa
