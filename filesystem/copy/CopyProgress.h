// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace lapsa {

namespace fileSystem {
class WorkObserver;
} // namespace fileSystem

/// How far one copy to another file system is. Tells its observer, and asks it whether the copy is to end.
class CopyProgress final
{
public:
    /// `begins` is called by begin(). `observer` is borrowed; null for none.
    CopyProgress(std::function<void()> begins, fileSystem::WorkObserver* observer)
        : m_begins(std::move(begins))
        , m_observer(observer)
    {}

    /// Call this before anything is copied.
    void begin();

    /// How many bytes the copy will have.
    void expect(std::int64_t bytes) { m_total = bytes; }

    /// Tells the observer that the copy goes on, with so many bytes more. Returns an `errno` value: ECANCELED if the
    /// copy is to be withdrawn.
    [[nodiscard]] int goOn(std::int64_t bytes = 0);

    /// The same where nothing can be stopped.
    void tell(std::int64_t bytes = 0);

private:
    std::function<void()> m_begins;
    fileSystem::WorkObserver* m_observer;
    std::int64_t m_copied = 0;
    std::int64_t m_total = 0;
};

} // namespace lapsa
