// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>
#include <utility>

namespace lapsa::test {

/// The edge of the screen that a taskbar lies along.
enum class Edge
{
    Top,
    Bottom,
    Left,
    Right,
};

/// A desktop made of the parts of real ones, with a home, a session bus and an X server of its own. The environment
/// names them, for children, until it goes. It begins without a taskbar.
class DesktopSession final
{
public:
    explicit DesktopSession(const QString& screen = QStringLiteral("1280x1024x24"));
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;
    ~DesktopSession();

    /// A taskbar that shows status notifier items, and embeds icons as well; 28 pixels high, icons at its right end.
    void startXfceTaskbar(Edge edge = Edge::Top);
    /// The same of another desktop, written with the toolkit that Lapsa uses in an older version; 32 pixels high.
    void startLxqtTaskbar(Edge edge = Edge::Top);
    /// A taskbar that only embeds icons, in a corner, without keeping windows off itself.
    void startTrayer(Edge edge = Edge::Top);
    /// The taskbar crashes.
    void killPanel();
    /// Settings of the desktop, before its parts are started: a channel of xfconf, as XML.
    void writeXfceChannel(const QString& channel, const QByteArray& xml) const;

    [[nodiscard]] const TemporaryHome& home() const { return m_home; }

    [[nodiscard]] const SessionBus& bus() const { return *m_bus; }

    [[nodiscard]] VirtualDisplay& display() { return *m_display; }

    /// Where the taskbar shows the one icon that is in its tray; nothing while there is none.
    [[nodiscard]] std::optional<QRect> trayIcon() const;
    /// Lapsa's panel on the screen, without its shadow.
    [[nodiscard]] static std::optional<QRect> lapsaPanel();
    /// The menu of the icon while it is open.
    [[nodiscard]] std::optional<QRect> menu() const;
    /// The names of status notifier items on the bus.
    [[nodiscard]] QStringList statusNotifierItems() const;

private:
    void waitForTray(bool notifierItems) const;

    TemporaryHome m_home;
    QList<std::pair<QByteArray, QByteArray>> m_environment;
    std::optional<SessionBus> m_bus;
    std::optional<VirtualDisplay> m_display;
    std::unique_ptr<HelperProcess> m_settings;
    std::unique_ptr<WindowManager> m_windowManager;
    std::unique_ptr<HelperProcess> m_taskbar;
    QString m_taskbarClass;
    Edge m_edge = Edge::Top;
};

} // namespace lapsa::test
