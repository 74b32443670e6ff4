// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStringList>
#include <QThread>

#include <algorithm>
#include <functional>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 30'000;
constexpr int lxqtPanelExtent = 32;
constexpr int xfcePanelExtent = 28;
constexpr QSize lapsaPanelSize(430, 560);
/// No tray makes its icons larger.
constexpr int largestIcon = 64;

constexpr const char* xfcePanel = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="mode" type="uint" value="%1"/>
      <property name="position" type="string" value="p=%2;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="%3"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/><value type="int" value="2"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
)";

constexpr const char* lxqtPanel = R"([General]
__userfile__=true
iconTheme=Adwaita
[panel1]
alignment=-1
desktop=0
hidable=false
iconSize=22
lineCount=1
panelSize=%2
plugins=spacer, statusnotifier
position=%1
width=100
width-percent=true
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
)";

void waitFor(const char* what, const std::function<bool()>& condition)
{
    constexpr unsigned long betweenLooks = 30;
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > patience) {
            qFatal("%s does not come up", what);
        }
        QThread::msleep(betweenLooks);
    }
}

/// As the taskbar names the corner that it starts in, and whether it stands upright.
std::pair<int, bool> xfcePosition(Edge edge)
{
    switch (edge) {
    case Edge::Top:
        return {6, false};
    case Edge::Bottom:
        return {8, false};
    case Edge::Left:
        return {6, true};
    case Edge::Right:
        return {2, true};
    }
    return {};
}

QString nameOf(Edge edge)
{
    switch (edge) {
    case Edge::Top:
        return u"Top"_s;
    case Edge::Bottom:
        return u"Bottom"_s;
    case Edge::Left:
        return u"Left"_s;
    case Edge::Right:
        return u"Right"_s;
    }
    return {};
}

} // namespace

DesktopSession::DesktopSession(const QString& screen)
{
    const QList<std::pair<QByteArray, QByteArray>> wanted{
        {"XDG_CONFIG_HOME", m_home.makeFolder(u".config"_s).toUtf8()},
        {"XDG_CACHE_HOME", m_home.makeFolder(u".cache"_s).toUtf8()},
        {"XDG_RUNTIME_DIR", m_home.makeFolder(u"run"_s).toUtf8()},
        {"XDG_CURRENT_DESKTOP", "XFCE"},
        {"XDG_SESSION_TYPE", "x11"},
        {"GSETTINGS_BACKEND", "memory"},
        {"GTK_USE_PORTAL", "0"},
        {"NO_AT_BRIDGE", "1"},
    };
    for (const auto& [name, value] : wanted) {
        m_environment.push_back({name, qgetenv(name.constData())});
        qputenv(name.constData(), value);
    }
    QFile::setPermissions(m_home.path(u"run"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_bus.emplace();
    m_display.emplace(screen);
    m_settings = std::make_unique<HelperProcess>(foundProgram(u"xfce4/xfconf/xfconfd"_s));
    waitFor("xfconfd", [this] { return m_bus->hasOwner(u"org.xfce.Xfconf"_s); });
    m_windowManager = std::make_unique<WindowManager>();
}

DesktopSession::~DesktopSession()
{
    m_taskbar.reset();
    m_windowManager.reset();
    m_settings.reset();
    m_display.reset();
    m_bus.reset();
    for (const auto& [name, value] : m_environment) {
        if (value.isNull()) {
            qunsetenv(name.constData());
        } else {
            qputenv(name.constData(), value);
        }
    }
}

void DesktopSession::startXfceTaskbar(Edge edge)
{
    const auto [corner, upright] = xfcePosition(edge);
    writeXfceChannel(u"xfce4-panel"_s,
                     QString::fromLatin1(xfcePanel).arg(upright ? 1 : 0).arg(corner).arg(xfcePanelExtent).toUtf8());
    m_edge = edge;
    m_taskbarClass = u"wrapper-2.0"_s;
    m_taskbar = std::make_unique<HelperProcess>(u"xfce4-panel"_s, QStringList{u"--disable-wm-check"_s});
    waitForTray(true);
}

void DesktopSession::startLxqtTaskbar(Edge edge)
{
    QFile file(m_home.makeFile(u".config/lxqt/panel.conf"_s));
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QString::fromLatin1(lxqtPanel).arg(nameOf(edge)).arg(lxqtPanelExtent).toUtf8()) < 0) {
        qFatal("cannot write the settings of the taskbar");
    }
    file.close();
    m_edge = edge;
    m_taskbarClass = u"lxqt-panel"_s;
    m_taskbar = std::make_unique<HelperProcess>(u"lxqt-panel"_s);
    waitForTray(true);
}

