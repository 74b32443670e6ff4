// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PathWalk.h"

#include "PrivateGroup.h"
#include "SystemCalls.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

namespace lapsa {

namespace {

bool isTrusted(uid_t owner)
{
    return owner == 0 || owner == ::geteuid();
}

/// Whether the mode lets somebody other than the user and the administrator change the folder.
bool isShared(const struct statx& folder)
{
    return !isTrusted(folder.stx_uid) || (folder.stx_mode & (S_IWGRP | S_IWOTH)) != 0;
}

/// In a folder with the sticky bit, nobody can replace the entries of others.
bool isKept(const struct statx& folder, const struct statx& entry)
{
    return isTrusted(folder.stx_uid) && (folder.stx_mode & S_ISVTX) != 0 && isTrusted(entry.stx_uid);
}

/// Whether a file system keeps its inode numbers stable. FAT and many file systems outside the kernel invent new ones
/// when they have forgotten a file for a while.
bool keepsInodeNumbers(int file)
{
    constexpr std::array<unsigned long, 6> without = {0x4d44, 0x2011bab0, 0x65735546, 0x517b, 0xfe534d42, 0x01021997};
    struct statfs status = {};
    const int failed = retrying([&] { return ::fstatfs(file, &status); });
    const auto type = static_cast<unsigned long>(status.f_type);
    return failed == 0 && std::ranges::find(without, type) == without.end();
}

Result<FileDescriptor> openedWithoutLinks(const QByteArray& path)
{
    open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    FileDescriptor folder(retrying(
        [&] { return static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.constData(), &how, sizeof how)); }));
    if (!folder) {
        return FileError::fromErrno(errno);
    }
    return folder;
}

/// The usual case, done cheaply: no links on the way and nothing that others may replace, so that the check of each
/// folder still holds when the last one is opened.
std::optional<WalkedFolder> plainlyOpened(const QByteArray& path)
{
    Result<struct statx> above = statAt(AT_FDCWD, "/", STATX_BASIC_STATS);
    for (qsizetype end = 0; above && end < path.size();) {
        const qsizetype slash = path.indexOf('/', end + 1);
        end = slash < 0 ? path.size() : slash;
        const Result<struct statx> found = statAt(AT_FDCWD, path.first(end).constData(), STATX_BASIC_STATS);
        const bool safe =
            found && isFolder(found.value()) && (!isShared(above.value()) || isKept(above.value(), found.value()));
        if (!safe) {
            return {};
        }
        above = found;
    }
    Result<FileDescriptor> folder = above ? openedWithoutLinks(path) : above.error();
    if (!folder) {
        return {};
    }
    return WalkedFolder{
        .folder = std::move(folder).value(), .status = above.value(), .plain = true, .path = {}, .steps = {}};
}

/// Goes from folder to folder, opening each one in the one before it.
class CarefulWalk final
{
public:
    explicit CarefulWalk(WalkDetail detail)
        : m_detail(detail)
    {}

    [[nodiscard]] Result<WalkedFolder> run(const QByteArray& path);

private:
    [[nodiscard]] int startAtRoot();
    [[nodiscard]] int go(const QByteArray& name);
    [[nodiscard]] int goUp();

    [[nodiscard]] int enter(FileDescriptor opened, const struct statx& status)
    {
        m_walked.folder = std::move(opened);
        m_walked.status = status;
        return 0;
    }

    [[nodiscard]] int follow(const FileDescriptor& link, const struct statx& status);
    void note(const QByteArray& path, int file, const struct statx& status, bool exchangeable);
    void expect(const QByteArray& path);

    WalkDetail m_detail;
    WalkedFolder m_walked;
    /// The names still to go, the next one last.
    std::vector<QByteArray> m_ahead;
    int m_links = 0;
};

Result<WalkedFolder> CarefulWalk::run(const QByteArray& path)
{
    expect(path);
    int error = startAtRoot();
    while (error == 0 && !m_ahead.empty()) {
        const QByteArray name = std::move(m_ahead.back());
        m_ahead.pop_back();
        error = name == ".." ? goUp() : go(name);
    }
    if (error != 0) {
        return FileError::fromErrno(error);
    }
    return std::move(m_walked);
}

void CarefulWalk::expect(const QByteArray& path)
{
    const QList<QByteArray> names = path.split('/');
    std::copy_if(names.crbegin(), names.crend(), std::back_inserter(m_ahead),
                 [](const QByteArray& name) { return !name.isEmpty() && name != "."; });
}

