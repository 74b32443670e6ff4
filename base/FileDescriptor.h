// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

namespace lapsa {

/// Repeats a system call while signals interrupt it (EINTR).
template <typename Call>
[[nodiscard]] auto retrying(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Returns 0, or the `errno` value of a system call that returned -1.
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

    /// Hands the descriptor over to the caller, who must close it.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

    /// Closes the file now. Returns 0 or an `errno` value, which may be the only report of a failed write. Not repeated
    /// after EINTR: on Linux the descriptor is closed anyway.
    [[nodiscard]] int close()
    {
        const int failed = ::close(std::exchange(m_descriptor, -1));
        return failed < 0 && errno != EINTR ? errno : 0;
    }

private:
    int m_descriptor = -1;
};

/// An open file with several owners, closed when the last one goes.
class SharedDescriptor final
{
public:
    SharedDescriptor() = default;

    explicit SharedDescriptor(FileDescriptor file)
        : m_file(std::make_shared<const FileDescriptor>(std::move(file)))
    {}

    /// -1 if no file is open.
    [[nodiscard]] int get() const { return m_file ? m_file->get() : -1; }

    explicit operator bool() const { return get() >= 0; }

private:
    std::shared_ptr<const FileDescriptor> m_file;
};

} // namespace lapsa
