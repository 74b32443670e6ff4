// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// lapsa_steered_disk FOLDER MOUNTPOINT: shows a folder at a mount point, as the commands on file descriptor 3 want it.
// Ends, and the mount with it, when their sender goes.

#include "Steering.h"

#define FUSE_USE_VERSION 312

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

using lapsa::test::Steering;

namespace {

struct Disk
{
    std::string folder;
    Steering steering;
};

Disk& disk()
{
    return *static_cast<Disk*>(::fuse_get_context()->private_data);
}

std::string real(const char* path)
{
    return disk().folder + path;
}

/// 0 or a negative `errno` value, as the kernel wants it.
int resultOf(long result)
{
    return result < 0 ? -errno : static_cast<int>(result);
}

/// A call on an entry.
template <typename Call>
int on(const char* path, Call call)
{
    disk().steering.begin(path);
    return resultOf(call(real(path).c_str()));
}

/// A call that changes names: its answer may get lost.
template <typename Call>
int changing(const char* path, Call call)
{
    const int result = on(path, call);
    return -disk().steering.answer(-result);
}

int handleOf(const fuse_file_info* file)
{
    return static_cast<int>(file->fh);
}

/// 0, or -1 if it could not be opened.
int opened(fuse_file_info* file, int descriptor)
{
    file->fh = static_cast<std::uint64_t>(descriptor);
    return descriptor < 0 ? -1 : 0;
}

void* start(fuse_conn_info* /*connection*/, fuse_config* config)
{
    // The kernel must remember nothing: each call comes here.
    config->entry_timeout = 0;
    config->attr_timeout = 0;
    config->negative_timeout = 0;
    config->use_ino = 1;
    config->hard_remove = 1;
    return ::fuse_get_context()->private_data;
}

int getStatus(const char* path, struct stat* status, fuse_file_info* file)
{
    return on(path, [&](const char* name) {
        return file != nullptr ? ::fstat(handleOf(file), status) : ::lstat(name, status);
    });
}

int readLink(const char* path, char* target, std::size_t size)
{
    const int length = on(path, [&](const char* name) { return ::readlink(name, target, size - 1); });
    if (length >= 0) {
        target[length] = '\0';
    }
    return length < 0 ? length : 0;
}

int openFolder(const char* path, fuse_file_info* /*folder*/)
{
    return on(path, [](const char* name) { return ::access(name, F_OK); });
}

int readFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t /*place*/, fuse_file_info* /*folder*/,
               fuse_readdir_flags /*flags*/)
{
    return on(path, [&](const char* name) {
        DIR* const folder = ::opendir(name);
        if (folder == nullptr) {
            return -1;
        }
        for (const dirent* entry = ::readdir(folder); entry != nullptr; entry = ::readdir(folder)) {
            struct stat status = {};
            status.st_ino = entry->d_ino;
            status.st_mode = static_cast<mode_t>(entry->d_type << 12U);
            fill(buffer, entry->d_name, &status, 0, fuse_fill_dir_flags(0));
        }
        return ::closedir(folder);
    });
}

int makeFile(const char* path, mode_t mode, fuse_file_info* file)
{
    return on(path, [&](const char* name) { return opened(file, ::open(name, file->flags | O_CREAT, mode)); });
}

int openFile(const char* path, fuse_file_info* file)
{
    return on(path, [&](const char* name) { return opened(file, ::open(name, file->flags)); });
}

int rename(const char* from, const char* to, unsigned flags)
{
    disk().steering.begin(to);
    const std::string target = real(to);
    return changing(from,
                    [&](const char* name) { return ::renameat2(AT_FDCWD, name, AT_FDCWD, target.c_str(), flags); });
}

int linkFile(const char* from, const char* to)
{
    const std::string source = real(from);
    return changing(to, [&](const char* name) { return ::link(source.c_str(), name); });
}

int setTimes(const char* path, const timespec times[2], fuse_file_info* /*file*/)
{
    return on(path, [&](const char* name) { return ::utimensat(AT_FDCWD, name, times, AT_SYMLINK_NOFOLLOW); });
}

int resize(const char* path, off_t size, fuse_file_info* file)
{
    return on(path, [&](const char* name) {
        return file != nullptr ? ::ftruncate(handleOf(file), size) : ::truncate(name, size);
    });
}

