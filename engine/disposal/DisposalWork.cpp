// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DisposalWork.h"

#include "AppPaths.h"
#include "FreeNameMove.h"
#include "LaneJob.h"
#include "WorkObserver.h"

#include <cerrno>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// In bytes.
constexpr std::int64_t soonCopied = 1 << 20;

/// The display name as one file name for the recovery folder: it can come from an edited file and contain anything.
QString recoveryFileName(const LapsaItem& item)
{
    QString name = item.displayName;
    name.replace(u'/', u'_').replace(QChar::Null, u'_');
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1) {
        return u"_"_s;
    }
    return name;
}

} // namespace

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
        const int code = gone.error().code;
        outcome.fate = code == ETXTBSY ? Fate::InUse : code == ECANCELED ? Fate::Stopped : Fate::Failed;
        outcome.error = gone.error();
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
    Result<QString> moved = moveToRecovery(item, entry);
    if (!moved) {
        return moved.error();
    }
    outcome.recoveryPath = std::move(moved).value();
    return {};
}

Result<QString> DisposalWork::moveToRecovery(const LapsaItem& item, const fileSystem::BatchEntry& entry)
{
    const QString name = u'/' + recoveryFileName(item);
    Result<QString> moved = moveToFreeName(m_batch, entry, m_recoveryFolder + name, m_freeNames);
    if (!moved && moved.error().code == ENOENT) {
        // The recovery folder was removed; ask for it again, which creates it.
        m_recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
        moved = moveToFreeName(m_batch, entry, m_recoveryFolder + name, m_freeNames);
    }
    return moved;
}

} // namespace lapsa
