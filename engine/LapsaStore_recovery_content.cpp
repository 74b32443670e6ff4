// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "RecoveryContent.h"
#include "RecoveryNames.h"

#include <QElapsedTimer>
#include <QPointer>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

void LapsaStore::findRecoveryContent(const std::function<void(const RecoveryContent& content)>& found)
{
    const auto work = [records = m_recoveryItems, found, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        return [store, found, content = lookIntoRecovery(records, job)]() mutable {
            if (store) {
                store->leaveOutNewCopies(content);
                found(content);
            }
        };
    };
    m_environment.lanes.look(AppPaths::recoveryDirectory().toLocalFile(), work);
}

/// What came while the lane looked has a record by now, or will have one soon.
void LapsaStore::leaveOutNewCopies(RecoveryContent& content) const
{
    if (content.withoutRecord.isEmpty()) {
        return;
    }
    QSet<QString> recorded;
    for (const LapsaRecoveryItem& record : m_recoveryItems) {
        if (!content.copies.contains(record.id)) {
            recorded.insert(record.recoveryPath);
        }
    }
    content.withoutRecord.removeIf([&](const LapsaRecoveryItem& made) {
        const bool isNew = recorded.contains(made.recoveryPath) || m_recoveryNames->isClaimed(made.displayName);
        if (isNew) {
            content.copies.remove(made.id);
        }
        return isNew;
    });
}

std::shared_ptr<LaneJob>
LapsaStore::measureRecoveryFolders(const QStringList& names,
                                   const std::function<void(const QHash<QString, std::int64_t>& sizes)>& measured)
{
    const auto work = [names, measured, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        constexpr qint64 soon = 100; // milliseconds
        QHash<QString, std::int64_t> sizes;
        QElapsedTimer sinceTold;
        sinceTold.start();
        const auto news = [&]() -> Lanes::Report {
            return [store, measured, known = std::exchange(sizes, {})] {
                if (store && !known.isEmpty()) {
                    measured(known);
                }
            };
        };
        lapsa::measureRecoveryFolders(names, job, [&](const QString& name, std::int64_t bytes) {
            sizes.insert(name, bytes);
            if (sinceTold.hasExpired(soon)) {
                sinceTold.restart();
                job.tell(news());
            }
        });
        return news();
    };
    // A lane of its own: large folders take long, and nobody should wait behind them.
    return m_environment.lanes.runOn(u"sizes in Recovery"_s, work, Lanes::AtTheEnd::Drop);
}

} // namespace lapsa
