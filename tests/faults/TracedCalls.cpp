// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TracedCalls.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace lapsa::test {

namespace {

constexpr std::array calls = std::to_array<TracedCall>({
    {SYS_open, "open", 0},
    {SYS_openat, "openat", 1},
    {SYS_openat2, "openat2", 1},
    {SYS_creat, "creat", 0},
    {SYS_close, "close"},
    {SYS_read, "read", {}, 2},
    {SYS_pread64, "pread64", {}, 2},
    {SYS_write, "write", {}, 2},
    {SYS_pwrite64, "pwrite64", {}, 2},
    {SYS_writev, "writev"},
    {SYS_sendfile, "sendfile", {}, 3},
    {SYS_copy_file_range, "copy_file_range", {}, 4},
    {SYS_lseek, "lseek"},
    {SYS_ioctl, "ioctl"},
    {SYS_fcntl, "fcntl"},
    {SYS_flock, "flock"},
    {SYS_fsync, "fsync"},
    {SYS_fdatasync, "fdatasync"},
    {SYS_sync_file_range, "sync_file_range"},
    {SYS_syncfs, "syncfs"},
    {SYS_ftruncate, "ftruncate"},
    {SYS_fallocate, "fallocate"},
    {SYS_rename, "rename", 0},
    {SYS_renameat, "renameat", 1},
    {SYS_renameat2, "renameat2", 1},
    {SYS_link, "link", 0},
    {SYS_linkat, "linkat", 1},
    {SYS_symlink, "symlink", 1},
    {SYS_symlinkat, "symlinkat", 2},
    {SYS_unlink, "unlink", 0},
    {SYS_unlinkat, "unlinkat", 1},
    {SYS_rmdir, "rmdir", 0},
    {SYS_mkdir, "mkdir", 0},
    {SYS_mkdirat, "mkdirat", 1},
    {SYS_mknod, "mknod", 0},
    {SYS_mknodat, "mknodat", 1},
    {SYS_chmod, "chmod", 0},
    {SYS_fchmod, "fchmod"},
    {SYS_fchmodat, "fchmodat", 1},
    {SYS_chown, "chown", 0},
    {SYS_lchown, "lchown", 0},
    {SYS_fchown, "fchown"},
    {SYS_fchownat, "fchownat", 1},
    {SYS_utimensat, "utimensat", 1},
    {SYS_setxattr, "setxattr", 0},
    {SYS_fsetxattr, "fsetxattr"},
    {SYS_getxattr, "getxattr", 0},
    {SYS_fgetxattr, "fgetxattr"},
    {SYS_listxattr, "listxattr", 0},
    {SYS_flistxattr, "flistxattr"},
    {SYS_removexattr, "removexattr", 0},
    {SYS_lsetxattr, "lsetxattr", 0},
    {SYS_lgetxattr, "lgetxattr", 0},
    {SYS_lremovexattr, "lremovexattr", 0},
    {SYS_stat, "stat", 0},
    {SYS_lstat, "lstat", 0},
    {SYS_fstat, "fstat"},
    {SYS_newfstatat, "newfstatat", 1},
    {SYS_statx, "statx", 1},
    {SYS_access, "access", 0},
    {SYS_faccessat, "faccessat", 1},
    {SYS_faccessat2, "faccessat2", 1},
    {SYS_readlink, "readlink", 0},
    {SYS_readlinkat, "readlinkat", 1},
    {SYS_getdents64, "getdents64"},
});

constexpr sock_filter statement(unsigned code, std::size_t value)
{
    return {.code = static_cast<__u16>(code), .jt = 0, .jf = 0, .k = static_cast<__u32>(value)};
}

/// Goes on with the next statement where the loaded word equals `value`, else leaves `otherwise` of them out.
constexpr sock_filter ifEqual(std::size_t value, unsigned char otherwise)
{
    return {.code = BPF_JMP | BPF_JEQ | BPF_K, .jt = 0, .jf = otherwise, .k = static_cast<__u32>(value)};
}

std::vector<sock_filter> filter()
{
    const sock_filter loadNumber = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    const sock_filter allow = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    const sock_filter stop = statement(BPF_RET | BPF_K, SECCOMP_RET_TRACE);
    std::vector<sock_filter> program = {
        loadNumber,
        // Complaints are no part of what is tested.
        ifEqual(SYS_write, 3),
        statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
        ifEqual(STDERR_FILENO, 1),
        allow,
        loadNumber,
    };
    for (const TracedCall& call : calls) {
        program.push_back(ifEqual(static_cast<std::size_t>(call.number), 1));
        program.push_back(stop);
    }
    program.push_back(allow);
    return program;
}

} // namespace

const TracedCall* tracedCall(long number)
{
    const auto* const found = std::ranges::find(calls, number, &TracedCall::number);
    return found == calls.end() ? nullptr : found;
}

bool stopAtTracedCalls()
{
    std::vector<sock_filter> program = filter();
    const sock_fprog whole{.len = static_cast<unsigned short>(program.size()), .filter = program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &whole) == 0;
}

} // namespace lapsa::test
