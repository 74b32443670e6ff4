// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ParentCache.h"

#include <cerrno>
#include <utility>

namespace lapsa {

int ParentCache::goTo(const QString& path, WalkDetail detail)
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
    Above above = std::move(m_above);
    *this = {};
    if (!ordinary) {
        return name.isEmpty() ? EPERM : EINVAL;
    }
    m_above = std::move(above);
    m_asked = bytes.first(nameStart);
    Result<WalkedFolder> walked = walkedTo(nameStart > 1 ? m_asked.chopped(1) : m_asked, detail);
    if (!walked) {
        const int error = walked.error().code;
        *this = {};
        return error;
    }
    m_walked = std::move(walked).value();
    m_place = {.folder = SharedDescriptor(std::move(m_walked.folder)), .name = bytes.sliced(nameStart)};
    m_detail = detail;
    m_sharing = 1;
    return 0;
}

Result<WalkedFolder> ParentCache::walkedTo(const QByteArray& folder, WalkDetail detail)
{
    const qsizetype nameStart = folder.lastIndexOf('/') + 1;
    const QByteArray name = folder.sliced(nameStart);
    if (detail == WalkDetail::Folder && !name.isEmpty() && name != ".." && knowsAbove(folder.first(nameStart))) {
        Result<WalkedFolder> walked = plainFolderIn(m_above.walked, name);
        if (walked) {
            return walked;
        }
        m_above = {};
    }
    return walkTo(folder, detail);
}

// Opens the folder at the second entry: not worth it for one alone.
bool ParentCache::knowsAbove(const QByteArray& above)
{
    if (m_above.asked != above || m_above.sharing == mostSharing) {
        m_above = {.asked = above, .walked = {}, .sharing = 1};
        return false;
    }
    ++m_above.sharing;
    if (!m_above.walked.folder) {
        Result<WalkedFolder> walked = walkTo(above.size() > 1 ? above.chopped(1) : above, WalkDetail::Folder);
        if (!walked || !walked.value().plain) {
            m_above.sharing = 1;
            return false;
        }
        m_above.walked = std::move(walked).value();
    }
    return true;
}

Result<QByteArray> ParentCache::realPathOf(const SharedDescriptor& folder)
{
    if (folder.get() != m_place.folder.get()) {
        return realPath(folder.get());
    }
    if (!m_folderPath) {
        const Result<QByteArray> path = realPath(folder.get());
        if (!path) {
            return path;
        }
        m_folderPath = path.value();
    }
    return *m_folderPath;
}

} // namespace lapsa
