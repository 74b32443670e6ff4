// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "Time.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QUrl;

/// The file system. Paths are absolute and valid UTF-8; other names cannot be expressed here, so such files are never
/// touched. Questions about existence and kind follow symbolic links; moves and removals act on the link itself.
namespace lapsa::fileSystem {

class KnownPaths;

struct Status
{
    bool exists = false;
    bool isDirectory = false;
    /// A file system is mounted there, or a file or folder from elsewhere (bind mount).
    bool isMountPoint = false;
};

/// The path of a file URL, standardised: absolute, without "." and ".." components, doubled or trailing slashes; links
/// are not resolved. Nothing if the URL is not a local file, is relative or is not valid UTF-8.
[[nodiscard]] std::optional<QString> standardizedPath(const QUrl& url);

/// The same for a path as text, for example from an edited list: "//home/ada" becomes "/home/ada". Nothing if it is not
/// absolute, cannot be encoded in UTF-8 or contains a NUL.
[[nodiscard]] std::optional<QString> standardizedPath(const QString& path);

/// Everything about `path` with one system call.
[[nodiscard]] Status status(const QString& path);
[[nodiscard]] bool exists(const QString& path);
[[nodiscard]] bool isDirectory(const QString& path);

/// Whether `path` is `folder` or is inside it, with links resolved. False if either does not exist.
[[nodiscard]] bool isInside(const QString& path, const QString& folder);

enum class Access
{
    /// Mode 0700.
    OwnerOnly,
    /// Mode 0777, reduced by the umask of the process.
    Default,
};

/// Creates a folder and all missing folders above it; succeeds if it already exists.
Result<void> createDirectory(const QString& path, Access access);

/// The whole content of a file.
[[nodiscard]] Result<QByteArray> read(const QString& path);

/// Replaces the content of a file (mode 0600), atomically and durably: after a failure or a crash at any point the file
/// holds either all of the old or all of the new content. Writes through a link instead of replacing it; EACCES if the
/// link is somebody else's. Leaves anything but a file (a device, a pipe) alone: EINVAL.
Result<void> writeAtomically(const QString& path, QByteArrayView bytes);

/// One entry of a folder that is being listed. Looks it up in the open folder.
class FolderEntry
{
public:
    FolderEntry() = default;
    FolderEntry(const FolderEntry&) = delete;
    FolderEntry& operator=(const FolderEntry&) = delete;
    virtual ~FolderEntry() = default;

    /// The name inside the folder.
    [[nodiscard]] virtual const QString& name() const = 0;
    /// Follows links, as status() does, but does not report mount points on folders.
    [[nodiscard]] virtual Status status() const = 0;
    /// The birth time of the entry itself; nothing if the file system does not record it.
    [[nodiscard]] virtual std::optional<TimePoint> creationDate() const = 0;
};

/// Calls `visit` for each direct entry of a folder in the order of the file system. Skips hidden entries (a leading
/// dot), "." and "..", and names that are not valid UTF-8.
Result<void> forEachVisibleEntry(const QString& folder, const std::function<void(const FolderEntry&)>& visit);

/// The same for a folder that other users may replace: EACCES if it is not the known one.
Result<void> forEachVisibleEntry(const QString& folder, const KnownPaths& knownPaths,
                                 const std::function<void(const FolderEntry&)>& visit);

/// Calls `visit` with the name of every direct entry of a folder, including hidden ones, but not "." and ".." or names
/// that are not valid UTF-8.
Result<void> forEachName(const QString& folder, const std::function<void(const QString& name)>& visit);

} // namespace lapsa::fileSystem
