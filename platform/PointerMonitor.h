// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace lapsa {

/// Reports the mouse buttons while it lives.
class PointerWatch : public QObject
{
    Q_OBJECT

signals:
    /// A button was pressed, or the wheel turned.
    void pressed();
    /// A button was released. The wheel has no release.
    void released();
};

/// The mouse buttons anywhere on the desktop, over windows of other programs too. Nothing is taken from those programs.
class PointerMonitor
{
public:
    PointerMonitor() = default;
    PointerMonitor(const PointerMonitor&) = delete;
    PointerMonitor& operator=(const PointerMonitor&) = delete;
    virtual ~PointerMonitor() = default;

    /// Never null. Where programs cannot see each other's clicks, the watch reports nothing.
    [[nodiscard]] virtual std::unique_ptr<PointerWatch> watch() = 0;
};

} // namespace lapsa
