# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Lapsa's real program on a desktop: started, ended, asked what it has on its list, found on the screen."""

import json
import signal
import subprocess
import time

from desktop import WATCHER
from screen import alike, changed_box, click, do, key, middle, picture
from session import NotPossible, NotThere, on_the_bus, output, wait_until

NAME = "org.lapsa.Lapsa"
WM_CLASS = "Lapsa"


class Lapsa:
    def __init__(self, tour, build):
        self.tour = tour
        self.program = str(build / "lapsa")
        self.control = str(build / "lapsactl")
        self.icon = None
        self.look = None

    def start(self):
        """Starts it, and finds its icon: what is drawn in the taskbar then."""
        if not self.tour.desktop.has_tray:
            return self.start_without_icon()
        bar = self.tour.windows.bar()
        # A taskbar that still fades from one colour to another differs everywhere.
        before = wait_until("a taskbar at rest", lambda: self.at_rest(bar), 15)
        self.tour.session.start("lapsa", self.program)
        wait_until("Lapsa on the bus", lambda: on_the_bus(NAME), 20)
        self.wait_for_rest()
        self.tour.desktop.answer_questions(self.tour.windows)
        self.icon = self.new_icon(before, bar)
        after = picture()
        self.look = after.crop(self.icon)
        return before, after, self.icon

    def start_without_icon(self):
        self.tour.session.start("lapsa", self.program)
        wait_until("Lapsa on the bus", lambda: on_the_bus(NAME), 20)
        self.wait_for_rest()
        return None, None, None

    def need_icon(self):
        if not self.icon:
            raise NotPossible(f"nobody owns {WATCHER} on the session bus, so there is no taskbar for icons")

    def at_rest(self, bar):
        first = picture()
        time.sleep(1)
        second = picture()
        return second if not changed_box(first, second, bar, limit=4) else None

    def new_icon(self, before, bar):
        """The place of the icon that has come: the others make room, so that more is drawn anew than the icon."""
        left, top, right, bottom = wait_until("the icon", lambda: self.drawn_since(before, bar), 15)
        if self.tour.desktop.new_icons_come_first:
            return left, top, min(right, left + bottom - top), bottom
        return max(left, right - (bar[3] - bar[1])), top, right, bottom

    def find_icon(self):
        """Finds the icon again where others may have come beside it or the taskbar is a new one."""
        do("mousemove", 20, 400)
        wait_until("the icon", self.icon_found, 30)

    def icon_found(self):
        self.icon, difference = alike(self.look, picture(), self.tour.windows.bar())
        return difference < 12

    def drawn_since(self, before, bar):
        first = changed_box(before, picture(), bar)
        time.sleep(0.5)
        second = changed_box(before, picture(), bar)
        return second if first == second and second and second[2] - second[0] >= 6 else None

    def end(self, how=signal.SIGTERM):
        if not self.tour.session.running("lapsa"):
            raise NotThere("Lapsa, which had ended by itself,")
        if not self.tour.session.end("lapsa", how):
            raise NotThere("the end of Lapsa")
        time.sleep(1)

    def ended(self):
        return not self.tour.session.running("lapsa")

    def windows(self, title=None):
        return self.tour.windows.of_class(WM_CLASS, title)

    def panel(self):
        """x, y, width, height and window of the open panel."""
        found = [window for window in self.windows("Lapsa")
                 if window[2] > 300 and window[3] > 300 and not self.tour.windows.greets(window[4])]
        return found[0] if found else None

    def click_icon(self, button=1):
        if self.ended():
            raise NotThere("Lapsa, which had ended by itself,")
        click(*middle(self.icon), button, self.tour.desktop.opening_clicks if button == 1 else 1)

    def open_panel(self):
        """With a click on the icon; where there is none, with a second start."""
        if not self.panel():
            self.click_icon() if self.icon else self.start_again()
        wait_until(f"the panel after a click on the icon at {self.icon}", self.panel, 8)
        time.sleep(0.6)
        return self.panel()

    def wait_for_rest(self):
        wait_until("the end of the greeting", lambda: not self.windows("Lapsa"), 12)

    def be_at_rest(self):
        """Closes what a point left open, so that it does not decide the next one."""
        key("Escape")
        if self.panel() and not self.ended():
            self.click_icon() if self.icon else key("alt+F4")
            wait_until("the panel's end", lambda: not self.panel(), 5)

    def items(self):
        text = output(self.control, "list", "--json")
        return json.loads(text) if text else []

    def lists(self, path):
        return any(str(path) in map(str, item.values()) for item in self.items())

    def add(self, path, lifespan):
        output(self.control, "add", "--for", lifespan, str(path))
        wait_until(f"{path.name} on the list", lambda: self.lists(path))

    def start_again(self):
        if self.ended():
            raise NotThere("Lapsa, which had ended by itself,")
        return subprocess.run([self.program], env=self.tour.session.for_programs(), capture_output=True, timeout=20, check=False).returncode
