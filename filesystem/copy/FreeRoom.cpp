// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeRoom.h"

#include "FileDescriptor.h"

#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace lapsa {

std::int64_t leastRoomOf(const struct statx& status)
{
    constexpr std::uint64_t blockSize = 512; // of stx_blocks, whatever the file system uses
    return static_cast<std::int64_t>(std::min<std::uint64_t>(status.stx_size, status.stx_blocks * blockSize));
}

bool isSureNotToFit(std::int64_t bytes, int folder)
{
    constexpr std::array<unsigned long, 4> plain = {EXT4_SUPER_MAGIC, TMPFS_MAGIC, MSDOS_SUPER_MAGIC,
                                                    EXFAT_SUPER_MAGIC};
    struct statfs room = {};
    if (retrying([&] { return ::fstatfs(folder, &room); }) != 0 || room.f_blocks == 0 ||
        std::ranges::find(plain, static_cast<unsigned long>(room.f_type)) == plain.end()) {
        return false;
    }
    const std::uint64_t needed = static_cast<std::uint64_t>(bytes) / static_cast<std::uint64_t>(room.f_frsize);
    // Only the administrator may use the blocks that are kept in reserve.
    return needed > room.f_bavail && (needed > room.f_bfree || ::geteuid() != 0);
}

} // namespace lapsa
