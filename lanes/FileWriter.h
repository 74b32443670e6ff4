// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class LaneJob;
class Lanes;

/// Writes Lapsa's own files with fileSystem::writeAtomically(), one after the other, on a lane of their own. Creates a
/// missing folder, with mode 0700. Main thread only.
class FileWriter final
{
public:
    /// Makes what a file is to hold. Runs on the lane, so that a long list does not hold up the main thread: it must
    /// capture values only.
    using Content = std::function<QByteArray()>;
    using Failure = std::function<void(const FileError& error)>;

    /// `lanes` must outlive the writer.
    explicit FileWriter(Lanes& lanes);

    /// Replaces content that is still waiting to be written to the same file; that is never made. On failure only,
    /// `failure` is called later on the main thread; it must check that what it needs still exists. The content is
    /// written even if the lanes end before its turn.
    void write(const QString& path, Content content, Failure failure);

    /// Whether content for the file was handed over that nobody has begun to write.
    [[nodiscard]] bool isWaiting(const QString& path) const;

    /// Waits at most `patience` until every write has succeeded or failed. False if some have not.
    bool flush(std::chrono::milliseconds patience);

private:
    struct Last
    {
        std::shared_ptr<LaneJob> job;
        /// Shared with the lane.
        std::shared_ptr<std::atomic<bool>> begun;
    };

    Lanes& m_lanes;
    QHash<QString, Last> m_last;
};

} // namespace lapsa
