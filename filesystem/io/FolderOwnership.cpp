// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderOwnership.h"

#include "PathWalk.h"

#include <fcntl.h>
#include <unistd.h>

namespace lapsa::fileSystem {

namespace {

FileDescriptor openedFolder(const QString& path)
{
    const Result<QByteArray> bytes = pathBytes(path);
    return FileDescriptor(
        bytes ? retrying([&] { return ::open(bytes.value().constData(), O_PATH | O_DIRECTORY | O_CLOEXEC); }) : -1);
}

} // namespace

Ownership ownershipOf(const QString& folder)
{
    const FileDescriptor opened = openedFolder(folder);
    const Result<struct statx> status = statAt(opened.get(), "", STATX_BASIC_STATS);
    if (!opened || !status) {
        return Ownership::Own;
    }
    if (status.value().stx_uid != ::geteuid()) {
        return Ownership::SomebodyElses;
    }
    return othersMayWrite(opened.get(), status.value()) ? Ownership::OthersMayWrite : Ownership::Own;
}

void makePrivate(const QString& folder)
{
    const FileDescriptor opened = openedFolder(folder);
    const Result<struct statx> status = statAt(opened.get(), "", STATX_BASIC_STATS);
    if (opened && status && status.value().stx_uid == ::geteuid() && (status.value().stx_mode & 07777) != S_IRWXU) {
        ::chmod(procPath(opened.get()).constData(), S_IRWXU);
    }
}

} // namespace lapsa::fileSystem
