// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AtPath.h"
#include "FileDescriptor.h"
#include "FileSystem.h"
#include "FolderListing.h"
#include "PathWalk.h"
#include "PutAside.h"
#include "SystemCalls.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <tuple>
#include <vector>

namespace lapsa::fileSystem {

namespace {

/// The place of a path after following the links at its end; the entry need not exist.
Result<AtPath> openParentOfTarget(const QString& path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    Result<AtPath> place = openParentOf(path);
    for (int links = 0; place && links < mostLinks; ++links) {
        const Result<struct statx> link =
            statAt(place.value().folder.get(), place.value().name.constData(), STATX_TYPE | STATX_UID);
        if (link && S_ISLNK(link.value().stx_mode) && !mayFollowLinkOf(link.value().stx_uid)) {
            return FileError::fromErrno(EACCES);
        }
        const Result<QByteArray> target = readLinkAt(place.value().folder.get(), place.value().name.constData());
        if (!target) {
            const int error = target.error().code;
            return error == EINVAL || error == ENOENT ? std::move(place) : target.error();
        }
        place = openParentOf(place.value().folder.get(), target.value());
    }
    return place ? FileError::fromErrno(ELOOP) : std::move(place);
}

/// Creates a new file with exactly these bytes, which are on the disk when this returns. Returns an `errno` value.
int writeNewFile(int folder, const QByteArray& name, QByteArrayView bytes)
{
    Result<FileDescriptor> made = openAt(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!made) {
        return made.error().code;
    }
    FileDescriptor file = std::move(made).value();
    // Restores what the umask removed.
    int error = errorOf([&] { return ::fchmod(file.get(), 0600); });
    if (error == 0) {
        error = writeAll(file.get(), bytes);
    }
    if (error == 0) {
        error = errorOf([&] { return ::fsync(file.get()); });
    }
    const int closing = file.close();
    return error != 0 ? error : closing;
}

/// Names for the files that will replace `name` once written: the number keeps them distinct from each other and from
/// all other files.
class TemporaryNames final
{
public:
    explicit TemporaryNames(const QByteArray& name)
        : m_start('.' + name.first(std::min<qsizetype>(name.size(), NAME_MAX / 2)) + '.')
    {}

    [[nodiscard]] QByteArray fresh() const
    {
        const QByteArray number = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
        return m_start + number.rightJustified(digits, '0') + end.toByteArray();
    }

    [[nodiscard]] bool has(QByteArrayView name) const
    {
        const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
        return name.size() == m_start.size() + digits + end.size() && name.startsWith(m_start) && name.endsWith(end) &&
               std::ranges::all_of(name.sliced(m_start.size(), digits), isDigit);
    }

private:
    static constexpr qsizetype digits = 16;
    static constexpr QByteArrayView end = ".tmp";

    QByteArray m_start;
};

/// Removes what an earlier, killed process left behind.
void removeLeftovers(int folder, const TemporaryNames& names)
{
    const FileDescriptor listed(retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    std::vector<QByteArray> left;
    // The next write retries what cannot be listed or removed now.
    std::ignore = forEachRawEntry(listed.get(), [&](const dirent& entry) {
        const Result<struct statx> status = names.has(entry.d_name)
                                                ? statAt(folder, entry.d_name, STATX_TYPE | STATX_UID)
                                                : FileError::fromErrno(ENOENT);
        if (status && S_ISREG(status.value().stx_mode) && status.value().stx_uid == ::geteuid()) {
            left.emplace_back(entry.d_name);
        }
        return true;
    });
    for (const QByteArray& name : left) {
        ::unlinkat(folder, name.constData(), 0);
    }
}

/// Whether the entry there may be replaced: a device or a pipe has a purpose and must not become a file. Returns an
/// `errno` value.
int replaceable(const AtPath& place)
{
    const Result<struct statx> found = statAt(place.folder.get(), place.name.constData(), STATX_TYPE);
    if (!found || S_ISREG(found.value().stx_mode)) {
        return 0;
    }
    return isFolder(found.value()) ? EISDIR : EINVAL;
}

} // namespace

Result<void> writeAtomically(const QString& path, QByteArrayView bytes)
{
    const Result<AtPath> target = openParentOfTarget(path);
    if (!target) {
        return target.error();
    }
    if (const int error = replaceable(target.value())) {
        return FileError::fromErrno(error);
    }
    const int folder = target.value().folder.get();
    const QByteArray& name = target.value().name;
    const TemporaryNames names(name);
    removeLeftovers(folder, names);
    const QByteArray temporary = names.fresh();
    int error = writeNewFile(folder, temporary, bytes);
    if (error == EEXIST) {
        return FileError::fromErrno(error); // not ours, whatever it is
    }
    if (error == 0) {
        error = errorOf([&] { return ::renameat(folder, temporary.constData(), folder, name.constData()); });
    }
    if (error != 0) {
        ::unlinkat(folder, temporary.constData(), 0);
        return FileError::fromErrno(error);
    }
    error = syncFolder(folder);
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

Result<void> putAside(const QString& path, const QString& to)
{
    const Result<AtPath> from = openParentOfTarget(path);
    const Result<AtPath> aside = openParentOf(to);
    if (!from || !aside) {
        return from ? aside.error() : from.error();
    }
    int error = replaceable(from.value());
    error = error == 0 ? renameWithoutReplacing(from.value(), aside.value()) : error;
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace lapsa::fileSystem
