// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ParentCache.h"
#include "Protection.h"
#include "Result.h"
#include "TrashedEntry.h"

#include <QString>
#include <QStringList>

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace lapsa {

class TrashFolder;
class UnsettledCopies;

namespace fileSystem {
class WorkObserver;
} // namespace fileSystem

/// An entry as a batch found it.
struct LocatedEntry
{
    /// As requested; empty for an entry of a HeldFolder.
    QString path;
    AtPath place;
    /// Why it cannot be used, an `errno` value; 0 if `status` is valid.
    int error = 0;
    struct statx status = {};
    /// What BatchEntry::exists() returns.
    bool exists = false;
};

/// Implements fileSystem::Batch on open folders. The operations return `errno` values.
class BatchOperations final
{
public:
    explicit BatchOperations(const fileSystem::Protection& protection);
    BatchOperations(const BatchOperations&) = delete;
    BatchOperations& operator=(const BatchOperations&) = delete;
    ~BatchOperations();

    void expectTrash(QStringList paths);

    void announceLongWork(std::function<void(std::int64_t)> announce) { m_announce = std::move(announce); }

    void observe(fileSystem::WorkObserver* observer) { m_observer = observer; }

    [[nodiscard]] LocatedEntry find(const QString& path);
    [[nodiscard]] static LocatedEntry findAt(AtPath place);

    [[nodiscard]] int move(const LocatedEntry& entry, const QString& to);

    void settleCopies();

    [[nodiscard]] int moveToTrash(const LocatedEntry& entry);
    [[nodiscard]] int remove(const LocatedEntry& entry);

    /// Of the last successful moveToTrash(), without the identity of the record; empty paths if they are not UTF-8.
    [[nodiscard]] const fileSystem::TrashedEntry& lastTrashed() const { return m_lastTrashed; }

private:
    [[nodiscard]] LocatedEntry locate(const QString& path);
    [[nodiscard]] int checkUnprotected(const LocatedEntry& entry) const;
    [[nodiscard]] int rename(const LocatedEntry& entry);
    void skipExpectedBefore(const QString& path);
    [[nodiscard]] int moveToHomeTrash(const LocatedEntry& entry);
    [[nodiscard]] Result<TrashFolder>& homeTrash();
    [[nodiscard]] int take(const LocatedEntry& entry, TrashFolder& trash);
    void announce(const LocatedEntry& entry) const;

    fileSystem::Protection m_protection;
    ParentCache m_source;
    ParentCache m_destination;
    std::unique_ptr<UnsettledCopies> m_unsettled;
    std::unique_ptr<Result<TrashFolder>> m_homeTrash;
    int m_homeTrashSharing = 0;
    fileSystem::TrashedEntry m_lastTrashed;
    QStringList m_expected;
    /// The position of the next expected path.
    qsizetype m_expectedPosition = 0;
    std::function<void(std::int64_t)> m_announce;
    fileSystem::WorkObserver* m_observer = nullptr;
};

} // namespace lapsa
