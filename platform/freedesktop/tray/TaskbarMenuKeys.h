// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StatusItem.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>

#include <memory>

namespace lapsa {

class X11InputMonitor;

/// Makes shortcuts work in a menu shown by an X11 taskbar. Taskbars show them beside the entries, but do not react to
/// them.
class TaskbarMenuKeys final : public QObject
{
    Q_OBJECT

public:
    TaskbarMenuKeys();
    ~TaskbarMenuKeys() override;

    void setEntries(QList<StatusMenuEntry> entries);

    /// The taskbar is about to show the menu. It need not report that the menu closed: the first click, or the first
    /// key that the menu does not get, ends the watch.
    void menuOpened();
    void menuClosed();

private:
    void keyPressed(quint32 keyCode);
    void buttonPressed(quint32 button);

    QList<StatusMenuEntry> m_entries;
    std::unique_ptr<X11InputMonitor> m_keys;
    std::unique_ptr<X11InputMonitor> m_buttons;
    QElapsedTimer m_sinceOpened;
};

} // namespace lapsa