int CarefulWalk::startAtRoot()
{
    Result<FileDescriptor> root = openAt(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
    const Result<struct statx> status =
        root ? statAt(root.value().get(), "", STATX_BASIC_STATS | STATX_BTIME) : root.error();
    if (!status) {
        return status.error().code;
    }
    m_walked.path.clear();
    return enter(std::move(root).value(), status.value());
}

int CarefulWalk::go(const QByteArray& name)
{
    const int folder = m_walked.folder.get();
    Result<FileDescriptor> found = openAt(folder, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (!found && (found.error().code == ENOTDIR || found.error().code == ELOOP)) {
        found = openAt(folder, name.constData(), O_PATH | O_NOFOLLOW);
    }
    if (!found) {
        return found.error().code;
    }
    FileDescriptor opened = std::move(found).value();
    const Result<struct statx> status = statAt(opened.get(), "", STATX_BASIC_STATS | STATX_BTIME);
    if (!status) {
        return status.error().code;
    }
    const QByteArray path = m_walked.path + '/' + name;
    note(path, opened.get(), status.value(), othersMayExchange(folder, m_walked.status, status.value()));
    if (isFolder(status.value())) {
        m_walked.path = path;
        return enter(std::move(opened), status.value());
    }
    return S_ISLNK(status.value().stx_mode) ? follow(opened, status.value()) : ENOTDIR;
}

int CarefulWalk::goUp()
{
    Result<FileDescriptor> above = openAt(m_walked.folder.get(), "..", O_PATH | O_DIRECTORY);
    if (!above) {
        return above.error().code;
    }
    const Result<struct statx> status = statAt(above.value().get(), "", STATX_BASIC_STATS | STATX_BTIME);
    if (!status) {
        return status.error().code;
    }
    m_walked.path.truncate(std::max<qsizetype>(0, m_walked.path.lastIndexOf('/')));
    // If others can move the folder elsewhere, it may have another folder above it.
    const bool exchangeable = std::ranges::any_of(m_walked.steps, &WalkedStep::exchangeable);
    note(m_walked.path, above.value().get(), status.value(), exchangeable);
    return enter(std::move(above).value(), status.value());
}

int CarefulWalk::follow(const FileDescriptor& link, const struct statx& status)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    if (++m_links > mostLinks) {
        return ELOOP;
    }
    if (!mayFollowLinkOf(status.stx_uid)) {
        return EACCES;
    }
    const Result<QByteArray> target = readLinkAt(link.get(), "");
    if (!target || target.value().isEmpty()) {
        return target ? ENOENT : target.error().code;
    }
    expect(target.value());
    return target.value().startsWith('/') ? startAtRoot() : 0;
}

void CarefulWalk::note(const QByteArray& path, int file, const struct statx& status, bool exchangeable)
{
    if (m_detail == WalkDetail::Steps) {
        m_walked.steps.push_back({.step = pathStep(path, file, status), .exchangeable = exchangeable});
    }
}

} // namespace

Result<WalkedFolder> walkTo(const QByteArray& path, WalkDetail detail)
{
    if (detail == WalkDetail::Folder) {
        if (std::optional<WalkedFolder> opened = plainlyOpened(path)) {
            return *std::move(opened);
        }
    }
    return CarefulWalk(detail).run(path);
}

Result<WalkedFolder> plainFolderIn(const WalkedFolder& above, const QByteArray& name)
{
    Result<FileDescriptor> folder = openAt(above.folder.get(), name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (!folder) {
        return folder.error();
    }
    const Result<struct statx> status = statAt(folder.value().get(), "", STATX_BASIC_STATS);
    if (!status) {
        return status.error();
    }
    if (isShared(above.status) && !isKept(above.status, status.value())) {
        return FileError::fromErrno(EACCES);
    }
    return WalkedFolder{
        .folder = std::move(folder).value(), .status = status.value(), .plain = true, .path = {}, .steps = {}};
}

bool mayFollowLinkOf(uid_t owner)
{
    return isTrusted(owner);
}

bool othersMayWrite(int folder, const struct statx& status)
{
    if (!isTrusted(status.stx_uid) || (status.stx_mode & S_IWOTH) != 0) {
        return true;
    }
    if ((status.stx_mode & S_IWGRP) == 0) {
        return false;
    }
    // With an access list, the group bits are the mask for everyone in the list.
    return !isPrivateGroup(status.stx_gid) ||
           ::getxattr(procPath(folder).constData(), "system.posix_acl_access", nullptr, 0) > 0;
}

bool othersMayExchange(int folder, const struct statx& folderStatus, const struct statx& entry)
{
    return isShared(folderStatus) && !isKept(folderStatus, entry) && othersMayWrite(folder, folderStatus);
}

fileSystem::PathStep pathStep(const QByteArray& path, int file, const struct statx& status)
{
    const FileIdentity identity = identityOf(status);
    const bool hasBirth = (status.stx_mask & STATX_BTIME) != 0;
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return {.path = path,
            .device = identity.device,
            .inode = keepsInodeNumbers(file) ? identity.inode : 0,
            .born = hasBirth ? status.stx_btime.tv_sec * nanoseconds + status.stx_btime.tv_nsec : 0};
}

bool isSameStep(const fileSystem::PathStep& before, const fileSystem::PathStep& now)
{
    const bool bornThen = before.born == 0 || now.born == 0 || before.born == now.born;
    return before.path == now.path && before.inode == now.inode && bornThen &&
           (before.device == 0 || before.device == now.device);
}

} // namespace lapsa
