// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HeldPlace.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace lapsa {

int HeldPlace::goTo(const QString& path, WalkDetail detail)
{
    Result<QByteArray> read = pathBytes(path);
    if (!read) {
        *this = {};
        return read.error().code;
    }
    const QByteArray bytes = std::move(read).value();
    const qsizetype nameStart = bytes.lastIndexOf('/') + 1;
    const QByteArrayView name = QByteArrayView(bytes).sliced(nameStart);
    const bool ordinary = !name.isEmpty() && name != "." && name != "..";
    const bool detailed = detail == WalkDetail::Folder || m_detail == WalkDetail::Steps;
    if (ordinary && m_place.folder && detailed && m_sharing < mostSharing &&
        QByteArrayView(bytes).first(nameStart) == m_asked) {
        ++m_sharing;
        m_place.name = bytes.sliced(nameStart);
        return 0;
    }
    *this = {};
    if (!ordinary) {
        return name.isEmpty() ? EPERM : EINVAL;
    }
    m_asked = bytes.first(nameStart);
    Result<WalkedFolder> walked = walkTo(nameStart > 1 ? m_asked.chopped(1) : m_asked, detail);
    if (!walked) {
        const int error = walked.error().code;
        *this = {};
        return error;
    }
    m_walked = std::move(walked).value();
    m_place = {.folder = std::move(m_walked.folder), .name = bytes.sliced(nameStart)};
    m_detail = detail;
    m_sharing = 1;
    return 0;
}

int HeldPlace::goTo(const FileDescriptor& folder, const QByteArray& name)
{
    *this = {};
    if (name.isEmpty()) {
        return EINVAL;
    }
    FileDescriptor own(::fcntl(folder.get(), F_DUPFD_CLOEXEC, 0));
    if (!own) {
        return errno;
    }
    m_place = {.folder = std::move(own), .name = name};
    return 0;
}

Result<QByteArray> HeldPlace::folderPath()
{
    if (!m_folderPath) {
        const Result<QByteArray> path = realPath(m_place.folder.get());
        if (!path) {
            return path;
        }
        m_folderPath = path.value();
    }
    return *m_folderPath;
}

} // namespace lapsa
