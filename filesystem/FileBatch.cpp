// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"

#include "BatchOperations.h"
#include "OpenedFolder.h"

#include <utility>

namespace lapsa::fileSystem {

namespace {

Result<void> resultOf(int error)
{
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace

BatchEntry::BatchEntry(LocatedEntry located)
    : m_located(std::make_shared<const LocatedEntry>(std::move(located)))
{}

bool BatchEntry::exists() const
{
    return m_located->exists;
}

std::optional<EntryInfo> BatchEntry::info() const
{
    return m_located->error == 0 ? std::optional(entryInfo(m_located->place.folder.get(), m_located->status))
                                 : std::nullopt;
}

Batch::Batch(const Protection& protection)
    : m_operations(std::make_unique<BatchOperations>(protection))
{}

Batch::~Batch() = default;

void Batch::expectTrash(QStringList paths)
{
    m_operations->expectTrash(std::move(paths));
}

void Batch::announceLongWork(std::function<void(std::int64_t)> announce)
{
    m_operations->announceLongWork(std::move(announce));
}

void Batch::observe(WorkObserver* observer)
{
    m_operations->observe(observer);
}

BatchEntry Batch::find(const QString& path)
{
    return BatchEntry(m_operations->find(path));
}

BatchEntry Batch::find(const HeldFolder& folder, const QString& name)
{
    const Result<QByteArray> bytes = entryName(name);
    const int error = bytes ? folder.m_opened->error : bytes.error().code;
    if (error != 0) {
        return BatchEntry(LocatedEntry{.path = {}, .place = {}, .error = error});
    }
    return BatchEntry(BatchOperations::findAt({.folder = folder.m_opened->folder, .name = bytes.value()}));
}

Result<void> Batch::move(const BatchEntry& entry, const QString& to)
{
    return resultOf(m_operations->move(*entry.m_located, to));
}

Result<void> Batch::move(const QString& path, const QString& to)
{
    return move(find(path), to);
}

void Batch::settleCopies()
{
    m_operations->settleCopies();
}

Result<void> Batch::moveToTrash(const BatchEntry& entry)
{
    return resultOf(m_operations->moveToTrash(*entry.m_located));
}

Result<void> Batch::moveToTrash(const QString& path)
{
    return moveToTrash(find(path));
}

std::optional<TrashedEntry> Batch::lastTrashed()
{
    TrashedEntry trashed = m_operations->lastTrashed();
    const std::optional<EntryInfo> record = find(trashed.recordPath).info();
    if (trashed.path.isEmpty() || !record) {
        return std::nullopt;
    }
    trashed.recordIdentity = record->identity;
    return trashed;
}

Result<void> Batch::remove(const BatchEntry& entry)
{
    return resultOf(m_operations->remove(*entry.m_located));
}

Result<void> Batch::remove(const QString& path)
{
    return remove(find(path));
}

} // namespace lapsa::fileSystem
