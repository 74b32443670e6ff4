// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace lapsa {

/// Reports mouse buttons as long as it exists.
class PointerWatch : public QObject
{
    Q_OBJECT

signals:
    /// A button was pressed, or the wheel turned.
    void pressed();
    /// A button was released. The wheel has no release.
    void released();
};

/// Observes mouse buttons anywhere on the desktop, including over other programs' windows, which still get the events.
class PointerMonitor
{
public:
    PointerMonitor() = default;
    PointerMonitor(const PointerMonitor&) = delete;
    PointerMonitor& operator=(const PointerMonitor&) = delete;
    virtual ~PointerMonitor() = default;

    /// Never null. On desktops where a program cannot see other programs' clicks, the watch reports nothing.
    [[nodiscard]] virtual std::unique_ptr<PointerWatch> watch() = 0;
};

} // namespace lapsa
