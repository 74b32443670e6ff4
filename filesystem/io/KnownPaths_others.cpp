// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AtPath.h"
#include "KnownPaths.h"
#include "MountTable.h"
#include "PathWalk.h"

#include <fcntl.h>

#include <algorithm>

namespace lapsa::fileSystem {

namespace {

bool isAtOrBelow(const QByteArray& path, const QByteArray& folder)
{
    return path.startsWith(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool hasLinkOnTheWay(const QByteArray& path)
{
    for (qsizetype end = 0; end < path.size();) {
        const qsizetype slash = path.indexOf('/', end + 1);
        end = slash < 0 ? path.size() : slash;
        const Result<struct statx> found = statAt(AT_FDCWD, path.first(end).constData(), STATX_TYPE);
        if (!found || !isFolder(found.value())) {
            return true;
        }
    }
    return false;
}

/// Whether others may change where the entries of a folder are. False if finding out could take long.
bool isWorthALook(const QByteArray& folder, const QList<QByteArray>& served)
{
    const bool remote =
        std::ranges::any_of(served, [&](const QByteArray& mount) { return isAtOrBelow(folder, mount); });
    if (remote || hasLinkOnTheWay(folder)) {
        return false;
    }
    const Result<WalkedFolder> walked = walkTo(folder, WalkDetail::Folder);
    return walked && !(walked.value().plain && !othersMayWrite(walked.value().folder.get(), walked.value().status));
}

} // namespace

void KnownPaths::rememberOthers(const QStringList& paths)
{
    const Result<QList<QByteArray>> served = servedMounts();
    if (!served) {
        return;
    }
    QStringList others;
    // Most paths are in the same folder as the one before.
    QStringView lastFolder;
    bool worth = false;
    for (const QString& path : paths) {
        const QStringView folder = QStringView(path).left(path.lastIndexOf(u'/'));
        if (lastFolder.isNull() || folder != lastFolder) {
            lastFolder = folder;
            const Result<QByteArray> bytes = pathBytes(folder.toString());
            worth = bytes && isWorthALook(bytes.value(), served.value());
        }
        const Result<QByteArray> bytes =
            worth && !m_steps.contains(path) ? pathBytes(path) : FileError::fromErrno(ENOENT);
        if (bytes && statAt(AT_FDCWD, bytes.value().constData(), STATX_TYPE)) {
            others.push_back(path);
        }
    }
    remember(others);
}

} // namespace lapsa::fileSystem
