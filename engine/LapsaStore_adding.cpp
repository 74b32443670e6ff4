// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FoundFile.h"
#include "LifespanRules.h"

#include <QHash>

#include <algorithm>

namespace lapsa {

namespace {

/// Finds the first item of a path. Many look-ups get a table, one alone does not pay for it.
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
        // From the back, so that of equal paths the first one stays.
        for (qsizetype position = items.size() - 1; position >= 0; --position) {
            m_positions.insert(items[position].path, position);
        }
    }

    /// The position of the first item of that path, or -1.
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

} // namespace

void LapsaStore::addFiles(const QList<QUrl>& urls)
{
    addFiles(urls, {});
}

void LapsaStore::addFiles(const QList<QUrl>& urls, const AddOptions& options)
{
    QList<FoundFile> found;
    found.reserve(urls.size());
    for (const QUrl& url : urls) {
        const std::optional<QString> path = fileSystem::standardizedPath(url);
        if (!path) {
            continue;
        }
        if (const fileSystem::Status status = fileSystem::status(*path); status.exists) {
            found.push_back({.path = *path, .isDirectory = status.isDirectory});
        }
    }
    addFound(found, options);
}

void LapsaStore::addFound(const QList<FoundFile>& files, const AddOptions& options)
{
    if (files.isEmpty()) {
        return;
    }
    const LifespanRules rules(settings());
    const Clock& clock = m_environment.clock;
    const auto lifespanOf = [&](const FoundFile& file) {
        std::int64_t minutes = settings().defaultExpirationMinutes;
        if (options.fixedLifespan) {
            minutes = *options.fixedLifespan;
        } else if (options.applyFileTypeRules && !file.isDirectory) {
            minutes = rules.lifespanFor(lastPathComponent(file.path));
        }
        // No upper bound here, on purpose: a given lifespan is taken at its word. Only the rules bound their own.
        return std::max<std::int64_t>(minutes, 1);
    };

    emit willChange();
    ItemsByPath known(m_items, files.size());
    for (const FoundFile& file : files) {
        const std::int64_t minutes = lifespanOf(file);
        if (const qsizetype position = known.find(file.path); position >= 0) {
            LapsaItem& item = m_items[position];
            item.expiresAt = addingMinutes(clock.now(), minutes);
            item.fiveMinuteWarningSent = false;
            continue;
        }
        known.added(file.path, m_items.size());
        const TimePoint addedAt = clock.now();
        m_items.push_back({
            .id = newItemId(),
            .path = file.path,
            .displayName = lastPathComponent(file.path),
            .addedAt = addedAt,
            .expiresAt = addingMinutes(clock.now(), minutes),
        });
    }
    m_lastMessage.reset();
    saveSoon();
}

} // namespace lapsa
