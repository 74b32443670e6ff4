// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "FileIdentity.h"
#include "Result.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

#include <cerrno>

namespace lapsa {

/// The place of an entry: its open folder and its name in it. A look and an action through it happen in the same
/// folder, whatever happens to the path in between.
struct AtPath
{
    /// Open with O_PATH.
    SharedDescriptor folder;
    QByteArray name;
};

/// The bytes of an absolute path without trailing slashes. EINVAL if it is empty, relative, not valid UTF-16 or
/// contains a NUL.
[[nodiscard]] Result<QByteArray> pathBytes(const QString& path);

/// The text of a name; empty if the bytes are not valid UTF-8.
[[nodiscard]] QString nameText(QByteArrayView bytes);

/// Opens the folder that holds the entry at `path`; the entry itself need not exist. EINVAL as for pathBytes() and for
/// a path that ends in "." or "..", EPERM for "/".
[[nodiscard]] Result<AtPath> openParentOf(const QString& path);

/// The same for a path relative to an open folder, or an absolute path.
[[nodiscard]] Result<AtPath> openParentOf(int folder, const QByteArray& path);

/// statx(2) of an entry itself, without following links; of `folder` if the name is empty.
[[nodiscard]] Result<struct statx> statAt(int folder, const char* name, unsigned mask);

[[nodiscard]] FileIdentity identityOf(const struct statx& status);

/// Whether the entry of this identity can be seen at the place. A call that reported failure may still have worked, for
/// example if the network lost the answer: check with this before undoing anything.
[[nodiscard]] bool stands(const AtPath& place, const FileIdentity& identity);

/// Whether nothing has this name any more; false if nobody can tell. Asks with two calls: one wrong answer of a failing
/// disk or network must not be enough.
[[nodiscard]] bool isGone(int folder, const char* name);

/// Whether a rename that reported failure did happen.
[[nodiscard]] bool hasArrived(const AtPath& from, const FileIdentity& identity, const AtPath& to);

[[nodiscard]] inline bool isFolder(const struct statx& status)
{
    return S_ISDIR(status.stx_mode);
}

[[nodiscard]] inline bool isMountPoint(const struct statx& status)
{
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

/// The path of an open file of any kind in /proc.
[[nodiscard]] QByteArray procPath(int descriptor);

/// The real path of an open folder.
[[nodiscard]] Result<QByteArray> realPath(int folder);

/// The error of a move that has reached its destination, but whose source, or a part of it, stands as well: neither
/// could be removed.
inline constexpr int moveUnfinished = EINPROGRESS;

/// renameat2(2) with RENAME_NOREPLACE, or an equivalent if the file system does not support that flag. Never overwrites
/// a file or a link. Returns an `errno` value; moveUnfinished if a file has both names.
[[nodiscard]] int renameWithoutReplacing(const AtPath& from, const AtPath& to);

} // namespace lapsa
