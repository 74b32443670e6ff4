// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class LaneJob;
class Lanes;

/// Writes Lapsa's own files on a lane of their own, one after the other, as fileSystem::writeAtomically() does. A
/// folder that is missing is made, for the user alone. Main thread only.
class FileWriter final
{
public:
    using Failure = std::function<void(const FileError& error)>;

    /// The lanes outlive the writer.
    explicit FileWriter(Lanes& lanes);

    /// In place of what still waits to be written to the same file. `failure` is called later, on the main thread, and
    /// only if it failed; it has to look whether what it needs is still there. What was handed over is written even if
    /// the lanes end before it was.
    void write(const QString& path, QByteArray bytes, Failure failure);

    /// Waits until all that was handed over is written, or has failed, no longer than `patience`. False where it is
    /// not.
    bool flush(std::chrono::milliseconds patience);

private:
    Lanes& m_lanes;
    QHash<QString, std::shared_ptr<LaneJob>> m_last;
};

} // namespace lapsa
