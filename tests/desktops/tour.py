#!/usr/bin/python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""tour.py BUILD LOGS PAGE [--only NAME]...: runs the same tour on every desktop, and writes what was seen into PAGE.

Each point is driven with a real pointer and real keys, and what is judged is on the screen, on the bus or on the disk. An
answer begins with "seen", "fails" or "not possible"; a point that this desktop is not driven for yet is "not tried".
"""

import argparse
import ctypes
import json
import multiprocessing
import os
import sys
import traceback
from pathlib import Path

import desktops
import page
import points_files  # noqa: F401: the files note their points, in this order
import points_changes  # noqa: F401, I001
from points import POINTS
from program import Lapsa
from screen import save
from session import NotPossible, NotThere, wait_until


class NotTried(Exception):
    """No way is written yet to drive this point on this desktop."""


class Tour:
    """What the points share: the desktop, the program on it, and what earlier points found."""

    def __init__(self, desktop, build, picture):
        self.desktop = desktop
        self.session = desktop.session
        self.windows = desktop.windows()
        self.lapsa = Lapsa(self, build)
        self.picture = picture

    def set(self, change, *values):
        """Changes a setting of the desktop as its user would."""
        if change(*values) is None:
            raise NotTried

    def run(self, only):
        seen = {}
        for number, (name, point) in enumerate(POINTS.items()):
            if only and number > 0 and only not in name:
                continue
            try:
                seen[name] = point(self)
            except NotTried:
                seen[name] = "not tried"
            except NotPossible as reason:
                seen[name] = f"not possible: {reason}"
            except (NotThere, AssertionError) as failure:
                seen[name] = f"fails: {failure}"
            except Exception as failure:  # a desktop that breaks must not end the tour of the others
                traceback.print_exc()
                seen[name] = f"fails: {type(failure).__name__} {failure}"
            print(f"{self.desktop.name}: {name}: {seen[name]}", flush=True)
            if seen[name].startswith("fails"):
                self.keep_picture(name)
            self.rest_after(name)
        return seen

    def rest_after(self, name):
        try:
            self.lapsa.be_at_rest()
        except Exception as failure:  # the next points say what is left of the program and its display
            print(f"{self.desktop.name}: after {name}: {failure}", flush=True)

    def keep_picture(self, name):
        """Of a screen that shows why a point fails."""
        try:
            save(self.session.logs / f"{name.replace(' ', '-')}.png")
        except OSError:
            print(f"{self.desktop.name}: there is no screen any more", flush=True)


def be_an_ordinary_user():
    """In a user namespace, where the files of root are the user's: some desktops do not start for root."""
    new_user_namespace, user, group = 0x10000000, os.geteuid(), os.getegid()
    if ctypes.CDLL(None, use_errno=True).unshare(new_user_namespace) != 0:
        raise OSError(ctypes.get_errno(), "no user namespace")
    Path("/proc/self/setgroups").write_text("deny")
    Path("/proc/self/uid_map").write_text(f"1000 {user} 1")
    Path("/proc/self/gid_map").write_text(f"1000 {group} 1")


def reserves_a_place(windows):
    try:
        return windows.work_area()[3] and windows.bar()
    except NotThere:
        return False


def visit(kind, arguments):
    """Notes the points seen on one desktop. Runs in a process of its own, whose environment becomes the desktop's."""
    if kind.refuses_root and os.geteuid() == 0:
        be_an_ordinary_user()
    desktop = kind(arguments.logs, arguments.build / "lapsa")
    result = {"versions": desktop.versions()}
    try:
        desktop.begin()
        tour = Tour(desktop, arguments.build, arguments.page.parent / "desktops" / f"{desktop.name}.png")
        tour.windows.paint_ground()
        wait_until("the taskbar's place", lambda: reserves_a_place(tour.windows), 60)
        result["points"] = tour.run(arguments.point)
    except NotThere as failure:
        print(f"{kind.name}: {failure}", flush=True)
        result["points"] = {name: f"fails: {failure}" for name in POINTS}
    finally:
        desktop.session.close()
    if not arguments.point:
        (arguments.logs / f"{kind.name}.json").write_text(json.dumps(result, indent=1))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=lambda text: Path(text).resolve())
    parser.add_argument("logs", type=lambda text: Path(text).resolve())
    parser.add_argument("page", type=lambda text: Path(text).resolve())
    parser.add_argument("--only", action="append")
    parser.add_argument("--point", help="only the first point and those that contain this text; writes no page")
    arguments = parser.parse_args()
    arguments.logs.mkdir(parents=True, exist_ok=True)
    (arguments.page.parent / "desktops").mkdir(exist_ok=True)
    chosen = [kind for kind in desktops.ALL if not arguments.only or kind.name in arguments.only]
    if not chosen:
        sys.exit(f"tour.py: there are {', '.join(kind.name for kind in desktops.ALL)}")
    for kind in chosen:
        visitor = multiprocessing.Process(target=visit, args=(kind, arguments))
        visitor.start()
        visitor.join()
    if not arguments.point:
        page.write(arguments.page, arguments.logs, desktops.ALL, POINTS)


if __name__ == "__main__":
    main()
