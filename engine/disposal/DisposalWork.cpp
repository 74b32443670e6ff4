// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DisposalWork.h"

#include "AppPaths.h"
#include "FileCount.h"
#include "FreeNameMove.h"
#include "LaneJob.h"
#include "WorkObserver.h"

#include <QDeadlineTimer>

#include <cerrno>
#include <chrono>
#include <limits>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// In bytes.
constexpr std::int64_t soonCopied = 1 << 20;

DisposalOutcome::Fate fateAfter(const FileError& error)
{
    using Fate = DisposalOutcome::Fate;
    switch (error.code) {
    case ETXTBSY:
        return Fate::InUse;
    case ECANCELED:
        return Fate::Stopped;
    case EINPROGRESS:
        return Fate::Unfinished;
    default:
        return Fate::Failed;
    }
}

/// Negative if it is not known. The end of the program does not wait for it.
std::int64_t countLeft(const QString& folder, LaneJob& job)
{
    constexpr std::chrono::seconds longest{10};
    const auto goesOn = [&job] {
        job.alive();
        return !job.stopRequested();
    };
    const std::optional<fileSystem::FileCount> count = fileSystem::countFiles(
        folder,
        {.most = std::numeric_limits<std::int64_t>::max(), .deadline = QDeadlineTimer(longest), .goesOn = goesOn});
    return count && count->whole ? count->files : -1;
}

} // namespace

QString recoveryFileName(const LapsaItem& item)
{
    QString name = item.displayName;
    name.replace(u'/', u'_').replace(QChar::Null, u'_');
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1) {
        return u"_"_s;
    }
    return name;
}

/// Passes progress to the job, and asks it and the user's wish whether to go on.
class DisposalWork::Observer final : public fileSystem::WorkObserver
{
public:
    Observer(LaneJob& job, const std::atomic<bool>& stop, DisposalWay way)
        : m_job(job)
        , m_stop(stop)
        , m_countsRemoved(way == DisposalWay::ForGood)
    {}

    void copied(std::int64_t bytes, std::int64_t total) override { m_job.report(bytes, total); }

    void removed(std::int64_t entries) override
    {
        if (m_countsRemoved) {
            m_removed = entries;
            m_job.report(entries, 0);
        } else {
            m_job.alive(); // the originals of a copy
        }
    }

    [[nodiscard]] bool stopRequested() const override { return m_stop || m_job.stopRequested(); }

    [[nodiscard]] bool removedAnything() const { return m_removed > 0; }

private:
    LaneJob& m_job;
    const std::atomic<bool>& m_stop;
    bool m_countsRemoved;
    std::int64_t m_removed = 0;
};

DisposalWork::DisposalWork(std::shared_ptr<const DisposalPlan> plan, LongWork announce)
    : m_plan(std::move(plan))
    , m_announce(std::move(announce))
    , m_batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile(), .knownPaths = &m_plan->knownPaths})
    , m_recoveryFolder(AppPaths::recoveryDirectory().toLocalFile())
    , m_freeNames(m_plan->recoveryNames)
    , m_locked(m_plan->lockedPaths, m_plan->lockedPlaces)
{
    m_batch.announceLongWork([this](std::int64_t bytes) {
        m_copied = bytes > soonCopied;
        m_announce(bytes);
    });
}

DisposalWork::~DisposalWork() = default;

DisposalOutcome DisposalWork::dispose(std::size_t number, LaneJob& job)
{
    using Fate = DisposalOutcome::Fate;
    const LapsaItem& item = m_plan->items[qsizetype(number)];
    Observer observer(job, m_plan->stops[number], m_plan->way);
    if (observer.stopRequested()) {
        return {.fate = Fate::Stopped};
    }
    if (m_plan->way == DisposalWay::Trash && !std::exchange(m_trashExpected, true)) {
        QStringList paths;
        for (qsizetype next = qsizetype(number); next < m_plan->items.size(); ++next) {
            paths.push_back(m_plan->items[next].path);
        }
        m_batch.expectTrash(paths);
    }
    const fileSystem::BatchEntry entry = m_batch.find(item.path);
    const std::optional<fileSystem::EntryInfo> info = entry.info();
    if (info && isHeld(item, *info)) {
        return {.fate = Fate::HeldByLock};
    }
    // Somebody else removed the file: there is nothing to do or report. A relative path, possible in an edited file, is
    // refused below like everything else that must not be touched.
    if (!entry.exists() && item.path.startsWith(u'/')) {
        return {.fate = Fate::NothingThere};
    }
    DisposalOutcome outcome{.wasFolder = info && info->isDirectory};
    m_copied = false;
    m_batch.observe(&observer);
    const Result<void> gone = goTheWay(item, entry, outcome);
    m_batch.observe(nullptr);
    outcome.wasCopied = m_copied;
    if (!gone) {
        outcome.fate = fateAfter(gone.error());
        outcome.error = gone.error();
    }
    if (outcome.fate == Fate::Stopped && observer.removedAnything()) {
        outcome.filesLeft = countLeft(item.path, job);
    }
    return outcome;
}

bool DisposalWork::isHeld(const LapsaItem& item, const fileSystem::EntryInfo& info) const
{
    return (!m_plan->byHand && m_locked.includes(item.path, info)) || m_locked.lieIn(item.path, info);
}

Result<void> DisposalWork::goTheWay(const LapsaItem& item, const fileSystem::BatchEntry& entry,
                                    DisposalOutcome& outcome)
{
    switch (m_plan->way) {
    case DisposalWay::Trash: {
        Result<void> moved = m_batch.moveToTrash(entry);
        if (moved && m_plan->byHand) {
            outcome.trashed = m_batch.lastTrashed();
        }
        return moved;
    }
    case DisposalWay::ForGood:
        return m_batch.remove(entry);
    case DisposalWay::Recovery:
        break;
    }
    const Result<NewPlace> moved = moveToRecovery(item, entry);
    if (!moved) {
        return moved.error();
    }
    outcome.recoveryPath = moved.value().path;
    outcome.fate = moved.value().isCopy ? DisposalOutcome::Fate::Unfinished : DisposalOutcome::Fate::Done;
    return {};
}

Result<NewPlace> DisposalWork::moveToRecovery(const LapsaItem& item, const fileSystem::BatchEntry& entry)
{
    const QString name = u'/' + recoveryFileName(item);
    Result<NewPlace> moved = moveToFreeName(m_batch, entry, m_recoveryFolder + name, m_freeNames);
    if (!moved && moved.error().code == ENOENT) {
        // The recovery folder was removed; ask for it again, which creates it.
        m_recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
        moved = moveToFreeName(m_batch, entry, m_recoveryFolder + name, m_freeNames);
    }
    return moved;
}

} // namespace lapsa
