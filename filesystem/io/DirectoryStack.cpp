// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DirectoryStack.h"

#include "SystemCalls.h"

#include <fcntl.h>

namespace lapsa {

namespace {

constexpr std::size_t mostKeptOpen = 16;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK;

} // namespace

DirectoryStack::DirectoryStack(SharedDescriptor start)
{
    m_steps.push_back({.folder = std::move(start), .status = {}});
}

int DirectoryStack::descend(const char* name)
{
    Result<FileDescriptor> folder = openAt(this->folder(), name, folderFlags);
    if (!folder) {
        return folder.error().code;
    }
    const Result<struct statx> status = statAt(folder.value().get(), "", STATX_BASIC_STATS);
    if (!status) {
        return status.error().code;
    }
    if ((status.value().stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        return EBUSY;
    }
    m_steps.push_back({.folder = SharedDescriptor(std::move(folder).value()), .status = status.value()});
    if (m_steps.size() > mostKeptOpen + 1) {
        m_steps[m_steps.size() - 1 - mostKeptOpen].folder = SharedDescriptor();
    }
    return 0;
}

int DirectoryStack::ascend()
{
    const Step left = std::move(m_steps.back());
    m_steps.pop_back();
    Step& above = m_steps.back();
    if (above.folder) {
        return 0;
    }
    Result<FileDescriptor> folder = openAt(left.folder.get(), "..", folderFlags);
    if (!folder) {
        return folder.error().code;
    }
    const Result<struct statx> status = statAt(folder.value().get(), "", STATX_INO);
    if (!status || identityOf(status.value()) != identityOf(above.status)) {
        return ESTALE;
    }
    above.folder = SharedDescriptor(std::move(folder).value());
    return 0;
}

} // namespace lapsa
