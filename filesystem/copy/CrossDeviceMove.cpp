// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CrossDeviceMove.h"

#include "CopiedOriginals.h"
#include "CopyMark.h"
#include "CopyProgress.h"
#include "EntryCopy.h"
#include "FileAttributes.h"
#include "FileCopy.h"
#include "FolderRemoval.h"
#include "FreeRoom.h"
#include "InterruptedCopies.h"
#include "LateWriter.h"
#include "SourceFile.h"
#include "SystemCalls.h"
#include "TreeCopy.h"
#include "TreeSize.h"
#include "WorkObserver.h"

#include <fcntl.h>
#include <unistd.h>

namespace lapsa {

namespace {

/// A removal that is a part of a copy: a sign of life, and nothing that could be stopped.
class RemovalAside final : public fileSystem::WorkObserver
{
public:
    explicit RemovalAside(CopyProgress& progress)
        : m_progress(progress)
    {}

    void copied(std::int64_t /*bytes*/, std::int64_t /*total*/) override {}

    void removed(std::int64_t /*entries*/) override { m_progress.tell(); }

    [[nodiscard]] bool stopRequested() const override { return false; }

private:
    CopyProgress& m_progress;
};

FoundEntry foundAt(const AtPath& place, const struct statx& status)
{
    return {.folder = place.folder.get(), .name = place.name.constData(), .status = status};
}

int checkRemovable(const FoundEntry& entry)
{
    const Result<struct statx> folder = statAt(entry.folder, "", STATX_BASIC_STATS);
    return folder ? removalForbidden(entry, folder.value()) : folder.error().code;
}

bool isGone(const AtPath& place)
{
    return lapsa::isGone(place.folder.get(), place.name.constData());
}

/// Removes a copy after a failure, but only if the source can be seen: otherwise the copy may be all that is left, and
/// is kept.
int takeBack(const AtPath& from, const AtPath& to, int error)
{
    if (!statAt(from.folder.get(), from.name.constData(), STATX_TYPE)) {
        return isGone(from) ? 0 : moveUnfinished;
    }
    const int removing = errorOf([&] { return ::unlinkat(to.folder.get(), to.name.constData(), 0); });
    return removing == 0 || isGone(to) ? error : moveUnfinished;
}

/// Removes the source of a complete copy if `isStill` says that it is what was copied.
template <typename IsStill>
int removeSource(const AtPath& from, const struct statx& status, const AtPath& to, IsStill isStill)
{
    if (const int error = syncNames(to.folder.get())) {
        return takeBack(from, to, error);
    }
    if (!stands(from, identityOf(status)) || !isStill()) {
        return takeBack(from, to, ETXTBSY);
    }
    const int error = errorOf([&] { return ::unlinkat(from.folder.get(), from.name.constData(), 0); });
    return error == 0 || isGone(from) ? 0 : takeBack(from, to, error);
}

int moveRegularFile(const AtPath& from, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    const FoundEntry entry = foundAt(from, status);
    // Stays open, and leased, until the end.
    Result<SourceFile> source = SourceFile::open(entry);
    if (!source) {
        return source.error().code;
    }
    if (isSureNotToFit(leastRoomOf(status), to.folder.get())) {
        return ENOSPC;
    }
    progress.begin();
    progress.expect(std::int64_t(status.stx_size));
    int error = progress.goOn();
    if (error == 0) {
        error = copyFileTo(to, entry, source.value(), progress);
    }
    if (error == 0) {
        error = removeSource(from, status, to, [&] { return source.value().isStill(status); });
    }
    if (error == 0 && source.value().wanted()) {
        followLateWriter(source.value(), ContentStamp::of(status), to, progress);
    }
    return error;
}

int moveSpecialFile(const AtPath& from, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    progress.begin();
    if (const int error = copyEntry(foundAt(from, status), to.folder.get(), to.name.constData(), progress)) {
        return error;
    }
    return removeSource(from, status, to, [&] {
        const Result<struct statx> now = statAt(from.folder.get(), from.name.constData(), STATX_BASIC_STATS);
        return now && ContentStamp::of(now.value()) == ContentStamp::of(status);
    });
}

/// Moves the complete copy of a folder to its destination. Sets its mode last: until then the mode marks it as
/// unfinished.
int finishFolder(const AtPath& copy, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    const Result<FileDescriptor> opened =
        openAt(copy.folder.get(), copy.name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!opened) {
        return opened.error().code;
    }
    const FileDescriptor& folder = opened.value();
    if (const int error = markCopy(folder.get())) {
        return error;
    }
    // One call for the whole file system instead of one per file: much cheaper for folders with many files.
    if (const int error = errorOf([&] { return ::syncfs(folder.get()); })) {
        return error;
    }
    if (const int error = progress.goOn()) {
        return error; // the last moment to stop it
    }
    if (const int error = putInPlace(copy, folder.get(), to)) {
        return error;
    }
    int error = unlessNoModesAreKept(errorOf([&] { return ::fchmod(folder.get(), status.stx_mode & 07777U); }));
    if (error == 0) {
        error = errorOf([&] { return ::fsync(folder.get()); });
    }
    if (error == 0) {
        error = syncNames(to.folder.get());
    }
    if (error != 0) {
        removeCopy(to);
        return isGone(to) ? error : moveUnfinished;
    }
    return 0;
}

/// Copies a folder to its destination. Returns an `errno` value; after a failure nothing is left of the copy, but for
/// moveUnfinished.
int copyFolder(TreeCopy& tree, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    const AtPath copy{.folder = to.folder, .name = interruptedName()};
    int error = tree.run(copy);
    if (error == 0) {
        error = progress.finishWriting();
    }
    if (error == 0) {
        error = finishFolder(copy, status, to, progress);
    }
    if (error != 0) {
        RemovalAside aside(progress);
        removeCopy(copy, &aside);
    }
    return error;
}

int moveFolder(const AtPath& from, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    progress.begin();
    const Result<TreeSize> size = sizeOfTree(from, identityOf(status), progress);
    if (!size) {
        return size.error().code;
    }
    if (isSureNotToFit(size.value().leastRoom, to.folder.get())) {
        return ENOSPC;
    }
    progress.expect(size.value().bytes);
    TreeCopy tree(from, status, progress);
    if (const int error = copyFolder(tree, status, to, progress)) {
        return error;
    }
    // Entries of the source that are new, or changed since they were copied, stay there.
    CopiedOriginals originals(tree.copiedFiles(), {.from = from, .to = to}, progress);
    RemovalAside aside(progress);
    FolderRemoval removal([&](int folder, const char* name) { return originals.mayGo(folder, name); }, &aside);
    const int error = removal.run(from, identityOf(status));
    // A removal that finds nothing to remove has succeeded, but a failing disk can say so of what is there.
    if (isGone(from) || (error == 0 && !stands(from, identityOf(status)))) {
        return 0;
    }
    if (removal.removedAnything()) {
        return moveUnfinished;
    }
    removeCopy(to, &aside);
    const int known = error == EBUSY ? ETXTBSY : error == 0 ? EIO : error;
    return isGone(to) ? known : moveUnfinished;
}

} // namespace

int moveAcross(const AtPath& from, const struct statx& status, const AtPath& to, CopyProgress& progress)
{
    if (statAt(to.folder.get(), to.name.constData(), STATX_TYPE)) {
        return EEXIST;
    }
    if (const int error = checkRemovable(foundAt(from, status))) {
        return error;
    }
    return S_ISREG(status.stx_mode) ? moveRegularFile(from, status, to, progress)
           : isFolder(status)       ? moveFolder(from, status, to, progress)
                                    : moveSpecialFile(from, status, to, progress);
}

} // namespace lapsa
