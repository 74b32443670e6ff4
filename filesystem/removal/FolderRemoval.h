// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "DirectoryStack.h"

#include <QByteArray>

#include <functional>
#include <vector>

struct dirent;

namespace lapsa {

/// Removes a folder with all its contents. Follows no links, crosses no mounts, and continues with the rest if an entry
/// cannot be removed.
class FolderRemoval final
{
public:
    /// Whether the entry `name` of the open folder may be removed. Not asked about folders.
    using Permission = std::function<bool(int folder, const char* name)>;

    /// Without `permission`, removes everything.
    explicit FolderRemoval(Permission permission = {});

    /// Removes the folder at `place` if it still has this identity. Returns the `errno` value of the first failure.
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
    void fail(int error);

    Permission m_permission;
    FileIdentity m_identity;
    DirectoryStack* m_stack = nullptr;
    std::vector<Level> m_levels;
    int m_firstError = 0;
    bool m_removedAnything = false;
};

} // namespace lapsa
