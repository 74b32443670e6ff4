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

/// The file system. Paths are absolute and valid UTF-8; a name that is not cannot be said here, so that such a file is
/// never touched. Asking for existence and kind follows symbolic links; moving and removing act on the link itself.
namespace lapsa::fileSystem {

class KnownPaths;

struct Status
{
    bool exists = false;
    bool isDirectory = false;
    /// A file system, or a folder or file of another place, is mounted there.
    bool isMountPoint = false;
};

/// The path of a file URL, standardised: absolute, without "." and ".." components, doubled or trailing slashes; links
/// are not resolved. Nothing for what is no local file URL, for a relative one, and for one whose bytes are not UTF-8.
[[nodiscard]] std::optional<QString> standardizedPath(const QUrl& url);

/// The same of a path as text, which an edited list may hold: "//home/ada" is "/home/ada". Nothing for what is not
/// absolute, cannot be said in UTF-8 or holds a NUL.
[[nodiscard]] std::optional<QString> standardizedPath(const QString& path);

/// All answers about `path` from one look.
[[nodiscard]] Status status(const QString& path);
[[nodiscard]] bool exists(const QString& path);
[[nodiscard]] bool isDirectory(const QString& path);

/// Whether `path` is `folder` or lies inside it once links are resolved. False when either does not exist.
[[nodiscard]] bool isInside(const QString& path, const QString& folder);

enum class Access
{
    /// Mode 0700.
    OwnerOnly,
    /// What the process's umask leaves of 0777.
    Default,
};

/// Creates a folder with all missing folders above it; one that is there already is success.
Result<void> createDirectory(const QString& path, Access access);

/// The whole content of a file.
[[nodiscard]] Result<QByteArray> read(const QString& path);

/// Replaces the content of a file (mode 0600), atomically and durably: after a failure or a crash at any point the file
/// holds either all of the old or all of the new content. A link is written through, not replaced; EACCES for one of
/// somebody else's. What is no file (a device, a pipe) is left alone: EINVAL.
Result<void> writeAtomically(const QString& path, QByteArrayView bytes);

/// One entry of a folder that is being listed. Its questions are asked of the open folder.
class FolderEntry
{
public:
    FolderEntry() = default;
    FolderEntry(const FolderEntry&) = delete;
    FolderEntry& operator=(const FolderEntry&) = delete;
    virtual ~FolderEntry() = default;

    /// The name inside the folder.
    [[nodiscard]] virtual const QString& name() const = 0;
    /// Follows links, as status() does.
    [[nodiscard]] virtual Status status() const = 0;
    /// The birth time of the entry itself; nothing where the file system does not keep one.
    [[nodiscard]] virtual std::optional<TimePoint> creationDate() const = 0;
};

/// Calls `visit` for each direct entry of a folder in the order in which the file system lists them. Hidden entries (a
/// leading dot), "." and "..", and names that are not valid UTF-8 are passed over.
Result<void> forEachVisibleEntry(const QString& folder, const std::function<void(const FolderEntry&)>& visit);

/// The same of a folder that other users may exchange for another: EACCES where it is not the one that is known.
Result<void> forEachVisibleEntry(const QString& folder, const KnownPaths& knownPaths,
                                 const std::function<void(const FolderEntry&)>& visit);

/// Calls `visit` with the name of every direct entry of a folder, hidden ones too, but "." and ".." and names that are
/// not valid UTF-8.
Result<void> forEachName(const QString& folder, const std::function<void(const QString& name)>& visit);

} // namespace lapsa::fileSystem
