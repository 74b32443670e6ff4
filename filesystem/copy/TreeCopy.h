// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DirectoryStack.h"
#include "EntryCopy.h"

#include <QByteArray>

#include <cstddef>
#include <optional>
#include <vector>

namespace lapsa {

class CopyProgress;

/// Copies a whole folder to another file system. Links stay links and hard links within the folder stay hard links.
/// Follows no links and enters no mounts.
class TreeCopy final
{
public:
    /// For the folder that was found at `source` with this status. `progress` must outlive the copy.
    TreeCopy(AtPath source, const struct statx& status, CopyProgress& progress);

    /// Makes the copy under a name that must be free; the mode of its top folder marks it as incomplete. Returns an
    /// `errno` value: ECANCELED if it was stopped. After a failure a part of the copy may be there.
    [[nodiscard]] int run(const AtPath& to);

    /// The copied files, as they were at the source.
    [[nodiscard]] const CopiedFiles& copiedFiles() const { return m_copiedFiles; }

private:
    /// One folder on the way down.
    struct Level
    {
        QByteArray toName;
        std::vector<QByteArray> subfolders;
        /// Its index in m_folders, if it is listed there.
        std::optional<std::size_t> folder;
    };

    /// A folder of the copy, stored as its name and the folder above it: whole paths would take more memory the deeper
    /// they are.
    struct Folder
    {
        QByteArray name;
        std::optional<std::size_t> above;
    };

    /// Where the first name of a file with several names was copied to.
    struct FirstName
    {
        std::size_t folder = 0;
        QByteArray name;
    };

    [[nodiscard]] int walk();
    [[nodiscard]] int enter(const QByteArray& name, const QByteArray& toName);
    [[nodiscard]] int leave();
    [[nodiscard]] int copyFiles();
    [[nodiscard]] int copyFile(const FoundEntry& entry);
    [[nodiscard]] int copyHardLink(const FoundEntry& entry, const FirstName& earlier);
    [[nodiscard]] std::size_t currentFolder();
    [[nodiscard]] Result<SharedDescriptor> openFolder(std::size_t folder) const;

    AtPath m_source;
    FileIdentity m_identity;
    CopyProgress& m_progress;
    FileIdentity m_toFolder;
    DirectoryStack* m_from = nullptr;
    DirectoryStack* m_to = nullptr;
    SharedDescriptor m_toStart;
    std::vector<Level> m_levels;
    CopiedFiles m_copiedFiles;
    /// The folders that hold a first name, and those above them.
    std::vector<Folder> m_folders;
    std::unordered_map<FileIdentity, FirstName, FileIdentityHash> m_hardLinks;
};

} // namespace lapsa
