// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderRemoval.h"

#include "FolderListing.h"
#include "WorkObserver.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace lapsa {

FolderRemoval::FolderRemoval(Permission permission, fileSystem::WorkObserver* observer)
    : m_permission(std::move(permission))
    , m_observer(observer)
{}

int FolderRemoval::run(const AtPath& place, const FileIdentity& identity)
{
    DirectoryStack stack(place.folder);
    m_stack = &stack;
    m_identity = identity;
    m_levels.push_back({.name = {}, .subfolders = {place.name}});
    while ((m_levels.size() > 1 || !m_levels.back().subfolders.empty()) && goesOn()) {
        std::vector<QByteArray>& subfolders = m_levels.back().subfolders;
        if (subfolders.empty()) {
            leave();
        } else {
            const QByteArray name = std::move(subfolders.back());
            subfolders.pop_back();
            enter(name);
        }
    }
    tellObserver();
    return m_stopped ? ECANCELED : m_firstError;
}

bool FolderRemoval::goesOn()
{
    tellObserver();
    m_stopped = m_stopped || (m_observer != nullptr && m_observer->stopRequested());
    return !m_stopped;
}

void FolderRemoval::tellObserver()
{
    if (m_observer != nullptr) {
        m_observer->removed(m_removed);
    }
}

void FolderRemoval::countRemoved()
{
    constexpr std::int64_t shortWork = 1000; // entries
    m_removedAnything = true;
    if (++m_removed == shortWork) {
        m_priority.lower();
    }
}

void FolderRemoval::enter(const QByteArray& name)
{
    switch (const int error = m_stack->descend(name.constData())) {
    case 0:
        break;
    case ENOENT: // somebody else removed it
        return;
    case ENOTDIR:
    case ELOOP: // no longer a folder
        if (m_levels.size() > 1) {
            removeFile(name.constData());
        } else {
            fail(EBUSY);
        }
        return;
    case EACCES: // an empty folder can be removed even if it cannot be listed
        if (::unlinkat(m_stack->folder(), name.constData(), AT_REMOVEDIR) == 0) {
            countRemoved();
        } else {
            fail(error);
        }
        return;
    default:
        fail(error);
        return;
    }
    m_levels.push_back({.name = name, .subfolders = {}});
    if (m_levels.size() == 2 && identityOf(m_stack->status()) != m_identity) {
        fail(EBUSY);
        return;
    }
    removeFiles();
}

void FolderRemoval::leave()
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    if (const int error = m_stack->ascend()) {
        // The way back is lost, and with it all folders above: they keep their contents.
        m_levels.resize(1);
        m_levels.back().subfolders.clear();
        fail(error);
    } else if (left.failed) {
        m_levels.back().failed = true;
    } else {
        removeEmptyFolder(left.name);
    }
}

void FolderRemoval::removeFiles()
{
    std::vector<QByteArray> subfolders;
    const int error = forEachRawEntry(m_stack->folder(), [&](const dirent& entry) {
        if (!goesOn()) {
            return false;
        }
        unsigned char type = entry.d_type;
        if (type == DT_UNKNOWN) {
            const Result<struct statx> status = statAt(m_stack->folder(), entry.d_name, STATX_TYPE);
            type = status && isFolder(status.value()) ? DT_DIR : DT_REG;
        }
        if (type == DT_DIR) {
            subfolders.emplace_back(entry.d_name);
        } else {
            removeFile(entry.d_name);
        }
        return true;
    });
    m_levels.back().subfolders = std::move(subfolders);
    if (error != 0) {
        fail(error);
    }
}

void FolderRemoval::removeFile(const char* name)
{
    if (m_permission && !m_permission(m_stack->folder(), name)) {
        fail(EBUSY);
        return;
    }
    const int error = errorOf([&] { return ::unlinkat(m_stack->folder(), name, 0); });
    // A call that reported failure may still have worked.
    if (error == 0 || !statAt(m_stack->folder(), name, STATX_TYPE)) {
        countRemoved();
    }
    if (error != 0 && error != ENOENT && !isGone(m_stack->folder(), name)) {
        fail(error);
    }
}

void FolderRemoval::removeEmptyFolder(const QByteArray& name)
{
    constexpr int mostRepetitions = 8;
    Level& level = m_levels.back();
    const bool isTop = m_levels.size() == 1;
    if (m_folderPermission && !isTop && !m_folderPermission(m_stack->folder(), name.constData())) {
        fail(EBUSY);
        return;
    }
    const int error = errorOf([&] { return ::unlinkat(m_stack->folder(), name.constData(), AT_REMOVEDIR); });
    if (error == 0 || (error != ENOENT && isGone(m_stack->folder(), name.constData()))) {
        countRemoved();
    } else if (error == ENOTEMPTY && level.repetitions < mostRepetitions) {
        // Some file systems skip entries while other entries are removed, and others may be adding to the folder.
        ++level.repetitions;
        level.subfolders.push_back(name);
    } else if (error != ENOENT) {
        fail(error);
    }
}

void FolderRemoval::fail(int error)
{
    m_levels.back().failed = true;
    if (m_firstError == 0) {
        m_firstError = error;
    }
}

} // namespace lapsa
