// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileCopy.h"

#include "CopyMark.h"
#include "CopyProgress.h"
#include "FileAttributes.h"
#include "InterruptedCopies.h"
#include "SourceFile.h"
#include "SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

namespace lapsa {

namespace {

/// Gives a complete copy, which is open and has no name yet, its final name.
int linkInPlace(int open, const AtPath& to)
{
    const int error = errorOf([&] {
        return ::linkat(AT_FDCWD, procPath(open).constData(), to.folder.get(), to.name.constData(), AT_SYMLINK_FOLLOW);
    });
    if (error == 0) {
        return 0;
    }
    const Result<struct statx> status = statAt(open, "", STATX_INO);
    return status && stands(to, identityOf(status.value())) ? 0 : error;
}

/// Makes a marked copy durable; the last moment to stop it. Returns an `errno` value.
int syncFile(int file, CopyProgress& progress)
{
    int error = markCopy(file);
    if (error == 0) {
        error = progress.finishWriting();
    }
    if (error == 0) {
        error = errorOf([&] { return ::fsync(file); });
    }
    return error == 0 ? progress.goOn() : error;
}

/// Copies to a file that gets its name only when it is complete: if the process ends earlier, nothing is left of it.
/// Returns an `errno` value: EOPNOTSUPP if the file system has no such files.
int copyNamelessly(const FoundEntry& entry, const SourceFile& from, const AtPath& to, CopyProgress& progress)
{
    const Result<FileDescriptor> made = openAt(to.folder.get(), ".", O_TMPFILE | O_WRONLY, 0600);
    if (!made) {
        const int error = made.error().code;
        return error == EISDIR || error == EINVAL || error == ENOENT ? EOPNOTSUPP : error;
    }
    const FileDescriptor& file = made.value();
    dropInheritedAccessLists(file.get());
    int error = copyRegularFile(from, file.get(), entry.status, progress);
    if (error == 0) {
        error = syncFile(file.get(), progress);
    }
    return error == 0 ? linkInPlace(file.get(), to) : error;
}

/// Copies to a file beside its destination, until it is complete.
int copyUnderOtherName(const FoundEntry& entry, const SourceFile& from, const AtPath& to, CopyProgress& progress)
{
    const AtPath copy{.folder = to.folder, .name = interruptedName()};
    // Marked as unfinished from the start.
    const Result<FileDescriptor> made =
        openAt(copy.folder.get(), copy.name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, interruptedMode);
    if (!made) {
        return made.error().code;
    }
    const FileDescriptor& file = made.value();
    dropInheritedAccessLists(file.get());
    struct statx marked = entry.status;
    marked.stx_mode = static_cast<decltype(marked.stx_mode)>(S_IFREG | interruptedMode);
    ::fchmod(file.get(), interruptedMode);
    int error = copyRegularFile(from, file.get(), marked, progress);
    if (error == 0) {
        error = syncFile(file.get(), progress);
    }
    if (error == 0) {
        error = putInPlace(copy, file.get(), to);
    }
    if (error != 0) {
        ::unlinkat(copy.folder.get(), copy.name.constData(), 0);
        return error;
    }
    error = copyAttributes(from.get(), file.get(), entry.status);
    if (error != 0 && ::unlinkat(to.folder.get(), to.name.constData(), 0) != 0) {
        return moveUnfinished;
    }
    return error;
}

} // namespace

int copyFileTo(const AtPath& to, const FoundEntry& entry, const SourceFile& from, CopyProgress& progress)
{
    const int error = copyNamelessly(entry, from, to, progress);
    return error == EOPNOTSUPP ? copyUnderOtherName(entry, from, to, progress) : error;
}

int putInPlace(const AtPath& copy, int open, const AtPath& to)
{
    // Asked for before: over a network that knows files by their paths, a renamed file is unknown when the answer got
    // lost.
    const Result<struct statx> status = statAt(open, "", STATX_INO);
    const int error = renameWithoutReplacing(copy, to);
    return error == 0 || (status && hasArrived(copy, identityOf(status.value()), to)) ? 0 : error;
}

} // namespace lapsa