void addCallsOnNames(fuse_operations& all)
{
    all.mknod = [](const char* path, mode_t mode, dev_t device) {
        return on(path, [&](const char* name) { return ::mknod(name, mode, device); });
    };
    all.mkdir = [](const char* path, mode_t mode) {
        return changing(path, [&](const char* name) { return ::mkdir(name, mode); });
    };
    all.unlink = [](const char* path) { return changing(path, [](const char* name) { return ::unlink(name); }); };
    all.rmdir = [](const char* path) { return changing(path, [](const char* name) { return ::rmdir(name); }); };
    all.symlink = [](const char* target, const char* path) {
        return changing(path, [&](const char* name) { return ::symlink(target, name); });
    };
    all.rename = rename;
    all.link = linkFile;
}

void addCallsOnAttributes(fuse_operations& all)
{
    all.getattr = getStatus;
    all.readlink = readLink;
    all.chmod = [](const char* path, mode_t mode, fuse_file_info* /*file*/) {
        return on(path, [&](const char* name) { return ::chmod(name, mode); });
    };
    all.chown = [](const char* path, uid_t user, gid_t group, fuse_file_info* /*file*/) {
        return on(path, [&](const char* name) { return ::lchown(name, user, group); });
    };
    all.utimens = setTimes;
    all.setxattr = [](const char* path, const char* key, const char* value, std::size_t size, int flags) {
        return on(path, [&](const char* name) { return ::lsetxattr(name, key, value, size, flags); });
    };
    all.getxattr = [](const char* path, const char* key, char* value, std::size_t size) {
        return on(path, [&](const char* name) { return ::lgetxattr(name, key, value, size); });
    };
    all.listxattr = [](const char* path, char* keys, std::size_t size) {
        return on(path, [&](const char* name) { return ::llistxattr(name, keys, size); });
    };
    all.removexattr = [](const char* path, const char* key) {
        return on(path, [&](const char* name) { return ::lremovexattr(name, key); });
    };
    all.statfs = [](const char* path, struct statvfs* status) {
        return on(path, [&](const char* name) { return ::statvfs(name, status); });
    };
}

void addCallsOnContent(fuse_operations& all)
{
    all.init = start;
    all.open = openFile;
    all.create = makeFile;
    all.truncate = resize;
    all.read = [](const char* path, char* bytes, std::size_t size, off_t place, fuse_file_info* file) {
        return on(path, [&](const char*) { return ::pread(handleOf(file), bytes, size, place); });
    };
    all.write = [](const char* path, const char* bytes, std::size_t size, off_t place, fuse_file_info* file) {
        return on(path, [&](const char*) { return ::pwrite(handleOf(file), bytes, size, place); });
    };
    all.fsync = [](const char* path, int /*contentOnly*/, fuse_file_info* file) {
        return on(path, [&](const char*) { return ::fsync(handleOf(file)); });
    };
    all.release = [](const char* /*path*/, fuse_file_info* file) { return resultOf(::close(handleOf(file))); };
    all.opendir = openFolder;
    all.readdir = readFolder;
}

/// Answers until the mount goes.
int serve(Disk& served, const char* mountPoint)
{
    char name[] = "lapsa_steered_disk";
    char option[] = "-oallow_other,default_permissions,fsname=lapsa-test";
    char* arguments[] = {name, option, nullptr};
    fuse_args all = FUSE_ARGS_INIT(2, arguments);
    fuse_operations calls = {};
    addCallsOnNames(calls);
    addCallsOnAttributes(calls);
    addCallsOnContent(calls);
    fuse* const session = ::fuse_new(&all, &calls, sizeof calls, &served);
    if (session == nullptr || ::fuse_mount(session, mountPoint) != 0) {
        return EXIT_FAILURE;
    }
    std::thread([&served] {
        constexpr int control = 3;
        served.steering.obey(control);
        ::_exit(EXIT_SUCCESS); // the test has gone: the kernel ends all calls
    }).detach();
    fuse_loop_config* const loop = ::fuse_loop_cfg_create();
    constexpr unsigned mostThreads = 200; // each stopped call holds one
    ::fuse_loop_cfg_set_max_threads(loop, mostThreads);
    ::fuse_loop_cfg_set_clone_fd(loop, 0);
    return ::fuse_loop_mt(session, loop) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s FOLDER MOUNTPOINT\n", argv[0]);
        return EXIT_FAILURE;
    }
    ::umask(0);
    Disk served{.folder = argv[1], .steering = {}};
    return serve(served, argv[2]);
}
