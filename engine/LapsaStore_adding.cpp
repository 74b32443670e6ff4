// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddedLifespans.h"
#include "AppPaths.h"
#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FoundFile.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace lapsa {

namespace {

/// Finds the first item with a path. A table is built only for several look-ups; for one it does not pay.
class ItemsByPath
{
public:
    ItemsByPath(const QList<LapsaItem>& items, qsizetype expectedLookUps)
        : m_items(items)
        , m_indexed(expectedLookUps > 1)
    {
        if (!m_indexed) {
            return;
        }
        m_positions.reserve(items.size() + expectedLookUps);
        // From the back, so that the first of several equal paths wins.
        for (qsizetype position = items.size() - 1; position >= 0; --position) {
            m_positions.insert(items[position].path, position);
        }
    }

    /// The position of the first item with that path, or -1.
    [[nodiscard]] qsizetype find(const QString& path) const
    {
        if (m_indexed) {
            return m_positions.value(path, -1);
        }
        const auto found = std::ranges::find(m_items, path, &LapsaItem::path);
        return found == m_items.cend() ? -1 : found - m_items.cbegin();
    }

    void added(const QString& path, qsizetype position)
    {
        if (m_indexed) {
            m_positions.insert(path, position);
        }
    }

private:
    const QList<LapsaItem>& m_items;
    bool m_indexed;
    QHash<QString, qsizetype> m_positions;
};

/// Reads the clock twice, once for each time in the record.
LapsaItem newItem(const QString& path, std::int64_t minutes, const Clock& clock)
{
    const TimePoint addedAt = clock.now();
    return {
        .id = newItemId(),
        .path = path,
        .displayName = lastPathComponent(path),
        .addedAt = addedAt,
        .expiresAt = addingMinutes(clock.now(), minutes),
    };
}

/// Why Lapsa never takes the entry at `path`, if so.
std::optional<fileSystem::Refusal> refusalOf(const QString& path)
{
    return fileSystem::refusalOf(path, {.folder = AppPaths::applicationSupportDirectory().toLocalFile()});
}

} // namespace

AddResult LapsaStore::addFiles(const QList<QUrl>& urls)
{
    return addFiles(urls, {});
}

AddResult LapsaStore::addFiles(const QList<QUrl>& urls, const AddOptions& options)
{
    QList<FoundFile> found;
    found.reserve(urls.size());
    QList<AddResult::Refused> refused;
    for (const QUrl& url : urls) {
        const std::optional<QString> path = fileSystem::standardizedPath(url);
        if (!path) {
            continue;
        }
        const fileSystem::Status status = fileSystem::status(*path);
        if (!status.exists) {
            continue;
        }
        // Only these can be refused, so a drop of thousands of files costs one look-up each.
        const auto refusal = status.isDirectory || status.isMountPoint ? refusalOf(*path) : std::nullopt;
        if (refusal) {
            refused.push_back({.path = *path, .reason = *refusal});
        } else {
            found.push_back({.path = *path, .isDirectory = status.isDirectory});
        }
    }
    AddResult result = addFound(found, options);
    result.refused = std::move(refused);
    return result;
}

AddResult LapsaStore::addFound(const QList<FoundFile>& files, const AddOptions& options)
{
    if (files.isEmpty()) {
        return {};
    }
    const AddedLifespans lifespans(settings(), options);
    const Clock& clock = m_environment.clock;

    emit willChange();
    AddResult result;
    result.ids.reserve(files.size());
    ItemsByPath known(m_items, files.size());
    QStringList paths;
    for (const FoundFile& file : files) {
        paths.push_back(file.path);
        const std::int64_t minutes = lifespans.minutesFor(lastPathComponent(file.path), file.isDirectory);
        if (const qsizetype position = known.find(file.path); position >= 0) {
            LapsaItem& item = m_items[position];
            item.expiresAt = addingMinutes(clock.now(), minutes);
            item.fiveMinuteWarningSent = false;
            result.ids.push_back(item.id);
            continue;
        }
        known.added(file.path, m_items.size());
        m_items.push_back(newItem(file.path, minutes, clock));
        result.ids.push_back(m_items.constLast().id);
        if (file.isDirectory) {
            result.newFolders.push_back(file.path);
        }
    }
    m_knownPaths.remember(paths);
    m_lastMessage.reset();
    saveSoon();
    return result;
}

} // namespace lapsa
