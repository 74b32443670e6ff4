# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""sway with waybar and dunst."""

import json
import os
import time
from pathlib import Path

from nested import NestedDesktop, NestedWindows
from screen import changed_box, click, middle, picture
from session import NotPossible, output, wait_until

# The way to a hot key that the guide gives for sway.
CONFIGURATION = """output X11-1 mode 1280x900
output X11-1 bg #7a8fa6 solid_color
default_border none
bindsym Mod4+Shift+y exec gapplication action org.lapsa.Lapsa add-selection
"""
WAYBAR = {"layer": "top", "position": "top", "height": 30, "modules-left": ["wlr/taskbar"], "modules-right": ["tray"],
          "wlr/taskbar": {"format": "{title}"}}


class SwayWindows(NestedWindows):
    without_button = "the taskbar shows nothing of it"

    def ask(self):
        found = []
        todo = [json.loads(output("swaymsg", "-r", "-t", "get_tree"))]
        while todo:
            node = todo.pop()
            todo += node["nodes"] + node["floating_nodes"]
            if node.get("pid") and node.get("visible"):
                properties = node.get("window_properties", {})
                rect = node["rect"]
                found.append({"class": node["app_id"] or properties.get("class", ""), "title": node["name"] or "",
                              "place": tuple(rect[name] for name in ("x", "y", "width", "height")), "id": node["id"],
                              "splash": properties.get("window_type") == "splash"})
        return found

    def work_area(self):
        rect = json.loads(output("swaymsg", "-r", "-t", "get_workspaces"))[0]["rect"]
        return tuple(rect[name] for name in ("x", "y", "width", "height"))

    def bar(self):
        """Its right half: the windows have their buttons on the left."""
        left, top, right, bottom = super().bar()
        return (left + right) // 2, top, right, bottom

    def put(self, window, x, y, width, height):
        output("swaymsg", f"[con_id={window['id']}] floating enable, resize set {width} {height}, "
                          f"move absolute position {x} {y}")

    def places_are_possible(self):
        raise NotPossible("sway places it in the middle of the screen")

    def shows_in_taskbar(self, window):
        taskbar = NestedWindows.bar(self)
        before = picture()
        output("swaymsg", f"[con_id={window['id']}] kill")
        wait_until("the panel's end", lambda: all(other["id"] != window["id"] for other in self.ask()), 5)
        time.sleep(1.5)  # until the bar is drawn anew
        if changed_box(before, picture(), (0, 0, taskbar[2] // 2, taskbar[3]), limit=15):
            raise NotPossible("sway tells taskbars of all windows; zwlr_foreign_toplevel_management_v1 can leave none out")
        return ""


class Sway(NestedDesktop):
    name, title, current = "sway", "sway with waybar", "sway"
    packages = ("sway", "waybar", "dunst", "thunar")
    environment = {"GSETTINGS_BACKEND": "memory", "WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"}
    refuses_root = True
    recolours_icons = False
    file_manager, file_manager_class = ("thunar",), "Thunar"

    def windows(self):
        return SwayWindows()

    def start_programs(self):
        configuration = Path(os.environ["XDG_CONFIG_HOME"])
        (configuration / "sway").mkdir()
        (configuration / "sway/config").write_text(CONFIGURATION)
        (configuration / "waybar").mkdir()
        (configuration / "waybar/config").write_text(json.dumps(WAYBAR))
        self.start_compositor("sway")
        os.environ["SWAYSOCK"] = str(next(Path(os.environ["XDG_RUNTIME_DIR"]).glob("sway-ipc.*")))
        self.start_bar()
        self.session.start("notifications", "dunst")

    def start_bar(self):
        self.session.start("bar", "waybar")

    def open_folder(self, folder):
        # A file manager that Lapsa can ask is one under XWayland; files are dropped from a Wayland program.
        backend = "wayland" if "dropped" in folder.name else "x11"
        self.session.start("file-manager", "thunar", str(folder), environment={"GDK_BACKEND": backend})

    def choose_row(self, row, menu):
        """With the pointer: waybar does not get the keys. The rows are 24 pixels high; the first lies on the bar's edge."""
        click((menu[0] + menu[2]) // 2, menu[1] + 24 * (row - 1))

    def press_lock(self, box, windows):
        """dunst draws no buttons: the middle one of the pointer is its way to the first action."""
        click(*middle(box), button=2)
        return f"dunst's middle click at {middle(box)[0]}, {middle(box)[1]}"

    def set_dark(self, dark):
        raise NotPossible("sway has no such setting, and Debian's portal for it has none either")

    def set_text_scale(self, percent):
        raise NotPossible("sway draws XWayland's windows larger by itself; a program does not learn of it")
