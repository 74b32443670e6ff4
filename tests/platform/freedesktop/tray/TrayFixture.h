// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DesktopSession.h"
#include "LapsaProcess.h"

#include <QMetaType>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <optional>

namespace lapsa::test {

enum class Taskbar
{
    Xfce,
    Lxqt,
    Trayer,
};

/// What the tests of the icon in the tray share: a desktop for each test, and Lapsa in its tray.
class TrayFixture : public QObject
{
    Q_OBJECT

protected:
    /// A row for each taskbar.
    static void addTaskbars();
    void startTaskbar(Taskbar taskbar, Edge edge = Edge::Top);

    /// Makes the desktop. Skips the test where the taskbar of the row is not installed.
    void prepare();
    void end();

    /// A desktop with the taskbar of the row, Lapsa in its tray.
    [[nodiscard]] bool begin(Edge edge = Edge::Top);
    [[nodiscard]] bool begin(Taskbar taskbar, Edge edge = Edge::Top);

    /// Taskbars show an icon before they have laid themselves out, and once more when it moves from one kind to the
    /// other: it is there when it stays where it is.
    [[nodiscard]] bool iconIsThere() const;
    [[nodiscard]] QPoint icon() const;

    [[nodiscard]] static std::optional<QRect> panel() { return DesktopSession::lapsaPanel(); }

    void endsQuietly();

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::test::Taskbar)
Q_DECLARE_METATYPE(lapsa::test::Edge)
