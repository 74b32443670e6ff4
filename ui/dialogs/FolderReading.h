// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lapsa {

class LaneJob;

/// A file or folder as a chooser lists it.
struct ListedEntry
{
    QString name;
    /// Also true of a link to a folder.
    bool isFolder = false;
    /// In bytes; 0 for a folder.
    std::int64_t size = 0;
    /// Milliseconds since 1970, UTC.
    std::int64_t changed = 0;

    friend bool operator==(const ListedEntry&, const ListedEntry&) = default;
};

using ListedEntries = std::vector<std::shared_ptr<const ListedEntry>>;

struct ListOrder
{
    enum class By
    {
        Name,
        Size,
        Changed,
    };

    By by = By::Name;
    bool descending = false;

    friend bool operator==(const ListOrder&, const ListOrder&) = default;
};

/// Sorts as people read: numbers in names by their value, folders before files unless sorted by time. Takes long for
/// many entries: on a lane, to which it gives signs of life.
void sortEntries(ListedEntries& entries, const ListOrder& order, LaneJob& job);

/// Reads a folder in portions. Each may run on another thread, one after the other.
class FolderReading final
{
public:
    /// Accesses no disk. With `foldersOnly`, other entries are left out.
    FolderReading(QString folder, bool foldersOnly);

    /// When the folder changed: milliseconds since 1970, UTC; nothing if there is none. On a lane.
    [[nodiscard]] static std::optional<std::int64_t> changeOf(const QString& folder);

    /// Reads some more entries. On a lane. Ends early if the job is asked to stop.
    void readOn(LaneJob& job);

    /// Whether there is nothing more to read.
    [[nodiscard]] bool isOver() const { return m_isOver; }

    /// Whether the path is a folder, as far as it was looked at.
    [[nodiscard]] bool foundFolder() const { return m_foundFolder; }

    /// changeOf() before the first entry was read.
    [[nodiscard]] const std::optional<std::int64_t>& change() const { return m_change; }

    [[nodiscard]] std::size_t count() const { return m_sorted.size() + m_unsorted.size(); }

    /// What was read so far, hidden entries included. On a lane.
    [[nodiscard]] const ListedEntries& sorted(const ListOrder& order, LaneJob& job);

private:
    void begin(LaneJob& job);

    QString m_folder;
    bool m_foldersOnly;
    bool m_hasBegun = false;
    bool m_isOver = false;
    bool m_foundFolder = false;
    std::optional<std::int64_t> m_change;
    /// Those not looked at yet.
    QStringList m_names;
    ListOrder m_order;
    ListedEntries m_sorted;
    ListedEntries m_unsorted;
};

} // namespace lapsa
