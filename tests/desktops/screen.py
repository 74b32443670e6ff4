# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Looks at the screen as a user does, and moves the pointer and the keys."""

import os
import subprocess
import time

from PIL import Image, ImageChops, ImageGrab, ImageStat
from session import NotThere, output, wait_until
from Xlib import X, Xatom, display, error


def picture(box=None):
    image = ImageGrab.grab(xdisplay=os.environ["DISPLAY"]).convert("RGB")
    return image.crop(box) if box else image


def changed_box(before, after, area, limit=40):
    """Where two pictures differ visibly inside of an area: left, top, right, bottom; None where they do not."""
    difference = ImageChops.difference(before.crop(area), after.crop(area)).convert("L")
    box = difference.point(lambda value: 255 if value > limit else 0).getbbox()
    return box and (box[0] + area[0], box[1] + area[1], box[2] + area[0], box[3] + area[1])


def middle(box):
    return (box[0] + box[2]) // 2, (box[1] + box[3]) // 2


def stroke_colour(before, after, box):
    """The colour of what was drawn: of the tenth of the pixels that differ most from the ground before."""
    ground, drawn = list(before.crop(box).getdata()), list(after.crop(box).getdata())
    by_distance = sorted(zip(ground, drawn), key=lambda pair: -sum(abs(a - b) for a, b in zip(*pair)))
    strongest = [colour for _, colour in by_distance[:max(4, len(drawn) // 10)]]
    return tuple(sum(colour[i] for colour in strongest) // len(strongest) for i in range(3))


def alike(part, whole, area):
    """The place inside of an area that looks most like a small picture, and how much it differs on average."""
    places = [(x, y, x + part.width, y + part.height) for x in range(area[0], area[2] - part.width + 1)
              for y in range(area[1], area[3] - part.height + 1)]
    differences = {place: sum(ImageStat.Stat(ImageChops.difference(part, whole.crop(place))).mean) / 3 for place in places}
    return min(differences.items(), key=lambda found: found[1])


def brightness(image):
    return ImageStat.Stat(image.convert("L")).mean[0]


def black_share(image):
    """The share of pixels that are entirely black."""
    return image.convert("L").histogram()[0] / (image.width * image.height)


def save(path):
    picture().quantize(256).save(path, optimize=True)


class Windows:
    without_button = "skips taskbar and pager"
    why_not_composited = "nobody owns _NET_WM_CM_S0, so there is no compositing to end"

    def __init__(self):
        self.display = display.Display()
        self.root = self.display.screen().root

    def paint_ground(self):
        """The bare screen is black, and so would be a frame that nobody draws."""
        screen = self.display.screen()
        ground = self.root.create_pixmap(screen.width_in_pixels, screen.height_in_pixels, screen.root_depth)
        ground.fill_rectangle(ground.create_gc(foreground=0x7A8FA6), 0, 0, screen.width_in_pixels, screen.height_in_pixels)
        self.root.change_attributes(background_pixmap=ground)
        # Where compositing window managers look for it.
        for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID"):
            self.root.change_property(self.display.intern_atom(name), Xatom.PIXMAP, 32, [ground.id])
        self.root.clear_area()
        self.display.sync()

    def property(self, window, name):
        value = window.get_full_property(self.display.intern_atom(name), X.AnyPropertyType)
        return value.value if value else None

    def place(self, window):
        """x, y, width and height on the screen."""
        geometry = window.get_geometry()
        corner = window.translate_coords(self.root, 0, 0)
        return -corner.x, -corner.y, geometry.width, geometry.height

    def walk(self, window=None, depth=4):
        for child in (window or self.root).query_tree().children:
            try:
                if child.get_attributes().map_state == X.IsViewable:
                    yield child
                if depth > 1:
                    yield from self.walk(child, depth - 1)
            except error.XError:
                continue

    def title(self, window):
        name = self.property(window, "_NET_WM_NAME") or self.property(window, "WM_NAME") or b""
        return name.decode(errors="replace") if isinstance(name, bytes) else str(name)

    def of_class(self, name, title=None):
        """Visible windows of a program, by the second part of their class; the outer ones first."""
        found = []
        for window in self.walk():
            try:
                wm_class = window.get_wm_class()
                if wm_class and wm_class[1].lower() == name.lower() and (title is None or self.title(window) == title):
                    found.append(self.place(window) + (window,))
            except error.XError:
                continue
        return found

    def places_are_possible(self):
        """Raises NotPossible where a program cannot place its windows."""

    def before_menu(self):
        return self.pop_ups()

    def menu_since(self, before):
        return self.pop_ups() - before

    def size(self):
        screen = self.root.get_geometry()
        return screen.width, screen.height

    def put(self, window, x, y, width, height):
        do("windowsize", window.id, width, height)
        do("windowmove", window.id, x, y)

    def close(self, window):
        try:
            do("windowclose", window.id)
        except subprocess.CalledProcessError:  # it went with the one before it
            pass

    def shows_in_taskbar(self, window):
        """What a taskbar would show the window for; empty where it is left out."""
        missing = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"} - self.states(window)
        return f"without {', '.join(sorted(missing))}" if missing else ""

    def pop_ups(self):
        """Menus and the like: visible windows on the root that no window manager has placed."""
        found = set()
        for window in self.walk(depth=1):
            try:
                attributes = window.get_attributes()
                x, y, width, height = self.place(window)
                if attributes.override_redirect and attributes.win_class == X.InputOutput and width > 40 and height > 40:
                    found.add(window.id)
            except error.XError:
                continue
        return found

    def states(self, window):
        return {self.display.get_atom_name(atom) for atom in self.property(window, "_NET_WM_STATE") or []}

    def composited(self):
        return self.display.get_selection_owner(self.display.intern_atom("_NET_WM_CM_S0")) != X.NONE

    def greets(self, window):
        """Whether it is the picture that a program shows while it starts."""
        kinds = self.property(window, "_NET_WM_WINDOW_TYPE") or []
        return "_NET_WM_WINDOW_TYPE_SPLASH" in {self.display.get_atom_name(kind) for kind in kinds}

    def work_area(self):
        """x, y, width and height."""
        return tuple((self.property(self.root, "_NET_WORKAREA") or [0, 0, 0, 0])[:4])

    def bar(self):
        """The area of the taskbar: what the work area leaves of the screen at the top or the bottom."""
        return bar_beside(self.work_area(), self.size())


def bar_beside(work_area, screen):
    _, y, _, height = work_area
    if y > 0:
        return 0, 0, screen[0], y
    if y + height < screen[1]:
        return 0, y + height, screen[0], screen[1]
    raise NotThere("a taskbar that reserves its place")


def do(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True, timeout=20)


def move_to(x, y):
    """In two steps: a program under XWayland that was only entered, not moved in, does not heed the click."""
    do("mousemove", x - 3, y)
    time.sleep(0.15)
    do("mousemove", x, y)
    time.sleep(0.2)


def click(x, y, button=1, times=1):
    move_to(x, y)
    do("click", "--repeat", times, "--delay", 80, button)


def key(*combinations):
    for combination in combinations:
        do("key", combination)
        time.sleep(0.15)


def drag(start, end):
    move_to(*start)
    do("mousedown", 1)
    steps = 12
    for step in range(1, steps + 1):
        do("mousemove", *[a + (b - a) * step // steps for a, b in zip(start, end)])
        time.sleep(0.05)
    do("mousemove", end[0] + 2, end[1] + 2)
    time.sleep(0.4)
    do("mouseup", 1)


def window_manager_ready():
    return wait_until("the window manager",
                      lambda: "window id" in output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), 25)


__all__ = ["Image", "Windows", "alike", "bar_beside", "black_share", "brightness", "changed_box", "click", "do", "drag", "key", "middle",
           "picture", "save", "stroke_colour", "window_manager_ready"]
