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

/// How an entry of a folder looked: the entry itself, without following links.
struct EntryInfo
{
    FileIdentity identity;
    bool isDirectory = false;
    /// Its folder, if the file may have other names (hard links) that are not this entry. Without it, anything with the
    /// same identity is this entry, however it is spelled.
    std::optional<FileIdentity> folderOfName = std::nullopt;
};

/// A folder that was opened once, following links: all questions and actions concern this very folder, whatever happens
/// to its path.
class HeldFolder final
{
public:
    explicit HeldFolder(const QString& path);
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    ~HeldFolder();

    /// The folder's identity, or the error if it could not be opened.
    [[nodiscard]] Result<FileIdentity> identity() const;
    /// EINVAL if `name` is not the name of a single entry: empty, "." or "..", with a slash or a NUL.
    [[nodiscard]] Result<EntryInfo> info(const QString& name) const;

private:
    friend class Batch;
    struct Opened;

    std::unique_ptr<Opened> m_opened;
};

/// Calls `visit` with the identity of a folder (following links) and of each folder really above it, until it returns
/// false or "/" was visited. Ends at a folder that cannot be opened.
void forEachFolderUpwards(const QString& folder, const std::function<bool(const FileIdentity&)>& visit);

} // namespace lapsa::fileSystem
