// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TreeSize.h"

#include "CopyProgress.h"
#include "DirectoryStack.h"
#include "FolderListing.h"
#include "FreeRoom.h"

#include <unordered_set>
#include <vector>

namespace lapsa {

namespace {

/// A walk over a folder and all its subfolders.
class SizeWalk final
{
public:
    SizeWalk(const AtPath& place, CopyProgress& progress)
        : m_stack(place.folder)
        , m_progress(progress)
    {}

    /// Returns an `errno` value.
    [[nodiscard]] int run(const AtPath& place, const FileIdentity& identity);

    [[nodiscard]] const TreeSize& size() const { return m_size; }

private:
    [[nodiscard]] int look();
    void count(const struct statx& status);

    DirectoryStack m_stack;
    CopyProgress& m_progress;
    TreeSize m_size;
    /// Files with several names.
    std::unordered_set<FileIdentity, FileIdentityHash> m_counted;
    /// For each folder on the way down, the names of the subfolders still to enter.
    std::vector<std::vector<QByteArray>> m_subfolders;
};

int SizeWalk::run(const AtPath& place, const FileIdentity& identity)
{
    int error = m_stack.descend(place.name.constData());
    if (error == 0) {
        error = identityOf(m_stack.status()) == identity ? look() : EBUSY;
    }
    while (error == 0 && !m_subfolders.empty()) {
        std::vector<QByteArray>& names = m_subfolders.back();
        if (names.empty()) {
            m_subfolders.pop_back();
            error = m_stack.ascend();
            continue;
        }
        const QByteArray name = std::move(names.back());
        names.pop_back();
        error = m_stack.descend(name.constData()) == 0 ? look() : m_progress.goOn();
    }
    return error;
}

int SizeWalk::look()
{
    int error = 0;
    std::vector<QByteArray>& subfolders = m_subfolders.emplace_back();
    const int listing = forEachRawEntry(m_stack.folder(), [&](const dirent& entry) {
        error = m_progress.goOn();
        if (error == 0 && entry.d_type == DT_DIR) {
            subfolders.emplace_back(entry.d_name);
        } else if (error == 0 && (entry.d_type == DT_REG || entry.d_type == DT_UNKNOWN)) {
            const Result<struct statx> found = statAt(m_stack.folder(), entry.d_name, STATX_BASIC_STATS);
            if (found && isFolder(found.value())) {
                subfolders.emplace_back(entry.d_name);
            } else if (found) {
                count(found.value());
            }
        }
        return error == 0;
    });
    static_cast<void>(listing); // what cannot be listed counts nothing
    return error;
}

void SizeWalk::count(const struct statx& status)
{
    if (S_ISREG(status.stx_mode) && (status.stx_nlink == 1 || m_counted.insert(identityOf(status)).second)) {
        m_size.bytes += static_cast<std::int64_t>(status.stx_size);
        m_size.leastRoom += leastRoomOf(status);
    }
}

} // namespace

Result<TreeSize> sizeOfTree(const AtPath& place, const FileIdentity& identity, CopyProgress& progress)
{
    SizeWalk walk(place, progress);
    if (const int error = walk.run(place, identity)) {
        return FileError::fromErrno(error);
    }
    return walk.size();
}

} // namespace lapsa
