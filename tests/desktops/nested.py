# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Wayland's compositors, each in a window of the virtual display: its pointer, its keys and its pictures are the same as
those of the desktops on X11. The windows are known to the compositor alone, which is asked for them."""

import os
import shutil
from pathlib import Path

from desktop import Desktop
from screen import bar_beside, changed_box, picture
from session import output, wait_until

SCREEN = 1280, 900


class NestedWindows:
    """x, y, width, height and identity of each window come from the compositor, in ask()."""

    without_button = "skips taskbar and pager"
    why_not_composited = "under Wayland the compositor is the display itself"

    def ask(self):
        """A list of windows: dictionaries of class, title, place, id, splash and in_taskbar."""
        raise NotImplementedError

    def work_area(self):
        raise NotImplementedError

    def put(self, window, x, y, width, height):
        raise NotImplementedError

    def close(self, window):
        """The tour ends the programs themselves."""

    def paint_ground(self):
        """The compositors draw one of their own."""

    def composited(self):
        return False

    def greets(self, window):
        return window["splash"]

    def shows_in_taskbar(self, window):
        return "a taskbar is told of it" if window["in_taskbar"] else ""

    def places_are_possible(self):
        """KWin and Mutter heed the places that programs under XWayland give."""

    def of_class(self, name, title=None):
        def has_class(window):
            return window["class"].lower() == name.lower() or window["class"].lower().endswith("." + name.lower())
        return [(*window["place"], window) for window in self.ask()
                if has_class(window) and (title is None or window["title"] == title)]

    def before_menu(self):
        return picture()

    def menu_since(self, before):
        """A menu is higher than a tool tip."""
        width, height = self.size()
        bar = self.bar()
        below = (0, bar[3], width, height) if bar[1] == 0 else (0, 0, width, bar[1])
        box = changed_box(before, picture(), below)
        return box if box and box[2] - box[0] > 60 and box[3] - box[1] > 80 else None

    def size(self):
        return SCREEN

    def bar(self):
        return bar_beside(self.work_area(), self.size())


class NestedDesktop(Desktop):
    portals = ()

    def portals_folder(self):
        """A desktop has its own portals alone; the portal takes those of others where its own offer nothing."""
        folder = self.session.folder / "portals"
        folder.mkdir()
        for name in self.portals:
            shutil.copy(f"/usr/share/xdg-desktop-portal/portals/{name}.portal", folder)
        return str(folder)

    def end_display(self):
        self.session.end("window-manager")

    def start_compositor(self, *command, **options):
        os.environ["XDG_SESSION_TYPE"] = "wayland"
        os.environ["XDG_DESKTOP_PORTAL_DIR"] = self.portals_folder()
        process = self.session.start("window-manager", *command, **options)
        runtime = Path(os.environ["XDG_RUNTIME_DIR"])
        socket = wait_until("the compositor", lambda: [path.name for path in runtime.glob("wayland-*")
                                                       if not path.name.endswith(".lock")], 25)[0]
        display = wait_until("XWayland's display", lambda: inner_display(process.pid), 25)
        self.session.inner = {"WAYLAND_DISPLAY": socket, "DISPLAY": f":{display}"}
        # Without it XWayland refuses everyone, where the compositor has made one.
        for key in (*runtime.glob(".mutter-Xwaylandauth.*"), *runtime.glob("xauth_*")):
            self.session.inner["XAUTHORITY"] = str(key)
        # The programs that the bus starts are on this display too.
        told = {**self.session.inner, **{name: os.environ[name] for name in ("XDG_SESSION_TYPE", "XDG_DESKTOP_PORTAL_DIR")}}
        output("dbus-update-activation-environment", *[f"{name}={value}" for name, value in told.items()])


def inner_display(pid):
    """The number of the display whose socket a compositor listens on for XWayland."""
    own = set()
    for file in Path(f"/proc/{pid}/fd").iterdir():
        try:
            own.add(os.readlink(file))
        except OSError:  # closed meanwhile
            continue
    for line in Path("/proc/net/unix").read_text().splitlines()[1:]:
        fields = line.split()
        listens = len(fields) == 8 and fields[3] == "00010000"
        if listens and f"socket:[{fields[6]}]" in own and "/tmp/.X11-unix/X" in fields[7]:
            return fields[7].rsplit("X", 1)[1]
    return None
