// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ThreadLanes.h"

#include <QString>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace lapsa {

struct ThreadLanes::Piece
{
    std::shared_ptr<LaneJob> job;
    Work work;
    AtTheEnd atTheEnd = AtTheEnd::Drop;
};

struct ThreadLanes::Finished
{
    QString lane;
    /// Empty if there is nothing to report.
    Report report;
};

/// The work of one thread. Guarded by the mutex of Shared.
struct ThreadLanes::Lane
{
    QString name;
    bool onlyLooks = false;
    std::deque<Piece> waiting;
    std::shared_ptr<LaneJob> current;
    bool hasThread = false;
    bool setAside = false;
    /// The current work must not be overtaken by what follows it: an old list would replace a newer one.
    bool keepsOrder = false;
};

/// State shared by the threads and the main thread. A hanging thread keeps it alive after the lanes are gone.
struct ThreadLanes::Shared
{
    std::mutex mutex;
    std::condition_variable threadEnded;
    /// Null once the lanes are gone.
    ThreadLanes* lanes = nullptr;
    std::vector<std::shared_ptr<Lane>> active;
    std::deque<Finished> finished;
    bool mainThreadCalled = false;
    bool ending = false;
    std::size_t threads = 0;
    std::size_t threadsSetAside = 0;
    Bounds bounds;
};

} // namespace lapsa
