# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""GNOME Shell on Wayland, with and without the extension that shows icons."""

import json
import os
import re
import time
from pathlib import Path

from gi.repository import Gio, GLib
from nested import NestedDesktop, NestedWindows
from screen import click, do, middle
from session import NotPossible, NotThere, on_the_bus, output, wait_until

SHELL = "org.gnome.Shell"
ENTRY = Path(__file__).parents[2] / "packaging/org.lapsa.Lapsa.desktop"
ASK = """const Meta = imports.gi.Meta;
JSON.stringify(global.get_window_actors().map(actor => actor.meta_window).filter(w => !w.minimized).map(w => {
    const r = w.get_frame_rect();
    return {class: w.get_wm_class() || "", title: w.get_title() || "", place: [r.x, r.y, r.width, r.height],
            id: w.get_id(), splash: w.get_window_type() === Meta.WindowType.SPLASHSCREEN, in_taskbar: !w.skip_taskbar};
}))"""
AREA = "const r = Main.layoutManager.getWorkAreaForMonitor(0); JSON.stringify([r.x, r.y, r.width, r.height])"
PUT = """const w = global.get_window_actors().map(actor => actor.meta_window).find(w => w.get_id() === %d);
w.unmaximize(3); w.move_resize_frame(true, %d, %d, %d, %d); JSON.stringify(true)"""


def shell(script):
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    try:
        works, answer = bus.call_sync(SHELL, "/org/gnome/Shell", SHELL, "Eval", GLib.Variant("(s)", (script,)), None,
                                      Gio.DBusCallFlags.NONE, 10000, None).unpack()
    except GLib.Error as failure:
        raise NotThere(f"GNOME Shell's answer ({failure.message})") from failure
    if not works:
        raise NotThere(f"GNOME Shell's answer ({answer})")
    answer = json.loads(answer)
    return json.loads(answer) if isinstance(answer, str) else answer


def started_up():
    try:
        return shell("JSON.stringify(!Main.layoutManager._startingUp)")
    except NotThere:
        return False


# The middle of what is shown and has a property with a value.
FIND = """(() => {
    const found = [];
    const look = actor => {
        if (actor.mapped && (%s)) found.push(actor);
        actor.get_children().forEach(look);
    };
    look(Main.layoutManager.uiGroup);
    if (!found.length) return JSON.stringify(null);
    const [x, y] = found[0].get_transformed_position(), [w, h] = found[0].get_transformed_size();
    return JSON.stringify([Math.round(x + w / 2), Math.round(y + h / 2)]);
})()"""
DASH_ICON = FIND % 'actor.app && actor.app.get_id() === "org.lapsa.Lapsa.desktop"'
BUTTON = FIND % 'actor.label === "%s"'
MENU_ROW = FIND % 'actor.label && actor.label.text === "%s"'


class ShellWindows(NestedWindows):
    def ask(self):
        return shell(ASK)

    def work_area(self):
        return tuple(shell(AREA))

    def bar(self):
        """Its right third: the name of the window in front and the clock are on its left and in its middle."""
        left, top, right, bottom = super().bar()
        return right - (right - left) // 3, top, right, bottom

    def put(self, window, x, y, width, height):
        shell(PUT % (window["id"], x, y, width, height))


class Gnome(NestedDesktop):
    name, title, current = "gnome", "GNOME with AppIndicator", "GNOME"
    packages = ("gnome-shell", "mutter-common", "gnome-shell-extension-appindicator", "xdg-desktop-portal-gnome", "nautilus")
    activated = ("org.a11y.Bus", "ca.desrt.dconf", "org.gnome.Shell.Notifications", "org.freedesktop.portal.Desktop",
                 "org.freedesktop.impl.portal.desktop.gnome", "org.freedesktop.impl.portal.desktop.gtk",
                 "org.freedesktop.impl.portal.PermissionStore")
    environment = {"MUTTER_DEBUG_DUMMY_MODE_SPECS": "1280x900", "XDG_SESSION_DESKTOP": "gnome"}
    portals = ("gnome", "gtk")
    extensions = ["ubuntu-appindicators@ubuntu.com"]
    # The extension's way: a single click opens the menu.
    opening_clicks = 2
    new_icons_come_first = True
    file_manager, file_manager_class = ("nautilus",), "org.gnome.Nautilus"

    def windows(self):
        return ShellWindows()

    def start_programs(self):
        output("gsettings", "set", "org.gnome.shell", "enabled-extensions", str(self.extensions))
        output("gsettings", "set", "org.gnome.shell", "welcome-dialog-last-shown-version", "99")
        output("gsettings", "set", "org.gnome.desktop.interface", "enable-animations", "false")
        self.install_entry()
        self.start_compositor("gnome-shell", "--nested", "--wayland", "--unsafe-mode")
        wait_until("GNOME Shell", lambda: on_the_bus(SHELL), 40)
        wait_until("GNOME Shell's desktop", started_up, 30)
        shell("Main.overview.hide(); JSON.stringify(true)")

    def install_entry(self):
        """Lapsa's entry among the programs, and in the dash."""
        text = ENTRY.read_text()
        for line in ("Exec", "TryExec"):
            text = re.sub(f"^{line}=lapsa", f"{line}={self.program}", text, flags=re.MULTILINE)
        folder = Path(os.environ["XDG_DATA_HOME"]) / "applications"
        folder.mkdir()
        (folder / ENTRY.name).write_text(text)
        output("gsettings", "set", "org.gnome.shell", "favorite-apps", str([ENTRY.name]))

    def use_dash(self, right_click):
        shell("Main.overview.show(); JSON.stringify(true)")
        time.sleep(2)
        spot = wait_until("Lapsa's icon in the dash", lambda: shell(DASH_ICON), 8)
        click(*spot, button=3 if right_click else 1)
        if right_click:
            row = wait_until("the entry Preferences", lambda: shell(MENU_ROW % "Preferences"), 5)
            time.sleep(0.5)
            click(*row)

    def kill_bar(self):
        raise NotPossible("the bar is a part of GNOME Shell, with which the session ends")

    def set_dark(self, dark):
        output("gsettings", "set", "org.gnome.desktop.interface", "color-scheme", "prefer-dark" if dark else "default")
        return True

    def hot_key_is_possible(self):
        text = output("gdbus", "introspect", "--session", "--dest", "org.freedesktop.portal.Desktop", "--object-path",
                      "/org/freedesktop/portal/desktop")
        if "org.freedesktop.portal.Settings" in text and "org.freedesktop.portal.GlobalShortcuts" not in text:
            raise NotPossible("GNOME's portal has no org.freedesktop.portal.GlobalShortcuts")

    def press_lock(self, box, windows):
        wait_until("a button Lock in the warning", lambda: self.unfolded(box), 8)
        time.sleep(1.5)
        spot = self.unfolded(box)
        assert spot, "the button Lock went at once"
        click(*spot)
        return f"pressed at {spot[0]}, {spot[1]}"

    def unfolded(self, box):
        """A banner shows its buttons while the pointer is on it."""
        do("mousemove", *middle(box))
        return shell(BUTTON % "Lock")


class GnomeWithoutTray(Gnome):
    name, title = "gnome-bare", "GNOME without extensions"
    packages = ("gnome-shell", "mutter-common", "xdg-desktop-portal-gnome", "nautilus")
    extensions = []
    has_tray = False
