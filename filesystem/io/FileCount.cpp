// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileCount.h"

#include "AtPath.h"
#include "DirectoryStack.h"
#include "FolderListing.h"

#include <utility>
#include <vector>

namespace lapsa {

namespace {

using fileSystem::CountLimits;
using fileSystem::FileCount;

/// Walks a folder tree and counts everything but folders.
class FileCounting final
{
public:
    FileCounting(DirectoryStack& stack, const CountLimits& limits)
        : m_stack(stack)
        , m_limits(limits)
    {}

    /// Nothing if the walk cannot enter a subfolder of that name.
    [[nodiscard]] std::optional<FileCount> run(const QByteArray& name)
    {
        if (m_stack.descend(name.constData()) != 0) {
            return std::nullopt;
        }
        countHere();
        while (!m_subfolders.empty() && !m_stopped) {
            step();
        }
        return m_count;
    }

private:
    /// Enters the next folder, or goes back up.
    void step()
    {
        std::vector<QByteArray>& names = m_subfolders.back();
        if (names.empty()) {
            m_subfolders.pop_back();
            if (m_stack.ascend() != 0) {
                stop(); // the way back is lost, and with it all folders above
            }
            return;
        }
        const QByteArray name = std::move(names.back());
        names.pop_back();
        if (m_stack.descend(name.constData()) == 0) {
            countHere();
        } else {
            m_count.whole = false;
        }
    }

    void countHere()
    {
        std::vector<QByteArray>& names = m_subfolders.emplace_back();
        const int error = forEachRawEntry(m_stack.folder(), [&](const dirent& entry) {
            if (m_limits.deadline.hasExpired() || (m_limits.goesOn && !m_limits.goesOn())) {
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
        const Result<struct statx> status = statAt(m_stack.folder(), entry.d_name, STATX_TYPE);
        return status && isFolder(status.value());
    }

    void stop()
    {
        m_stopped = true;
        m_count.whole = false;
    }

    DirectoryStack& m_stack;
    CountLimits m_limits;
    FileCount m_count;
    std::int64_t m_folders = 0;
    bool m_stopped = false;
    /// For each folder on the way down, the names of the subfolders still to enter.
    std::vector<std::vector<QByteArray>> m_subfolders;
};

} // namespace

std::optional<FileCount> fileSystem::countFiles(const QString& folder, const CountLimits& limits)
{
    const Result<AtPath> place = openParentOf(folder);
    if (!place) {
        return std::nullopt;
    }
    DirectoryStack stack(place.value().folder);
    return FileCounting(stack, limits).run(place.value().name);
}

} // namespace lapsa
