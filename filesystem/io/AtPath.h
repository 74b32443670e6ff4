// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "FileIdentity.h"
#include "Result.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

namespace lapsa {

/// Where an entry stands: the folder, opened, and the one name in it. What is looked at and what is acted upon are then
/// in the same folder, whatever happens to the path in between.
struct AtPath
{
    /// Opened with O_PATH.
    SharedDescriptor folder;
    QByteArray name;
};

/// The bytes of an absolute path without trailing slashes. EINVAL for one that is empty, relative, holds a NUL or is no
/// valid text.
[[nodiscard]] Result<QByteArray> pathBytes(const QString& path);

/// The text of a name; empty where its bytes are not UTF-8.
[[nodiscard]] QString nameText(QByteArrayView bytes);

/// Opens the folder that holds the entry at `path`; the entry itself need not exist. EINVAL as for pathBytes() and for
/// a path that ends in "." or "..", EPERM for "/".
[[nodiscard]] Result<AtPath> openParentOf(const QString& path);

/// The same for a path seen from an open folder (an absolute one is taken as such).
[[nodiscard]] Result<AtPath> openParentOf(int folder, const QByteArray& path);

/// statx(2) of an entry itself, links not followed. An empty name asks about `folder`.
[[nodiscard]] Result<struct statx> statAt(int folder, const char* name, unsigned mask);

[[nodiscard]] FileIdentity identityOf(const struct statx& status);

/// Whether the entry of this identity is seen to stand at the place. A call that was reported as failed may have been
/// carried out all the same, as over a network that lost the answer: what is undone after it is undone in sight only.
[[nodiscard]] bool stands(const AtPath& place, const FileIdentity& identity);

/// Whether a renaming that was reported as failed has happened.
[[nodiscard]] bool hasArrived(const AtPath& from, const FileIdentity& identity, const AtPath& to);

[[nodiscard]] inline bool isFolder(const struct statx& status)
{
    return S_ISDIR(status.stx_mode);
}

[[nodiscard]] inline bool isMountPoint(const struct statx& status)
{
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

/// The path by which /proc reaches an open file, of whatever kind.
[[nodiscard]] QByteArray procPath(int descriptor);

/// The real path of an open folder.
[[nodiscard]] Result<QByteArray> realPath(int folder);

/// renameat2(2) with RENAME_NOREPLACE, and its like where the file system does not know that flag. Never overwrites a
/// file or a link. Returns an `errno` value.
[[nodiscard]] int renameWithoutReplacing(const AtPath& from, const AtPath& to);

} // namespace lapsa