void DesktopSession::startTrayer(Edge edge)
{
    m_edge = edge;
    m_taskbarClass.clear();
    m_taskbar = std::make_unique<HelperProcess>(
        u"trayer"_s,
        QStringList{u"--edge"_s, nameOf(edge).toLower(), u"--align"_s, u"right"_s, u"--widthtype"_s, u"request"_s,
                    u"--height"_s, u"28"_s, u"--SetDockType"_s, u"true"_s, u"--expand"_s, u"true"_s});
    waitForTray(false);
}

void DesktopSession::killPanel()
{
    m_taskbar->kill();
    m_taskbar.reset();
    waitFor("the end of the tray", [this] { return !m_bus->hasOwner(u"org.kde.StatusNotifierWatcher"_s); });
}

void DesktopSession::writeXfceChannel(const QString& channel, const QByteArray& xml) const
{
    m_home.makeFile(u".config/xfce4/xfconf/xfce-perchannel-xml/"_s + channel + u".xml"_s, xml);
}

std::optional<QRect> DesktopSession::trayIcon() const
{
    for (const QRect& window : VirtualDisplay::windowsOfClass(u"lapsa"_s)) {
        if (window.width() <= largestIcon && window.height() <= largestIcon) {
            return window;
        }
    }
    if (m_taskbarClass.isEmpty() || statusNotifierItems().isEmpty()) {
        return std::nullopt;
    }
    const QList<QRect> windows = VirtualDisplay::windowsOfClass(m_taskbarClass);
    const auto shown = std::ranges::find_if(windows, [](const QRect& window) { return window.width() > 1; });
    if (shown == windows.end()) {
        return std::nullopt;
    }
    // One icon takes a square at the end of the taskbar.
    const int extent = std::min(shown->width(), shown->height());
    return QRect(shown->bottomRight() - QPoint(extent - 1, extent - 1), QSize(extent, extent));
}

std::optional<QRect> DesktopSession::lapsaPanel()
{
    for (const QRect& window : VirtualDisplay::windowsOfClass(u"lapsa"_s)) {
        if (window.size() == lapsaPanelSize) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<QRect> DesktopSession::menu() const
{
    constexpr QSize smallest(100, 100);
    constexpr QSize largest(400, 300);
    for (const QString& owner : {m_taskbarClass, u"lapsa"_s}) {
        for (const QRect& window : owner.isEmpty() ? QList<QRect>() : VirtualDisplay::windowsOfClass(owner)) {
            if (window.size().boundedTo(largest) == window.size() &&
                window.size().expandedTo(smallest) == window.size()) {
                return window;
            }
        }
    }
    return std::nullopt;
}

QStringList DesktopSession::statusNotifierItems() const
{
    QStringList items;
    const QByteArray names =
        outputOf(u"dbus-send"_s, {u"--bus="_s + m_bus->address(), u"--print-reply=literal"_s,
                                  u"--dest=org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus.ListNames"_s});
    for (const QByteArray& name : names.simplified().split(' ')) {
        if (name.startsWith("org.kde.StatusNotifierItem-")) {
            items.push_back(QString::fromLatin1(name));
        }
    }
    return items;
}

void DesktopSession::waitForTray(bool notifierItems) const
{
    if (notifierItems) {
        waitFor("the tray", [this] { return m_bus->hasOwner(u"org.kde.StatusNotifierWatcher"_s); });
    } else {
        waitFor("the tray", [] { return !VirtualDisplay::windowsOfClass(u"trayer"_s).isEmpty(); });
    }
}

} // namespace lapsa::test
