// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BatchOperations.h"

#include "CopyProgress.h"
#include "CrossDeviceMove.h"
#include "FileSystem.h"
#include "FolderRemoval.h"
#include "KnownPathsCheck.h"
#include "ProtectionCheck.h"
#include "TrashFolder.h"
#include "UnsettledCopies.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>
#include <span>
#include <utility>

namespace lapsa {

BatchOperations::BatchOperations(const fileSystem::Protection& protection)
    : m_protection(protection)
    , m_unsettled(std::make_unique<UnsettledCopies>())
{}

BatchOperations::~BatchOperations() = default;

void BatchOperations::expectTrash(QStringList paths)
{
    m_expected = std::move(paths);
    m_expectedPosition = 0;
}

LocatedEntry BatchOperations::find(const QString& path)
{
    LocatedEntry found = locate(path);
    if (found.error == ENOENT && m_source.isShared()) {
        // The folder may have been renamed since it was opened.
        m_source.letGo();
        found = locate(path);
    }
    found.exists = (found.error == 0 && !S_ISLNK(found.status.stx_mode)) || fileSystem::exists(path);
    return found;
}

LocatedEntry BatchOperations::locate(const QString& path)
{
    const fileSystem::KnownPaths* const knownPaths = m_protection.knownPaths;
    const auto known = knownPaths != nullptr && !knownPaths->isEmpty() ? knownPaths->stepsTo(path) : std::nullopt;
    LocatedEntry found;
    found.error = m_source.goTo(path, known ? WalkDetail::Steps : WalkDetail::Folder);
    if (found.error == 0) {
        found = findAt(m_source.place());
    }
    if (found.error == 0 && known && !isKnownPlace(*known, m_source)) {
        found.error = EACCES;
    }
    found.path = path;
    return found;
}

LocatedEntry BatchOperations::findAt(AtPath place)
{
    const Result<struct statx> status =
        statAt(place.folder.get(), place.name.constData(), STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID);
    LocatedEntry found;
    found.place = std::move(place);
    found.exists = bool(status);
    if (status) {
        found.status = status.value();
    } else {
        found.error = status.error().code;
    }
    return found;
}

void BatchOperations::announce(const LocatedEntry& entry) const
{
    if (m_announce) {
        m_announce(isFolder(entry.status) ? std::numeric_limits<std::int64_t>::max()
                                          : static_cast<std::int64_t>(entry.status.stx_size));
    }
}

int BatchOperations::checkUnprotected(const LocatedEntry& entry) const
{
    return entry.error != 0 ? entry.error : lapsa::checkUnprotected(entry.place, entry.status, m_protection);
}

int BatchOperations::move(const LocatedEntry& entry, const QString& to)
{
    int error = m_destination.goTo(to);
    if (error == 0) {
        error = checkUnprotected(entry);
    }
    if (error != 0) {
        return error;
    }
    error = rename(entry);
    if (error == ENOENT && m_destination.isShared()) {
        m_destination.letGo();
        error = m_destination.goTo(to);
        error = error == 0 ? rename(entry) : error;
    }
    if (error == EXDEV) {
        CopyProgress progress([&] { announce(entry); }, m_observer);
        error = moveAcross(entry.place, entry.status, m_destination.place(), progress);
        if (error == 0) {
            m_unsettled->add(m_destination.place(), entry.place);
        }
        // A long time may have passed.
        m_destination.letGo();
        m_source.letGo();
    }
    return error;
}

void BatchOperations::settleCopies()
{
    m_unsettled->settle();
}

int BatchOperations::rename(const LocatedEntry& entry)
{
    const int error = renameWithoutReplacing(entry.place, m_destination.place());
    const bool failed = error != 0 && error != EXDEV;
    return failed && hasArrived(entry.place, identityOf(entry.status), m_destination.place()) ? 0 : error;
}

int BatchOperations::moveToTrash(const LocatedEntry& entry)
{
    skipExpectedBefore(entry.path);
    if (const int error = checkUnprotected(entry)) {
        return error;
    }
    int error = moveToHomeTrash(entry);
    if (error == ENOENT && m_homeTrashSharing > 1) {
        // Somebody removed the trash folder.
        m_homeTrash.reset();
        error = moveToHomeTrash(entry);
    }
    if (error == EXDEV) {
        // Another volume, or another mount of the same one: it has its own trash.
        Result<TrashFolder> trash = TrashFolder::ofVolume(entry.place);
        error = trash ? take(entry, trash.value()) : trash.error().code;
    }
    return error;
}

void BatchOperations::skipExpectedBefore(const QString& path)
{
    if (path.isEmpty()) {
        return; // an entry of a HeldFolder, and so none of the expected paths
    }
    while (m_expectedPosition < m_expected.size() && m_expected.at(m_expectedPosition) != path) {
        ++m_expectedPosition;
    }
}

int BatchOperations::moveToHomeTrash(const LocatedEntry& entry)
{
    Result<TrashFolder>& home = homeTrash();
    if (!home) {
        return home.error().code;
    }
    return home.value().isOnMountOf(entry.status) ? take(entry, home.value()) : EXDEV;
}

int BatchOperations::take(const LocatedEntry& entry, TrashFolder& trash)
{
    const Result<QByteArray> folder = m_source.realPathOf(entry.place.folder);
    if (!folder) {
        return folder.error().code;
    }
    if (trash.contains(folder.value(), entry.place, entry.status)) {
        return EPERM;
    }
    const FileIdentity identity = identityOf(entry.status);
    int error = ENOENT;
    if (!isFolder(entry.status) && entry.status.stx_nlink > 1) {
        error = trash.finishTaking(folder.value(), entry.place, identity);
    }
    if (error == ENOENT) {
        error = trash.take(folder.value(), entry.place, identity);
    }
    if (error == 0) {
        m_lastTrashed = {.path = nameText(trash.lastTaken()),
                         .recordPath = nameText(trash.recordOfLastTaken()),
                         .identity = identity,
                         .recordIdentity = {}};
    }
    return error;
}

Result<TrashFolder>& BatchOperations::homeTrash()
{
    if (!m_homeTrash || !*m_homeTrash || m_homeTrashSharing == ParentCache::mostSharing) {
        m_homeTrash = std::make_unique<Result<TrashFolder>>(TrashFolder::home());
        m_homeTrashSharing = 0;
        const qsizetype expected =
            std::min<qsizetype>(m_expected.size() - m_expectedPosition, ParentCache::mostSharing);
        if (*m_homeTrash && expected > 1) {
            m_homeTrash->value().prepare(
                std::span(m_expected).subspan(std::size_t(m_expectedPosition), std::size_t(expected)));
        }
    }
    ++m_homeTrashSharing;
    return *m_homeTrash;
}

int BatchOperations::remove(const LocatedEntry& entry)
{
    if (const int error = checkUnprotected(entry)) {
        return error;
    }
    if (!isFolder(entry.status)) {
        return errorOf([&] { return ::unlinkat(entry.place.folder.get(), entry.place.name.constData(), 0); });
    }
    announce(entry);
    const int error = FolderRemoval({}, m_observer).run(entry.place, identityOf(entry.status));
    m_source.letGo(); // a long time may have passed
    return error;
}

} // namespace lapsa
