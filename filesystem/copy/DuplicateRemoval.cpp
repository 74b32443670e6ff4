// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DuplicateRemoval.h"

#include "AtPath.h"
#include "CopyMark.h"
#include "EntryComparison.h"
#include "FileAttributes.h"
#include "FolderRemoval.h"
#include "InterruptedCopies.h"
#include "SystemCalls.h"
#include "WorkObserver.h"

#include <QList>

#include <fcntl.h>
#include <unistd.h>

#include <optional>
#include <utility>

namespace lapsa {

namespace {

using fileSystem::Duplicate;
using fileSystem::WorkObserver;

bool isAnotherNameOf(const AtPath& copy, const struct statx& copyStatus, const AtPath& original)
{
    const Result<struct statx> one = statAt(copy.folder.get(), "", STATX_INO);
    const Result<struct statx> other = statAt(original.folder.get(), "", STATX_INO);
    // In one folder, or with one name, it would be one entry in two spellings.
    return !isFolder(copyStatus) && copyStatus.stx_nlink > 1 && one && other &&
           identityOf(one.value()) != identityOf(other.value()) && stands(original, identityOf(copyStatus));
}

/// Finds for the entries of one folder those of the same names in another.
class TwinFolders final
{
public:
    TwinFolders(QByteArray copyPath, FileDescriptor original, WorkObserver* observer)
        : m_copyPath(std::move(copyPath))
        , m_original(std::move(original))
        , m_observer(observer)
    {}

    [[nodiscard]] bool hasTwin(int folder, const char* name)
    {
        const int twin = twinOf(folder);
        if (twin < 0) {
            return false;
        }
        const Duplicate result =
            compare({.folder = borrowed(folder), .name = name}, {.folder = borrowed(twin), .name = name}, m_observer);
        m_isSure = m_isSure && result != Duplicate::Unknown;
        m_found = m_found || result == Duplicate::Gone;
        return result == Duplicate::Gone;
    }

    [[nodiscard]] bool hasTwinFolder(int folder, const char* name)
    {
        const int twin = twinOf(folder);
        const auto found = twin >= 0 ? statAt(twin, name, STATX_TYPE) : FileError::fromErrno(ENOENT);
        m_isSure = m_isSure && (found || found.error().code == ENOENT);
        return found && isFolder(found.value());
    }

    /// Whether every answer since the last call is known, and nothing had a twin.
    [[nodiscard]] bool foundNothing()
    {
        const bool nothing = m_isSure && !m_found;
        m_found = false;
        return nothing;
    }

private:
    static SharedDescriptor borrowed(int folder)
    {
        return SharedDescriptor(FileDescriptor(::fcntl(folder, F_DUPFD_CLOEXEC, 0)));
    }

    /// -1 if there is none.
    [[nodiscard]] int twinOf(int folder)
    {
        const Result<QByteArray> path = realPath(folder);
        if (!path || !(path.value() + '/').startsWith(m_copyPath + '/')) {
            m_isSure = false;
            return -1;
        }
        if (path.value() == m_copyPath) {
            return m_original.get();
        }
        if (path.value() != m_lastPath) {
            m_lastPath = path.value();
            m_last = opened(path.value().sliced(m_copyPath.size() + 1));
        }
        return m_last ? m_last->get() : -1;
    }

