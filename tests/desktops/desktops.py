# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The desktops of the tour: how each is started, and how its user changes its settings."""

import os
import shutil
from pathlib import Path

from desktop import Desktop
from gnome import Gnome, GnomeWithoutTray
from plasma_wayland import PlasmaWayland
from screen import window_manager_ready
from session import on_the_bus, output, wait_until
from sway import Sway

XFCONFD = "/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"
XFCE_NOTIFYD = "/usr/lib/x86_64-linux-gnu/xfce4/notifyd/xfce4-notifyd"
XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
<property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/><property name="panel-1" type="empty">
<property name="position" type="string" value="p=6;x=0;y=0"/><property name="length" type="uint" value="100"/>
<property name="position-locked" type="bool" value="true"/><property name="size" type="uint" value="28"/>
<property name="plugin-ids" type="array"><value type="int" value="1"/><value type="int" value="2"/>
<value type="int" value="3"/></property></property></property>
<property name="plugins" type="empty"><property name="plugin-1" type="string" value="tasklist"/>
<property name="plugin-2" type="string" value="separator"><property name="expand" type="bool" value="true"/>
<property name="style" type="uint" value="0"/></property>
<property name="plugin-3" type="string" value="systray"><property name="square-icons" type="bool" value="true"/></property>
</property></channel>
"""
LXQT_PANEL = """[General]
__userfile__=true
iconTheme=Adwaita
[panel1]
alignment=-1
desktop=0
hidable=false
iconSize=22
lineCount=1
panelSize=32
plugins=taskbar, spacer, statusnotifier, tray
position=Bottom
width=100
width-percent=true
[taskbar]
type=taskbar
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
[tray]
type=tray
"""


class Xfce(Desktop):
    name, title, current = "xfce", "Xfce", "XFCE"
    packages = ("xfce4-panel", "xfwm4", "xfce4-notifyd", "xfce4-settings", "thunar")
    activated = ("org.a11y.Bus", "org.xfce.Xfconf")
    environment = {"GSETTINGS_BACKEND": "memory"}
    file_manager, file_manager_class = ("thunar",), "Thunar"

    def start_programs(self):
        channels = Path(os.environ["XDG_CONFIG_HOME"]) / "xfce4/xfconf/xfce-perchannel-xml"
        channels.mkdir(parents=True)
        (channels / "xfce4-panel.xml").write_text(XFCE_PANEL)
        self.session.start("xfconfd", XFCONFD)
        wait_until("the settings", lambda: on_the_bus("org.xfce.Xfconf"))
        self.set("xsettings", "/Net/ThemeName", "Adwaita")
        self.set("xsettings", "/Net/IconThemeName", "Adwaita")
        self.session.start("settings", "xfsettingsd", "--disable-wm-check", "--no-daemon")
        self.session.start("window-manager", "xfwm4", "--compositor=on")
        window_manager_ready()
        self.start_bar()
        self.session.start("notifications", XFCE_NOTIFYD)

    def start_bar(self):
        self.session.start("bar", "xfce4-panel", "--disable-wm-check")

    def set(self, channel, name, value, kind="string"):
        output("xfconf-query", "-c", channel, "-p", name, "-n", "-t", kind, "-s", str(value))
        return True

    def set_dark(self, dark):
        return self.set("xsettings", "/Net/ThemeName", "Adwaita-dark" if dark else "Adwaita")

    def set_text_scale(self, percent):
        return self.set("xsettings", "/Xft/DPI", 96 * percent // 100, "int")

    def set_compositing(self, on):
        return self.set("xfwm4", "/general/use_compositing", "true" if on else "false", "bool")


class LXQt(Desktop):
    name, title, current = "lxqt", "LXQt", "LXQt"
    packages = ("lxqt-panel", "openbox", "lxqt-notificationd", "pcmanfm-qt")
    environment = {"QT_QPA_PLATFORMTHEME": "lxqt", "XDG_CONFIG_DIRS": "/etc/xdg:/usr/share", "GSETTINGS_BACKEND": "memory"}
    file_manager, file_manager_class = ("pcmanfm-qt",), "pcmanfm-qt"

    def start_programs(self):
        folder = Path(os.environ["XDG_CONFIG_HOME"]) / "lxqt"
        folder.mkdir(parents=True)
        (folder / "panel.conf").write_text(LXQT_PANEL)
        (folder / "lxqt.conf").write_text("[General]\nicon_theme=Adwaita\ntheme=light\n")
        self.session.start("window-manager", "openbox")
        window_manager_ready()
        self.start_bar()
        self.session.start("notifications", "lxqt-notificationd")

    def start_bar(self):
        self.session.start("bar", "lxqt-panel")


class Mate(Desktop):
    name, title, current = "mate", "MATE", "MATE"
    packages = ("mate-panel", "marco", "mate-notification-daemon", "mate-settings-daemon", "caja")
    # The notification daemon ends when it has had nothing to show for half a minute; the bus starts it again.
    activated = ("org.a11y.Bus", "ca.desrt.dconf", "org.mate.panel.applet.NotificationAreaAppletFactory",
                 "org.mate.panel.applet.WnckletFactory", "org.freedesktop.mate.Notifications")
    file_manager, file_manager_class = ("caja", "--no-desktop"), "Caja"

    def start_programs(self):
        self.set("org.mate.interface", "gtk-theme", "Adwaita")
        self.set("org.mate.interface", "icon-theme", "Adwaita")
        self.session.start("settings", "mate-settings-daemon")
        self.session.start("window-manager", "marco")
        window_manager_ready()
        self.start_bar()

    def start_bar(self):
        self.session.start("bar", "mate-panel")

    def set(self, schema, key, value):
        output("gsettings", "set", schema, key, value)
        return True

    def set_dark(self, dark):
        return self.set("org.mate.interface", "gtk-theme", "Adwaita-dark" if dark else "Adwaita")

    def set_text_scale(self, percent):
        return self.set("org.mate.font-rendering", "dpi", str(96.0 * percent / 100))

    def set_compositing(self, on):
        return self.set("org.mate.Marco.general", "compositing-manager", "true" if on else "false")


class PlasmaX11(Desktop):
    name, title, current = "plasma", "Plasma on X11", "KDE"
    packages = ("plasma-workspace", "plasma-desktop", "kwin-x11", "xdg-desktop-portal-kde", "dolphin")
    activated = ("org.a11y.Bus", "org.kde.kglobalaccel", "org.kde.kded5", "org.kde.ActivityManager",
                 "org.freedesktop.portal.Desktop", "org.freedesktop.impl.portal.desktop.kde",
                 "org.freedesktop.impl.portal.PermissionStore")
    environment = {"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}
    new_icons_come_first = True
    file_manager, file_manager_class = ("dolphin",), "dolphin"

    def start_programs(self):
        self.session.start("window-manager", "kwin_x11")
        window_manager_ready()
        self.session.start("kded", "kded5")
        self.start_bar()

    def start_bar(self):
        self.session.start("bar", "plasmashell")

    def set_dark(self, dark):
        output("plasma-apply-colorscheme", "BreezeDark" if dark else "BreezeLight")
        return True

    def set_compositing(self, on):
        output("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/Compositor",
               "--method", "org.kde.kwin.Compositing." + ("resume" if on else "suspend"))
        return True


ALL = (Xfce, LXQt, PlasmaX11, Mate, PlasmaWayland, Gnome, GnomeWithoutTray, Sway)


def programs_missing(desktop):
    return [name for name in desktop.file_manager[:1] if not shutil.which(name)]
