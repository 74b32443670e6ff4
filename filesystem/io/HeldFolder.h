// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIdentity.h"
#include "Result.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace lapsa::fileSystem {

/// How an entry of a folder looked: the entry itself, links not followed.
struct EntryInfo
{
    FileIdentity identity;
    bool isDirectory = false;
    /// The folder that it stands in, where the file may have other names (hard links) that are not this entry. Without
    /// it, whatever has the same identity is this entry, however it is spelled.
    std::optional<FileIdentity> folderOfName = std::nullopt;
};

/// A folder that was opened once, links followed: what is asked of it and done in it means this very folder, whatever
/// becomes of its path.
class HeldFolder final
{
public:
    explicit HeldFolder(const QString& path);
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    ~HeldFolder();

    /// The error of its opening where it could not be opened.
    [[nodiscard]] Result<FileIdentity> identity() const;
    /// EINVAL for what is not the name of one entry: empty, "." or "..", with a slash or a NUL.
    [[nodiscard]] Result<EntryInfo> info(const QString& name) const;

private:
    friend class Batch;
    struct Opened;

    std::unique_ptr<Opened> m_opened;
};

/// Calls `visit` with the identity of a folder (links followed) and of each folder above it, as they lie on the disk,
/// until it returns false or "/" was visited. A folder that cannot be opened ends it.
void forEachFolderUpwards(const QString& folder, const std::function<bool(const FileIdentity&)>& visit);

} // namespace lapsa::fileSystem
