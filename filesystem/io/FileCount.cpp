// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileCount.h"

#include "FolderListing.h"
#include "FolderTrail.h"
#include "Place.h"

#include <utility>
#include <vector>

namespace lapsa {

namespace {

using fileSystem::CountLimits;
using fileSystem::FileCount;

/// A walk down a folder that counts what is no folder.
class FileCounting final
{
public:
    FileCounting(FolderTrail& trail, const CountLimits& limits)
        : m_trail(trail)
        , m_limits(limits)
    {}

    /// Nothing where the walk's folder has no folder of that name.
    [[nodiscard]] std::optional<FileCount> run(const QByteArray& name)
    {
        if (m_trail.descend(name.constData()) != 0) {
            return std::nullopt;
        }
        countHere();
        while (!m_subfolders.empty() && !m_stopped) {
            step();
        }
        return m_count;
    }

private:
    /// Into the next folder, or back up.
    void step()
    {
        std::vector<QByteArray>& names = m_subfolders.back();
        if (names.empty()) {
            m_subfolders.pop_back();
            if (m_trail.ascend() != 0) {
                stop(); // the way back is lost, and with it every folder above
            }
            return;
        }
        const QByteArray name = std::move(names.back());
        names.pop_back();
        if (m_trail.descend(name.constData()) == 0) {
            countHere();
        } else {
            m_count.whole = false;
        }
    }

    void countHere()
    {
        std::vector<QByteArray>& names = m_subfolders.emplace_back();
        const int error = forEachRawEntry(m_trail.folder(), [&](const dirent& entry) {
            if (m_limits.deadline.hasExpired()) {
                stop();
            } else if (isFolderEntry(entry)) {
                names.emplace_back(entry.d_name);
                ++m_folders;
            } else {
                ++m_count.files;
            }
            if (m_count.files > m_limits.most || m_folders > m_limits.most) {
                stop();
            }
            return !m_stopped;
        });
        if (error != 0) {
            m_count.whole = false;
        }
    }

    [[nodiscard]] bool isFolderEntry(const dirent& entry) const
    {
        if (entry.d_type != DT_UNKNOWN) {
            return entry.d_type == DT_DIR;
        }
        const Result<struct statx> status = look(m_trail.folder(), entry.d_name, STATX_TYPE);
        return status && isFolder(status.value());
    }

    void stop()
    {
        m_stopped = true;
        m_count.whole = false;
    }

    FolderTrail& m_trail;
    CountLimits m_limits;
    FileCount m_count;
    std::int64_t m_folders = 0;
    bool m_stopped = false;
    /// Of each folder on the way down, the names of those that are still to be entered.
    std::vector<std::vector<QByteArray>> m_subfolders;
};

} // namespace

std::optional<FileCount> fileSystem::countFiles(const QString& folder, const CountLimits& limits)
{
    const Result<Place> place = openPlace(folder);
    if (!place) {
        return std::nullopt;
    }
    FolderTrail trail(place.value().folder);
    return FileCounting(trail, limits).run(place.value().name);
}

} // namespace lapsa