    /// Step by step, through no link.
    [[nodiscard]] std::optional<FileDescriptor> opened(const QByteArray& relative)
    {
        std::optional<FileDescriptor> last;
        for (const QByteArray& name : relative.split('/')) {
            const int from = last ? last->get() : m_original.get();
            Result<FileDescriptor> next = openAt(from, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
            if (!next) {
                m_isSure = m_isSure && (next.error().code == ENOENT || next.error().code == ENOTDIR);
                return std::nullopt;
            }
            last = std::move(next).value();
        }
        return last;
    }

    QByteArray m_copyPath;
    FileDescriptor m_original;
    WorkObserver* m_observer;
    bool m_isSure = true;
    bool m_found = false;
    QByteArray m_lastPath;
    std::optional<FileDescriptor> m_last;
};

/// What replaces the copy must be on the disk before it goes.
void syncAround(const AtPath& place)
{
    const Result<FileDescriptor> folder = openAt(place.folder.get(), ".", O_RDONLY | O_DIRECTORY);
    if (!folder || ::syncfs(folder.value().get()) != 0) {
        ::sync();
    }
}

Duplicate removeTwinFolder(const AtPath& copy, const struct statx& status, const AtPath& original,
                           WorkObserver* observer)
{
    Result<FileDescriptor> opened = openAt(copy.folder.get(), copy.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    Result<FileDescriptor> other =
        openAt(original.folder.get(), original.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    const Result<QByteArray> path = opened ? realPath(opened.value().get()) : opened.error();
    if (!other || !path) {
        return Duplicate::Unknown;
    }
    TwinFolders twins(path.value(), std::move(other).value(), observer);
    int error = 0;
    // What is left after the first round is looked at again: something may not have been removed.
    for (int round = 0; round < 2; ++round) {
        FolderRemoval removal([&](int folder, const char* name) { return twins.hasTwin(folder, name); }, observer);
        removal.askAboutFolders([&](int folder, const char* name) { return twins.hasTwinFolder(folder, name); });
        error = removal.run(copy, identityOf(status));
        if (error == 0) {
            return Duplicate::Gone;
        }
        if (twins.foundNothing()) {
            return error == EBUSY ? Duplicate::Differs : Duplicate::Unknown;
        }
    }
    return Duplicate::Unknown;
}

/// A copy that has its name, but not yet the mode of its original.
[[nodiscard]] bool finishAttributes(const AtPath& from, const struct statx& status, const AtPath& unfinished)
{
    const Result<struct statx> other = statusOf(unfinished);
    if (!other || (other.value().stx_mode & 07777) != interruptedMode) {
        return bool(other);
    }
    const Result<FileDescriptor> source = openFound(from, status);
    const Result<FileDescriptor> target = openFound(unfinished, other.value());
    return source && target && copyAttributes(source.value().get(), target.value().get(), status) == 0;
}

Duplicate removeTwinFile(const AtPath& copy, const struct statx& status, const AtPath& original, WorkObserver* observer)
{
    if (!isAnotherNameOf(copy, status, original)) {
        if (const Duplicate result = compare(copy, original, observer); result != Duplicate::Gone) {
            return result;
        }
    }
    syncAround(original);
    const bool gone = ::unlinkat(copy.folder.get(), copy.name.constData(), 0) == 0;
    return gone ? Duplicate::Gone : Duplicate::Unknown;
}

} // namespace

Duplicate fileSystem::removeDuplicate(const QString& copy, const QString& original, const FileIdentity& identity,
                                      MarkIs mark, WorkObserver* observer)
{
    const Result<AtPath> place = openParentOf(copy);
    const Result<AtPath> other = openParentOf(original);
    if (!place || !other) {
        return Duplicate::Unknown;
    }
    const Result<struct statx> status = statusOf(place.value());
    const Result<struct statx> otherStatus = statusOf(other.value());
    if (!status || !otherStatus || identityOf(otherStatus.value()) != identity) {
        return Duplicate::Unknown;
    }
    if (isAnotherNameOf(place.value(), status.value(), other.value())) {
        return removeTwinFile(place.value(), status.value(), other.value(), observer);
    }
    if (isMarkedCopy(mark == MarkIs::OnCopy ? place.value() : other.value()) == Marked::No) {
        return Duplicate::NotMarked;
    }
    const bool hasMode = isFolder(status.value()) || S_ISREG(status.value().stx_mode);
    if (mark == MarkIs::OnOriginal && hasMode && !finishAttributes(place.value(), status.value(), other.value())) {
        return Duplicate::Unknown;
    }
    if (!isFolder(status.value())) {
        return removeTwinFile(place.value(), status.value(), other.value(), observer);
    }
    if (!isFolder(otherStatus.value()) || identityOf(status.value()) == identity) {
        return Duplicate::Unknown;
    }
    syncAround(other.value());
    return removeTwinFolder(place.value(), status.value(), other.value(), observer);
}

bool fileSystem::isUnfinished(const QString& path)
{
    const Result<AtPath> place = openParentOf(path);
    return place && isMarkedCopy(place.value()) == Marked::Yes;
}

void fileSystem::forgetCopy(const QString& copy, const QString& original)
{
    const Result<AtPath> place = openParentOf(copy);
    const Result<AtPath> other = openParentOf(original);
    if (place && other && syncNames(other.value().folder.get()) == 0) {
        unmarkCopy(place.value());
    }
}

} // namespace lapsa
