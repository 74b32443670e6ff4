// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <map>
#include <memory>

namespace lapsa {

class MainQueue;
class ScheduledTask;

/// Tells of disks that do not respond: one log line for a mount that has not answered for ten seconds, and one when it
/// answers again, however many pieces of work hang there.
class HangingMounts final
{
public:
    /// `mainQueue` must outlive this object.
    explicit HangingMounts(MainQueue& mainQueue);
    ~HangingMounts();

    /// A piece of work on this mount hangs. The lanes have waited for it for two seconds.
    void hangs(const QString& mountPoint);
    /// One that hung has returned.
    void isBack(const QString& mountPoint);

private:
    struct Mount
    {
        int hanging = 0;
        bool told = false;
        /// Null once the line is written.
        std::unique_ptr<ScheduledTask> telling;
    };

    void tell(const QString& mountPoint);

    MainQueue& m_mainQueue;
    std::map<QString, Mount> m_mounts;
};

} // namespace lapsa
