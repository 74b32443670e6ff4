// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class LaneJob;

/// Work on files, off the main thread. Each mount has its own lane, so that a slow or dead disk delays only its own
/// files. A lane runs its work in order, one piece at a time. Call all members from the main thread.
class Lanes
{
public:
    /// Runs on the main thread and delivers the outcome of the work.
    using Report = std::function<void()>;
    /// Runs on the lane. It must capture values, nothing that the main thread continues to use.
    using Work = std::function<Report(LaneJob&)>;

    enum class AtTheEnd
    {
        /// Dropped if it has not begun.
        Drop,
        /// It still runs.
        Run,
    };

    Lanes() = default;
    Lanes(const Lanes&) = delete;
    Lanes& operator=(const Lanes&) = delete;
    virtual ~Lanes() = default;

    /// Runs work on the lane of the mount that holds the absolute path `path`. Does not access the path itself.
    virtual std::shared_ptr<LaneJob> run(const QString& path, Work work) = 0;

    /// The same for work that only looks at files and soon ends: it does not wait behind the copies and removals of its
    /// mount.
    virtual std::shared_ptr<LaneJob> look(const QString& path, Work work) = 0;

    /// The lane of an absolute path: equal for paths on the same mount, judged by their text.
    [[nodiscard]] virtual QString laneOf(const QString& path) = 0;

    /// Runs work on the named lane, which belongs to no mount.
    virtual std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) = 0;

    /// Waits at most `patience` until no look is under way but those that hang, and runs the reports there are. For the
    /// end: what was just named is still looked at. Returns whether no look is left.
    virtual bool awaitLooks(std::chrono::milliseconds patience) = 0;

    /// Ends the work: drops work that has not begun, except AtTheEnd::Run; asks running work to end; runs the reports
    /// of finished work. Returns whether all work but what hangs ended within `patience`. From then on, only work with
    /// AtTheEnd::Run begins.
    virtual bool finish(std::chrono::milliseconds patience) = 0;

    /// Waits at most `patience` until all work on the named lane has run, and runs its reports. False if some has not,
    /// or hangs.
    virtual bool await(const QString& lane, std::chrono::milliseconds patience) = 0;
};

} // namespace lapsa
