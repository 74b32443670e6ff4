// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopyMark.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>

namespace lapsa {

namespace {

/// To an entry that links cannot lead away from.
QByteArray pathOf(const AtPath& place)
{
    return procPath(place.folder.get()) + '/' + place.name;
}

QByteArray markFor(std::uint64_t inode)
{
    return QByteArray::number(qulonglong{inode});
}

} // namespace

int markCopy(int file)
{
    const Result<struct statx> status = statAt(file, "", STATX_INO);
    if (!status) {
        return status.error().code;
    }
    const QByteArray mark = markFor(status.value().stx_ino);
    const int error = errorOf([&] {
        return ::setxattr(procPath(file).constData(), copyMark, mark.constData(), std::size_t(mark.size()), 0);
    });
    return error == EIO ? error : 0;
}

void unmarkCopy(const AtPath& copy)
{
    ::lremovexattr(pathOf(copy).constData(), copyMark);
}

Marked isMarkedCopy(const AtPath& copy)
{
    const Result<struct statx> status = statAt(copy.folder.get(), copy.name.constData(), STATX_TYPE | STATX_INO);
    if (!status) {
        return Marked::No;
    }
    if (!isFolder(status.value()) && !S_ISREG(status.value().stx_mode)) {
        return Marked::Impossible;
    }
    std::array<char, 32> value{}; // a longer one is not ours: ERANGE
    const ssize_t length = ::lgetxattr(pathOf(copy).constData(), copyMark, value.data(), value.size());
    if (length < 0) {
        return errno == EOPNOTSUPP ? Marked::Impossible : Marked::No;
    }
    return QByteArrayView(value.data(), length) == markFor(status.value().stx_ino) ? Marked::Yes : Marked::No;
}

} // namespace lapsa
