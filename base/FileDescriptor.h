// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

namespace lapsa {

/// Makes a system call again as long as a signal cuts it short.
template <typename Call>
[[nodiscard]] auto retrying(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The `errno` value of a system call that answers with -1 on failure, 0 where it worked.
template <typename Call>
[[nodiscard]] int errorOf(Call call)
{
    return retrying(call) < 0 ? errno : 0;
}

/// An open file, closed with this object.
class FileDescriptor final
{
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {}

    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    ~FileDescriptor()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }

    [[nodiscard]] int get() const { return m_descriptor; }

    explicit operator bool() const { return m_descriptor >= 0; }

    /// Hands the descriptor to one who closes it himself.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

    /// Closes now; the `errno` value of a failure, which can be the only report of a failed write. Not repeated after
    /// EINTR: on Linux the descriptor is gone all the same.
    [[nodiscard]] int close()
    {
        const int failed = ::close(std::exchange(m_descriptor, -1));
        return failed < 0 && errno != EINTR ? errno : 0;
    }

private:
    int m_descriptor = -1;
};

/// An open file with several owners, closed with the last of them.
class SharedDescriptor final
{
public:
    SharedDescriptor() = default;

    explicit SharedDescriptor(FileDescriptor file)
        : m_file(std::make_shared<const FileDescriptor>(std::move(file)))
    {}

    /// -1 where there is no open file.
    [[nodiscard]] int get() const { return m_file ? m_file->get() : -1; }

    explicit operator bool() const { return get() >= 0; }

private:
    std::shared_ptr<const FileDescriptor> m_file;
};

} // namespace lapsa
