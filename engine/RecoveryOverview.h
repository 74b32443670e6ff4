// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "RecoveryContent.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <memory>
#include <optional>

namespace lapsa {

class LaneJob;
class LapsaStore;

/// What lies in Recovery, for somebody who shows it: the records, what the folder has without one, and the sizes. Looks
/// on the lanes, and only while it is watched. Main thread only.
class RecoveryOverview final : public QObject
{
    Q_OBJECT

public:
    /// The store must outlive this object.
    explicit RecoveryOverview(LapsaStore& store, QObject* parent = nullptr);
    ~RecoveryOverview() override;

    /// Looks now, and again whenever the records change. Does nothing while it is watched already.
    void watch();
    void stopWatching();
    /// After something was done that the records do not show.
    void lookAgain();

    /// Everything in Recovery, newest first. Before the first look has come back: everything with a record.
    [[nodiscard]] QList<LapsaRecoveryItem> entries() const;
    /// How many these are.
    [[nodiscard]] qsizetype count() const;
    /// Nothing for what was not seen yet.
    [[nodiscard]] std::optional<RecoveryCopy> copyOf(const QUuid& id) const;
    /// Whether nothing has a record for it.
    [[nodiscard]] bool isWithoutRecord(const QUuid& id) const;
    /// The size of all, in bytes; nothing until every folder has been measured.
    [[nodiscard]] std::optional<std::int64_t> bytes() const;

signals:
    /// The records have changed, or a look has come back.
    void changed();
    /// More sizes are known.
    void measured();

private:
    void noteChange();
    void look();
    void see(const RecoveryContent& content);
    void measure();
    void noteSizes(const QHash<QString, std::int64_t>& sizes);

    LapsaStore& m_store;
    bool m_watched = false;
    bool m_changeNoted = false;
    bool m_looking = false;
    bool m_lookAgain = false;
    bool m_seen = false;
    QList<LapsaRecoveryItem> m_seenRecords;
    RecoveryContent m_content;
    /// Of the folders in Recovery, by the ids of their records. A copy does not change there.
    QHash<QUuid, std::int64_t> m_folderSizes;
    std::shared_ptr<LaneJob> m_measuring;
};

} // namespace lapsa
