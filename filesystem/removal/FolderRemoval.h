// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "DirectoryStack.h"
#include "LowIoPriority.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

struct dirent;

namespace lapsa {

namespace fileSystem {
class WorkObserver;
} // namespace fileSystem

/// Removes a folder with all its contents. Follows no links, crosses no mounts, and continues with the rest if an entry
/// cannot be removed. A long removal lets others on the disk go first. Stays on one thread.
class FolderRemoval final
{
public:
    /// Whether the entry `name` of the open folder may be removed. Not asked about folders.
    using Permission = std::function<bool(int folder, const char* name)>;

    /// Without `permission`, removes everything. `observer` is borrowed; null for none.
    explicit FolderRemoval(Permission permission = {}, fileSystem::WorkObserver* observer = nullptr);

    /// Also asks about each folder in it, before that is removed.
    void askAboutFolders(Permission permission) { m_folderPermission = std::move(permission); }

    /// Removes the folder at `place` if it still has this identity. Returns the `errno` value of the first failure, or
    /// ECANCELED if the observer stopped it between two entries.
    [[nodiscard]] int run(const AtPath& place, const FileIdentity& identity);

    /// Whether anything was removed or can no longer be seen.
    [[nodiscard]] bool removedAnything() const { return m_removedAnything; }

private:
    /// One folder on the way down.
    struct Level
    {
        QByteArray name;
        std::vector<QByteArray> subfolders;
        bool failed = false;
        int repetitions = 0;
    };

    void enter(const QByteArray& name);
    void leave();
    void removeFiles();
    void removeFile(const char* name);
    void removeEmptyFolder(const QByteArray& name);
    void countRemoved();
    [[nodiscard]] bool goesOn();
    void tellObserver();
    void fail(int error);

    Permission m_permission;
    Permission m_folderPermission;
    fileSystem::WorkObserver* m_observer;
    FileIdentity m_identity;
    DirectoryStack* m_stack = nullptr;
    std::vector<Level> m_levels;
    int m_firstError = 0;
    std::int64_t m_removed = 0;
    bool m_removedAnything = false;
    bool m_stopped = false;
    LowIoPriority m_priority;
};

} // namespace lapsa
