// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TreeCopy.h"

#include "CopyProgress.h"
#include "FileAttributes.h"
#include "FolderListing.h"
#include "InterruptedCopies.h"
#include "SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <climits>
#include <utility>

namespace lapsa {

TreeCopy::TreeCopy(AtPath source, const struct statx& status, CopyProgress& progress)
    : m_source(std::move(source))
    , m_identity(identityOf(status))
    , m_progress(progress)
{}

int TreeCopy::run(const AtPath& to)
{
    const Result<struct statx> toFolder = statAt(to.folder.get(), "", STATX_INO);
    if (!toFolder) {
        return toFolder.error().code;
    }
    m_toFolder = identityOf(toFolder.value());
    m_toStart = to.folder;
    DirectoryStack from(m_source.folder);
    DirectoryStack copy(to.folder);
    m_from = &from;
    m_to = &copy;
    m_levels.push_back({});
    if (const int error = enter(m_source.name, to.name)) {
        return error;
    }
    if (identityOf(from.status()) != m_identity) {
        return EBUSY;
    }
    return walk();
}

int TreeCopy::walk()
{
    int error = copyFiles();
    while (error == 0 && m_levels.size() > 1) {
        error = m_progress.goOn();
        if (error != 0) {
            break;
        }
        std::vector<QByteArray>& subfolders = m_levels.back().subfolders;
        if (subfolders.empty()) {
            error = leave();
            continue;
        }
        const QByteArray name = std::move(subfolders.back());
        subfolders.pop_back();
        error = enter(name, name);
        if (error == 0) {
            error = copyFiles();
        }
    }
    return error;
}

int TreeCopy::enter(const QByteArray& name, const QByteArray& toName)
{
    if (const int error = m_from->descend(name.constData())) {
        return error;
    }
    // Through another mount, the destination folder may be inside the folder being copied.
    if (identityOf(m_from->status()) == m_toFolder) {
        return EINVAL;
    }
    // The top folder is marked as incomplete from the start.
    const mode_t mode = m_levels.size() == 1 ? interruptedMode : S_IRWXU;
    if (const int error = errorOf([&] { return ::mkdirat(m_to->folder(), toName.constData(), mode); })) {
        return error;
    }
    if (const int error = m_to->descend(toName.constData())) {
        return error;
    }
    m_levels.push_back({.toName = toName, .subfolders = {}, .folder = {}});
    if (m_levels.size() > 2) {
        return 0;
    }
    dropInheritedAccessLists(m_to->folder());
    return unlessNoModesAreKept(errorOf([&] { return ::fchmod(m_to->folder(), interruptedMode); }));
}

int TreeCopy::leave()
{
    const Result<struct statx> now = statAt(m_from->folder(), "", STATX_BASIC_STATS);
    struct statx status = m_from->status();
    if (!now || !(ContentStamp::of(now.value()) == ContentStamp::of(status))) {
        return EBUSY;
    }
    if (m_levels.size() == 2) {
        status.stx_mode = static_cast<decltype(status.stx_mode)>(S_IFDIR | interruptedMode);
    }
    if (const int error = copyAttributes(m_from->folder(), m_to->folder(), status)) {
        return error;
    }
    m_levels.pop_back();
    const int error = m_from->ascend();
    return error != 0 ? error : m_to->ascend();
}

int TreeCopy::copyFiles()
{
    int error = 0;
    const int listing = forEachRawEntry(m_from->folder(), [&](const dirent& entry) {
        const Result<struct statx> found = statAt(m_from->folder(), entry.d_name, STATX_BASIC_STATS);
        if (!found) {
            error = found.error().code == ENOENT ? EBUSY : found.error().code;
            return false;
        }
        const FoundEntry file{.folder = m_from->folder(), .name = entry.d_name, .status = found.value()};
        error = m_progress.goOn();
        error = error == 0 ? removalForbidden(file, m_from->status()) : error;
        if (error == 0 && isFolder(found.value())) {
            m_levels.back().subfolders.emplace_back(entry.d_name);
        } else if (error == 0) {
            error = copyFile(file);
        }
        return error == 0;
    });
    return error != 0 ? error : listing;
}

int TreeCopy::copyFile(const FoundEntry& entry)
{
    const FileIdentity identity = identityOf(entry.status);
    if (entry.status.stx_nlink > 1) {
        if (const auto earlier = m_hardLinks.find(identity); earlier != m_hardLinks.end()) {
            return copyHardLink(entry, earlier->second);
        }
    }
    if ((entry.status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        return EBUSY;
    }
    if (const int error = copyEntry(entry, m_to->folder(), entry.name, m_progress)) {
        return error;
    }
    m_copiedFiles.emplace(identity, ContentStamp::of(entry.status));
    if (entry.status.stx_nlink > 1) {
        m_hardLinks.emplace(identity, FirstName{.folder = currentFolder(), .name = entry.name});
    }
    return 0;
}

int TreeCopy::copyHardLink(const FoundEntry& entry, const FirstName& earlier)
{
    const Result<SharedDescriptor> folder = openFolder(earlier.folder);
    int error = folder ? errorOf([&] {
        return ::linkat(folder.value().get(), earlier.name.constData(), m_to->folder(), entry.name, 0);
    })
                       : folder.error().code;
    if (error != 0) {
        // Without hard links, or beyond their limit, the name gets its own file: better than no move at all.
        error = copyEntry(entry, m_to->folder(), entry.name, m_progress);
    }
    if (error == 0) {
        ++m_copiedFiles.at(identityOf(entry.status)).names;
    }
    return error;
}

std::size_t TreeCopy::currentFolder()
{
    std::optional<std::size_t> above;
    for (auto level = m_levels.begin() + 1; level != m_levels.end(); ++level) {
        if (!level->folder) {
            level->folder = m_folders.size();
            m_folders.push_back({.name = level->toName, .above = above});
        }
        above = level->folder;
    }
    return *above;
}

Result<SharedDescriptor> TreeCopy::openFolder(std::size_t folder) const
{
    // Collects the names upwards, then opens them downwards, in paths that are not too long for the system.
    std::vector<const QByteArray*> names;
    for (std::optional<std::size_t> next = folder; next; next = m_folders[*next].above) {
        names.push_back(&m_folders[*next].name);
    }
    constexpr qsizetype longest = PATH_MAX - NAME_MAX - 2;
    SharedDescriptor opened = m_toStart;
    while (!names.empty()) {
        QByteArray path = *names.back();
        for (names.pop_back(); !names.empty() && path.size() < longest; names.pop_back()) {
            path += '/' + *names.back();
        }
        Result<FileDescriptor> next = openAt(opened.get(), path.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
        if (!next) {
            return next.error();
        }
        opened = SharedDescriptor(std::move(next).value());
    }
    return opened;
}

} // namespace lapsa
