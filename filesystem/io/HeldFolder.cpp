// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HeldFolder.h"

#include "OpenedFolder.h"
#include "SystemCalls.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <utility>

namespace lapsa::fileSystem {

namespace {

Result<FileDescriptor> openFolder(int folder, const char* path)
{
    return openAt(folder, path, O_PATH | O_DIRECTORY);
}

} // namespace

HeldFolder::HeldFolder(const QString& path)
    : m_opened(std::make_unique<Opened>())
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        m_opened->error = bytes.error().code;
        return;
    }
    Result<FileDescriptor> folder = openFolder(AT_FDCWD, bytes.value().constData());
    m_opened->error = folder ? 0 : folder.error().code;
    if (folder) {
        m_opened->folder = SharedDescriptor(std::move(folder).value());
    }
}

HeldFolder::~HeldFolder() = default;

Result<FileIdentity> HeldFolder::identity() const
{
    if (m_opened->error != 0) {
        return FileError::fromErrno(m_opened->error);
    }
    const Result<struct statx> found = statAt(m_opened->folder.get(), "", STATX_INO);
    return found ? Result<FileIdentity>(identityOf(found.value())) : found.error();
}

Result<EntryInfo> HeldFolder::info(const QString& name) const
{
    const Result<QByteArray> bytes = entryName(name);
    if (!bytes || m_opened->error != 0) {
        return bytes ? FileError::fromErrno(m_opened->error) : bytes.error();
    }
    const Result<struct statx> found =
        statAt(m_opened->folder.get(), bytes.value().constData(), STATX_TYPE | STATX_INO | STATX_NLINK);
    return found ? Result<EntryInfo>(entryInfo(m_opened->folder.get(), found.value())) : found.error();
}

void forEachFolderUpwards(const QString& folder, const std::function<bool(const FileIdentity&)>& visit)
{
    const Result<QByteArray> bytes = pathBytes(folder);
    Result<FileDescriptor> opened = bytes ? openFolder(AT_FDCWD, bytes.value().constData()) : bytes.error();
    std::optional<FileIdentity> below;
    while (opened) {
        const Result<struct statx> found = statAt(opened.value().get(), "", STATX_INO);
        // "/" is its own parent.
        if (!found || below == identityOf(found.value()) || !visit(identityOf(found.value()))) {
            return;
        }
        below = identityOf(found.value());
        opened = openFolder(opened.value().get(), "..");
    }
}

} // namespace lapsa::fileSystem

namespace lapsa {

Result<QByteArray> entryName(const QString& name)
{
    const bool usable = !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/') &&
                        !name.contains(QChar::Null) && name.isValidUtf16();
    return usable ? Result<QByteArray>(name.toUtf8()) : FileError::fromErrno(EINVAL);
}

fileSystem::EntryInfo entryInfo(int folder, const struct statx& status)
{
    fileSystem::EntryInfo entry{.identity = identityOf(status), .isDirectory = isFolder(status)};
    if (!entry.isDirectory && status.stx_nlink > 1) {
        const Result<struct statx> found = statAt(folder, "", STATX_INO);
        entry.folderOfName = found ? identityOf(found.value()) : FileIdentity();
    }
    return entry;
}

} // namespace lapsa
