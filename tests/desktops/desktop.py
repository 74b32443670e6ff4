# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""What the tour asks of every desktop."""

import signal

from buttons import shown_button
from screen import Windows, click, key
from session import NotPossible, Session, on_the_bus, output, wait_until

WATCHER = "org.kde.StatusNotifierWatcher"


class Desktop:
    """What the tour asks of a desktop. None from a setting means: this desktop's is not driven yet."""

    name = title = current = ""
    packages = ()
    activated = ("org.a11y.Bus",)
    environment = {}
    new_icons_come_first = False
    has_tray = True
    refuses_root = False
    recolours_icons = True
    # How many clicks on the icon open the panel.
    opening_clicks = 1
    file_manager = ()
    file_manager_class = ""

    def __init__(self, logs, program):
        self.program = program
        self.session = Session(self.name, logs, activated=self.activated,
                               environment={"XDG_CURRENT_DESKTOP": self.current, **self.environment})

    def begin(self):
        self.session.start("a11y", "/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
        self.start_programs()
        if self.has_tray:
            wait_until("a tray", lambda: on_the_bus(WATCHER), 60)

    def windows(self):
        """What knows the windows on the screen."""
        return Windows()

    def start_programs(self):
        raise NotImplementedError

    def start_bar(self):
        raise NotImplementedError

    def choose_row(self, row, menu):
        """Chooses an entry of the open menu, counted from 1."""
        key(*["Down"] * row, "Return")

    def press_lock(self, box, windows):
        """Presses the button of the warning that is shown in a box of the screen."""
        spot = wait_until("a button Lock in the warning", lambda: shown_button("Lock", box), 8)
        click(*spot)
        return f"pressed at {spot[0]}, {spot[1]}"

    def set_dark(self, dark):
        return None

    def set_text_scale(self, percent):
        return None

    def set_compositing(self, on):
        return None

    def hot_key_is_possible(self):
        """Raises NotPossible with the reason where the desktop has no global hot keys for programs."""

    def answer_questions(self, windows):
        """What the desktop asks its user when Lapsa starts."""

    def use_dash(self, right_click):
        raise NotPossible("the desktop has no dash with the programs in it")

    def kill_bar(self):
        self.session.end("bar", signal.SIGKILL)

    def end_display(self):
        self.session.end("Xvfb")

    def open_folder(self, folder):
        self.session.start("file-manager", *self.file_manager, str(folder))

    def versions(self):
        return ", ".join(f"{package} {output('dpkg-query', '-W', '-f=${Version}', package)}" for package in self.packages)
