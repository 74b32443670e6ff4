// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LateWriter.h"

#include "CopyProgress.h"
#include "FileAttributes.h"
#include "FileContent.h"
#include "InterruptedCopies.h"
#include "SystemCalls.h"
#include "WorkObserver.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>

namespace lapsa {

namespace {

constexpr std::chrono::seconds longestWait{10};

/// A sign of life, and nothing that could be stopped.
class CopyAside final : public fileSystem::WorkObserver
{
public:
    explicit CopyAside(CopyProgress& progress)
        : m_progress(progress)
    {}

    void copied(std::int64_t /*bytes*/, std::int64_t /*total*/) override { m_progress.tell(); }

    void removed(std::int64_t /*entries*/) override {}

    [[nodiscard]] bool stopRequested() const override { return false; }

private:
    CopyProgress& m_progress;
};

bool isAsCopied(const struct statx& now, const ContentStamp& copied)
{
    return now.stx_size == copied.size && now.stx_mtime.tv_sec == copied.changed.tv_sec &&
           now.stx_mtime.tv_nsec == copied.changed.tv_nsec;
}

/// Returns an `errno` value.
int fill(const FileDescriptor& file, const SourceFile& from, const struct statx& status, CopyProgress& progress)
{
    int error = copyContent(from, file.get(), off_t(status.stx_size), progress);
    if (error == 0) {
        error = copyAttributes(from.get(), file.get(), status);
    }
    return error == 0 ? errorOf([&] { return ::fsync(file.get()); }) : error;
}

} // namespace

void followLateWriter(SourceFile& removed, const ContentStamp& copied, const AtPath& copy, CopyProgress& progress)
{
    removed.awaitWriters(longestWait, [&] { progress.tell(); });
    const Result<struct statx> now = statAt(removed.get(), "", STATX_BASIC_STATS);
    const Result<struct statx> first = statAt(copy.folder.get(), copy.name.constData(), STATX_INO);
    if (!now || !first || isAsCopied(now.value(), copied)) {
        return;
    }
    const AtPath fresh{.folder = copy.folder, .name = interruptedName()};
    const Result<FileDescriptor> made =
        openAt(fresh.folder.get(), fresh.name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, interruptedMode);
    if (!made) {
        return;
    }
    ::fchmod(made.value().get(), interruptedMode);
    dropInheritedAccessLists(made.value().get());
    CopyAside aside(progress);
    CopyProgress again([] {}, &aside);
    const bool isWhole = fill(made.value(), removed, now.value(), again) == 0;
    const bool isInPlace =
        isWhole && stands(copy, identityOf(first.value())) &&
        ::renameat(fresh.folder.get(), fresh.name.constData(), copy.folder.get(), copy.name.constData()) == 0;
    if (!isInPlace) {
        ::unlinkat(fresh.folder.get(), fresh.name.constData(), 0);
    }
}

} // namespace lapsa
