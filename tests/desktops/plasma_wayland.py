# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Plasma on Wayland: KWin is asked for its windows by a script, and answers in its log."""

import itertools
import json
import shutil
import tempfile
import time

from buttons import shown_button
from gi.repository import Gio, GLib
from nested import NestedDesktop, NestedWindows
from screen import click
from session import NotThere, output, wait_until

SERVICE = "org.kde.KWin"
ASK = """var found = [], all = workspace.clientList();
for (var i = 0; i < all.length; ++i) {
    var c = all[i], g = c.frameGeometry;
    if (!c.minimized && !c.deleted)
        found.push({"class": String(c.resourceClass), title: c.caption, place: [g.x, g.y, g.width, g.height],
                    id: String(c.internalId), splash: c.splash, in_taskbar: !c.skipTaskbar || !c.skipPager});
}
var a = workspace.clientArea(KWin.MaximizeArea, 0, workspace.currentDesktop);
print("%s" + JSON.stringify({windows: found, area: [a.x, a.y, a.width, a.height]}));
"""
PUT = """var all = workspace.clientList();
for (var i = 0; i < all.length; ++i)
    if (String(all[i].internalId) == "%s") {
        all[i].setMaximize(false, false);
        all[i].frameGeometry = {x: %d, y: %d, width: %d, height: %d};
    }
print("%s{}");
"""
CLOSE = """var all = workspace.clientList();
for (var i = 0; i < all.length; ++i)
    if (String(all[i].internalId) == "%s")
        all[i].closeWindow();
print("%s{}");
"""


class KWinWindows(NestedWindows):
    def __init__(self, log):
        self.log = log
        self.numbers = itertools.count()

    def run(self, script, *values):
        mark = f"tour-{next(self.numbers)}:"
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)

        def call(path, interface, method, arguments=None):
            return bus.call_sync(SERVICE, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 10000, None)
        with tempfile.NamedTemporaryFile("w", suffix=".js") as file:
            file.write(script % (*values, mark))
            file.flush()
            number = call("/Scripting", "org.kde.kwin.Scripting", "loadScript",
                          GLib.Variant("(ss)", (file.name, mark))).unpack()[0]
            call(f"/{number}", "org.kde.kwin.Script", "run")
            answer = wait_until("KWin's answer", lambda: self.answer(mark), 10)
        call("/Scripting", "org.kde.kwin.Scripting", "unloadScript", GLib.Variant("(s)", (mark,)))
        return json.loads(answer)

    def answer(self, mark):
        for line in reversed(self.log.read_text(errors="replace").splitlines()):
            if mark in line:
                return line.split(mark, 1)[1]
        return None

    def ask(self):
        return self.run(ASK)["windows"]

    def work_area(self):
        return tuple(self.run(ASK)["area"])

    def bar(self):
        """Its right half: the windows have their buttons on the left."""
        left, top, right, bottom = super().bar()
        return (left + right) // 2, top, right, bottom

    def put(self, window, x, y, width, height):
        self.run(PUT, window["id"], x, y, width, height)

    def close(self, window):
        self.run(CLOSE, window["id"])


class PlasmaWayland(NestedDesktop):
    name, title, current = "plasma-wayland", "Plasma on Wayland", "KDE"
    packages = ("plasma-workspace", "plasma-desktop", "kwin-wayland", "xdg-desktop-portal-kde", "dolphin")
    activated = ("org.a11y.Bus", "org.kde.kglobalaccel", "org.kde.kded5", "org.kde.ActivityManager",
                 "org.freedesktop.portal.Desktop", "org.freedesktop.impl.portal.desktop.kde",
                 "org.freedesktop.impl.portal.PermissionStore")
    environment = {"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5", "QT_LOGGING_RULES": "kwin_scripting.debug=true",
                   "QT_FORCE_STDERR_LOGGING": "1", "KWIN_COMPOSE": "Q"}
    portals = ("kde",)
    questions = 0
    new_icons_come_first = True
    file_manager, file_manager_class = ("dolphin",), "dolphin"

    def windows(self):
        return KWinWindows(self.session.logs / "window-manager.log")

    def start_programs(self):
        # The installed one has a capability, with which it does not start in a container; a copy has none.
        program = shutil.copy(shutil.which("kwin_wayland"), self.session.folder)
        self.start_compositor(program, "--width", "1280", "--height", "900", "--xwayland")
        self.session.start("kded", "kded5")
        self.start_bar()

    def start_bar(self):
        self.session.start("bar", "plasmashell")

    def answer_questions(self, windows):
        """The portal shows the keys that a program wants in a window of the settings, when it asks for the first time."""
        def question():
            return [window for window in windows.ask() if window["title"].startswith("Shortcuts")]
        try:
            asked = wait_until("the portal's question", question, 6)
        except NotThere:
            return
        self.questions += 1
        time.sleep(1)
        windows.close(asked[0])
        wait_until("the end of the portal's question", lambda: not question(), 8)

    def set_dark(self, dark):
        output("plasma-apply-colorscheme", "BreezeDark" if dark else "BreezeLight")
        return True

    def open_folder(self, folder):
        # As a Wayland program, Dolphin cannot be asked for its selection.
        self.session.start("file-manager", "dolphin", str(folder), environment={"QT_QPA_PLATFORM": "xcb"})

    def press_lock(self, box, windows):
        """A Wayland program does not know where its window is: the button's place in it is added to the bubble's."""
        width, height = windows.size()
        x, y = wait_until("a button Lock in the warning", lambda: shown_button("Lock", (0, 0, width, height)), 8)
        if not (box[0] <= x < box[2] and box[1] <= y < box[3]):
            x, y = x + box[0], y + box[1]
        click(x, y)
        return f"pressed at {x}, {y}"
