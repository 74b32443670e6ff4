// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

#include <memory>

namespace lapsa {

class Announcer;
class ElidedLabel;
class MainQueue;
class ScheduledTask;

/// One quiet line that tells of a wait for a disk, once it has become long.
class WaitingLine final : public QWidget
{
    Q_OBJECT

public:
    /// `mainQueue` must outlive the line.
    explicit WaitingLine(MainQueue& mainQueue, QWidget* parent = nullptr);
    ~WaitingLine() override;

    /// A wait begins, if need be anew.
    void begin();
    void end();

private:
    MainQueue& m_mainQueue;
    ElidedLabel* m_text;
    Announcer* m_announcer;
    /// Exists while the wait is short.
    std::unique_ptr<ScheduledTask> m_patience;
};

} // namespace lapsa
