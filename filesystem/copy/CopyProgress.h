// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LowIoPriority.h"
#include "WriteBehind.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace lapsa {

namespace fileSystem {
class WorkObserver;
} // namespace fileSystem

/// How far one copy to another file system is. Tells its observer, and asks it whether the copy is to end. A long copy
/// lets others on the disks go first. Stays on one thread.
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
    void expect(std::int64_t bytes);

    /// Whether the copy is so large that it must spare the page cache.
    [[nodiscard]] bool isLarge() const { return m_total >= large; }

    /// What was copied and is being written to the disk.
    [[nodiscard]] WriteBehind& writeBehind() { return m_writeBehind; }

    /// Waits until the disk has it. Returns an `errno` value.
    [[nodiscard]] int finishWriting();

    /// Tells the observer that the copy goes on, with so many bytes more. Returns an `errno` value: ECANCELED if the
    /// copy is to be withdrawn.
    [[nodiscard]] int goOn(std::int64_t bytes = 0);

    /// The same where nothing can be stopped.
    void tell(std::int64_t bytes = 0);

private:
    static constexpr std::int64_t large = std::int64_t{32} << 20;

    std::function<void()> m_begins;
    fileSystem::WorkObserver* m_observer;
    std::int64_t m_copied = 0;
    std::int64_t m_total = 0;
    int m_steps = 0;
    LowIoPriority m_priority;
    WriteBehind m_writeBehind;
};

} // namespace lapsa
