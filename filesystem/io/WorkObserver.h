// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace lapsa::fileSystem {

/// Watches the work of a Batch while it goes on, and can end it. Called on the thread that works, often: at least
/// between two entries and after each few megabytes.
class WorkObserver
{
public:
    WorkObserver() = default;
    WorkObserver(const WorkObserver&) = delete;
    WorkObserver& operator=(const WorkObserver&) = delete;
    virtual ~WorkObserver() = default;

    /// A copy to another file system has come this far, in bytes. `total` is 0 while it is not known.
    virtual void copied(std::int64_t bytes, std::int64_t total) = 0;

    /// So many entries of the current folder have been removed for good.
    virtual void removed(std::int64_t entries) = 0;

    /// Whether the work is to end at the next point where everything is whole: it then fails with ECANCELED.
    [[nodiscard]] virtual bool stopRequested() const = 0;
};

} // namespace lapsa::fileSystem
