// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class LaneJob;

/// Work on files, off the main thread. Each mount has a lane of its own, so that a slow or dead disk holds up its own
/// files and nothing else. What is handed to one lane runs in order, one piece at a time. All calls come from the main
/// thread.
class Lanes
{
public:
    /// Runs on the main thread with what became of the work.
    using Report = std::function<void()>;
    /// Runs on the lane. What it captures is its own: values, nothing that the main thread goes on using.
    using Work = std::function<Report(LaneJob&)>;

    enum class AtTheEnd
    {
        /// What has not begun is dropped.
        Drop,
        /// It still runs.
        Run,
    };

    Lanes() = default;
    Lanes(const Lanes&) = delete;
    Lanes& operator=(const Lanes&) = delete;
    virtual ~Lanes() = default;

    /// On the lane of the mount that holds `path`, an absolute path. The path itself is not touched.
    virtual std::shared_ptr<LaneJob> run(const QString& path, Work work) = 0;

    /// On a lane of the given name, which no mount has.
    virtual std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) = 0;

    /// Waits until all that was handed to the lane of this name has run, no longer than `patience`, and reports it.
    /// False where it has not, also where it hangs.
    virtual bool await(const QString& lane, std::chrono::milliseconds patience) = 0;
};

} // namespace lapsa
