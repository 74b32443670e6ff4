// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace lapsa {

class ChooserModel;
class MainQueue;
class ScheduledTask;

/// Keeps the list of a dialog up to date: looks now and then whether the folder has changed while the dialog is open,
/// and reads it again when the user comes back from another window. A watch on the folder would have to be set up by
/// the disk itself, and would not see what others do on a network share.
class FolderWatch final : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the dialog. `mainQueue` must outlive it.
    FolderWatch(MainQueue& mainQueue, ChooserModel& model, QWidget& dialog);
    ~FolderWatch() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MainQueue& m_mainQueue;
    ChooserModel& m_model;
    bool m_wasActive = false;
    /// Exists while the dialog is open.
    std::unique_ptr<ScheduledTask> m_task;
};

} // namespace lapsa
