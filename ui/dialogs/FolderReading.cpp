// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderReading.h"

#include "FileSystem.h"
#include "LaneJob.h"

#include <QCollator>
#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace lapsa {

namespace {

/// In one portion, after which others get their turn on the lane.
constexpr int mostAtOnce = 500;

/// Compares entries, and gives a sign of life now and then.
class Comparison final
{
public:
    Comparison(const ListOrder& order, LaneJob& job)
        : m_order(order)
        , m_job(&job)
    {
        m_names.setNumericMode(true);
        m_names.setCaseSensitivity(Qt::CaseInsensitive);
    }

    [[nodiscard]] bool isBefore(const ListedEntry& left, const ListedEntry& right)
    {
        constexpr int comparisonsPerSign = 4096;
        if (++m_comparisons % comparisonsPerSign == 0) {
            m_job->alive();
        }
        return m_order.descending ? ascends(right, left) : ascends(left, right);
    }

private:
    [[nodiscard]] bool ascends(const ListedEntry& left, const ListedEntry& right) const
    {
        if (m_order.by == ListOrder::By::Changed) {
            return left.changed != right.changed ? left.changed < right.changed : namesAscend(left, right);
        }
        if (left.isFolder != right.isFolder) {
            return left.isFolder;
        }
        return m_order.by == ListOrder::By::Size && left.size != right.size ? left.size < right.size
                                                                            : namesAscend(left, right);
    }

    [[nodiscard]] bool namesAscend(const ListedEntry& left, const ListedEntry& right) const
    {
        const int order = m_names.compare(left.name, right.name);
        return order != 0 ? order < 0 : left.name < right.name;
    }

    ListOrder m_order;
    LaneJob* m_job;
    QCollator m_names;
    int m_comparisons = 0;
};

std::int64_t changeOf(const QFileInfo& info)
{
    return info.lastModified().toMSecsSinceEpoch();
}

} // namespace

void sortEntries(ListedEntries& entries, const ListOrder& order, LaneJob& job)
{
    Comparison comparison(order, job);
    std::ranges::sort(
        entries, [&comparison](const auto& left, const auto& right) { return comparison.isBefore(*left, *right); });
}

FolderReading::FolderReading(QString folder, bool foldersOnly)
    : m_folder(std::move(folder))
    , m_foldersOnly(foldersOnly)
{}

std::optional<std::int64_t> FolderReading::changeOf(const QString& folder)
{
    const QFileInfo info(folder);
    return info.isDir() ? std::optional(lapsa::changeOf(info)) : std::nullopt;
}

/// Names are had soon, what they name is not.
void FolderReading::begin(LaneJob& job)
{
    m_hasBegun = true;
    m_change = changeOf(m_folder);
    m_foundFolder = m_change.has_value();
    std::ignore = fileSystem::forEachName(m_folder, [&](const QString& name) {
        m_names.push_back(name);
        job.alive();
    });
}

void FolderReading::readOn(LaneJob& job)
{
    if (!m_hasBegun) {
        begin(job);
    }
    for (int read = 0; read < mostAtOnce && !job.stopRequested() && !m_names.isEmpty(); ++read) {
        const QString name = m_names.takeLast();
        const QFileInfo info(m_folder + u'/' + name);
        const bool isFolder = info.isDir();
        if (isFolder || (!m_foldersOnly && info.isFile())) {
            m_unsorted.push_back(std::make_shared<ListedEntry>(ListedEntry{.name = name,
                                                                           .isFolder = isFolder,
                                                                           .size = isFolder ? 0 : info.size(),
                                                                           .changed = lapsa::changeOf(info)}));
        }
        job.alive();
    }
    m_isOver = m_names.isEmpty();
}

const ListedEntries& FolderReading::sorted(const ListOrder& order, LaneJob& job)
{
    const bool another = std::exchange(m_order, order) != order;
    if (another) {
        m_unsorted.insert(m_unsorted.end(), m_sorted.begin(), m_sorted.end());
        m_sorted.clear();
    }
    sortEntries(m_unsorted, order, job);
    ListedEntries merged;
    merged.reserve(count());
    Comparison comparison(order, job);
    std::ranges::merge(
        m_sorted, m_unsorted, std::back_inserter(merged),
        [&comparison](const auto& left, const auto& right) { return comparison.isBefore(*left, *right); });
    m_sorted = std::move(merged);
    m_unsorted.clear();
    return m_sorted;
}

} // namespace lapsa
