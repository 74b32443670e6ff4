// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryOverview.h"

#include "LaneJob.h"
#include "LapsaStore.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace lapsa {

RecoveryOverview::RecoveryOverview(LapsaStore& store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
    connect(&m_store, &LapsaStore::willChange, this, &RecoveryOverview::noteChange);
}

RecoveryOverview::~RecoveryOverview()
{
    stopWatching();
}

void RecoveryOverview::watch()
{
    if (!std::exchange(m_watched, true)) {
        m_seenRecords = m_store.recoveryItems();
        look();
    }
}

void RecoveryOverview::stopWatching()
{
    m_watched = false;
    if (const auto job = std::exchange(m_measuring, nullptr)) {
        job->stop();
    }
}

QList<LapsaRecoveryItem> RecoveryOverview::entries() const
{
    const QList<LapsaRecoveryItem>& records = m_store.recoveryItems();
    QList<LapsaRecoveryItem> entries;
    entries.reserve(records.size() + m_content.withoutRecord.size());
    // New records are appended.
    std::copy_if(records.crbegin(), records.crend(), std::back_inserter(entries),
                 [this](const LapsaRecoveryItem& record) { return !m_content.withoutCopy.contains(record.id); });
    entries += m_content.withoutRecord;
    const auto newer = [](const LapsaRecoveryItem& one, const LapsaRecoveryItem& other) {
        return one.deletedAt > other.deletedAt;
    };
    if (!std::ranges::is_sorted(std::as_const(entries), newer)) {
        std::stable_sort(entries.begin(), entries.end(), newer);
    }
    return entries;
}

qsizetype RecoveryOverview::count() const
{
    const QList<LapsaRecoveryItem>& records = m_store.recoveryItems();
    return m_content.withoutRecord.size() + std::ranges::count_if(records, [this](const LapsaRecoveryItem& record) {
               return !m_content.withoutCopy.contains(record.id);
           });
}

std::optional<RecoveryCopy> RecoveryOverview::copyOf(const QUuid& id) const
{
    const auto found = m_content.copies.constFind(id);
    if (found == m_content.copies.cend()) {
        return std::nullopt;
    }
    RecoveryCopy copy = *found;
    if (const auto size = m_folderSizes.constFind(id); copy.isFolder && size != m_folderSizes.cend()) {
        copy.bytes = *size;
    }
    return copy;
}

bool RecoveryOverview::isWithoutRecord(const QUuid& id) const
{
    return std::ranges::any_of(m_content.withoutRecord, [&id](const LapsaRecoveryItem& made) { return made.id == id; });
}

std::optional<std::int64_t> RecoveryOverview::bytes() const
{
    if (!m_seen) {
        return std::nullopt;
    }
    std::int64_t sum = 0;
    for (auto copy = m_content.copies.cbegin(); copy != m_content.copies.cend(); ++copy) {
        const auto size = m_folderSizes.constFind(copy.key());
        if (copy->isFolder && size == m_folderSizes.cend()) {
            return std::nullopt;
        }
        sum += copy->isFolder ? *size : copy->bytes.value_or(0);
    }
    return sum;
}

void RecoveryOverview::lookAgain()
{
    if (m_watched) {
        look();
    }
}

/// Called before a change: the records are read once, on the next turn.
void RecoveryOverview::noteChange()
{
    if (!m_watched || std::exchange(m_changeNoted, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeNoted = false;
            if (m_watched && m_seenRecords != m_store.recoveryItems()) {
                m_seenRecords = m_store.recoveryItems();
                emit changed();
                look();
            }
        },
        Qt::QueuedConnection);
}

void RecoveryOverview::look()
{
    if (std::exchange(m_looking, true)) {
        m_lookAgain = true;
        return;
    }
    m_store.findRecoveryContent([overview = QPointer(this)](const RecoveryContent& content) {
        if (overview) {
            overview->see(content);
        }
    });
}

void RecoveryOverview::see(const RecoveryContent& content)
{
    m_looking = false;
    m_content = content;
    m_seen = true;
    if (!m_watched) {
        return;
    }
    emit changed();
    if (std::exchange(m_lookAgain, false)) {
        look();
    } else {
        measure();
    }
}

void RecoveryOverview::measure()
{
    if (m_measuring) {
        m_measuring->stop();
    }
    QStringList folders;
    for (auto copy = m_content.copies.cbegin(); copy != m_content.copies.cend(); ++copy) {
        if (copy->isFolder && !m_folderSizes.contains(copy.key())) {
            folders.push_back(copy->name);
        }
    }
    m_measuring = folders.isEmpty()
                      ? nullptr
                      : m_store.measureRecoveryFolders(
                            folders, [overview = QPointer(this)](const QHash<QString, std::int64_t>& sizes) {
                                if (overview) {
                                    overview->noteSizes(sizes);
                                }
                            });
}

void RecoveryOverview::noteSizes(const QHash<QString, std::int64_t>& sizes)
{
    for (auto copy = m_content.copies.cbegin(); copy != m_content.copies.cend(); ++copy) {
        if (const auto size = sizes.constFind(copy->name); copy->isFolder && size != sizes.cend()) {
            m_folderSizes.insert(copy.key(), *size);
        }
    }
    if (m_watched) {
        emit measured();
    }
}

} // namespace lapsa
