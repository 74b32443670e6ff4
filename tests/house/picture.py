#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""picture.py SOURCE_FOLDER BUILD_FOLDER: draws the house as an SVG, to standard output.

Rooms, types and arrows come from the build. Only where a room stands is decided here, in the lists of Picture.
"""
import sys
from dataclasses import dataclass, field
from html import escape
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
sys.dont_write_bytecode = True
from targets import House  # noqa: E402

WIDTH, MARGIN = 1176, 24
GAP, GUTTER = 30, 22  # between floors, where the arrows are; between boxes side by side
AROUND = 11  # from a frame to the boxes in it
PADDING, TITLE, LINE, WORD_SPACE = 11, 24, 17, 11
TYPE_SIZE = 12

# Widths of the letters of a usual sans serif, in thousandths of its size; the fonts of readers differ a little.
NARROW = {**dict.fromkeys("ijl", 240), **dict.fromkeys("ftrI", 320), **dict.fromkeys("csvxyzkJ", 540),
          **dict.fromkeys("mwMW", 870), "1": 480}

SAID = ("Each box is a folder, a library, and the types in it.",
        "A room uses only rooms that its arrows lead to, directly or",
        "by way of other rooms; every room may use base. The build",
        "rejects any other include.")
KEY = (("top", "desktop/: makes the objects and connects them"),
       ("interface", "ui/: draws what the user sees"),
       ("work", "engine/, model/, lanes/: keep the list, decide, and run the work"),
       ("files", "filesystem/: moves, copies and removes files without losing one"),
       ("facility", "platform/freedesktop/, platform/process/: implement the interfaces"),
       ("ground-floor", "platform/, base/: the interfaces to the desktop; values"))

STYLE = """
text { font-family: Inter, "Segoe UI", "Helvetica Neue", Helvetica, Arial, "Liberation Sans", sans-serif; }
.ground { fill: #fbfaf7; }
.room { stroke-width: 1; }
.title { font-size: 15px; font-weight: 650; fill: #23252b; }
.type { font-size: 12px; font-weight: 400; fill: #4a4f5a; }
.legend { font-size: 13px; fill: #6a6f7a; }
.head { font-size: 19px; font-weight: 650; fill: #23252b; }
.frame { fill: #f7f2ea; stroke: #ece2d3; }
.arrow { fill: none; stroke: #9aa0ab; stroke-width: 1.3; stroke-linecap: round; }
.tip { fill: #9aa0ab; }
.work { fill: #e6f2ea; stroke: #b5d6c0; }
.files { fill: #eef4dd; stroke: #cbdba3; }
.interface { fill: #ece9f8; stroke: #c9c1e8; }
.facility { fill: #fcecdc; stroke: #ecccaa; }
.ground-floor { fill: #eceef1; stroke: #cdd2d9; }
.top { fill: #e2eef9; stroke: #b4d0ea; }
@media (prefers-color-scheme: dark) {
  .ground { fill: #16181d; }
  .title, .head { fill: #eef0f4; }
  .type { fill: #b6bcc8; }
  .legend { fill: #949ba8; }
  .frame { fill: #1d1b1a; stroke: #33291f; }
  .arrow { stroke: #6d7583; }
  .tip { fill: #6d7583; }
  .work { fill: #1b3024; stroke: #335a43; }
  .files { fill: #272f17; stroke: #4c5b2c; }
  .interface { fill: #28243c; stroke: #4b4473; }
  .facility { fill: #372818; stroke: #694b2b; }
  .ground-floor { fill: #262a31; stroke: #454c58; }
  .top { fill: #1a2c3d; stroke: #33536f; }
}
"""


def width_of(text, size):
    return sum(NARROW.get(letter, 700 if letter.isupper() else 590) for letter in text) * size / 1000


@dataclass
class Box:
    name: str
    look: str
    x: float
    width: float
    types: list
    y: float = 0
    height: float = 0
    words: list = field(default_factory=list)

    def __post_init__(self):
        """Sets the names of the types in lines, and finds the height that they need."""
        right, line, x = self.width - 2 * PADDING, 0, 0
        for name in self.types:
            width = width_of(name, TYPE_SIZE)
            if x and x + width > right:
                line, x = line + 1, 0
            self.words.append((x, line, name))
            x += width + WORD_SPACE
        self.height = PADDING + TITLE + line * LINE + PADDING + 8

    @property
    def bottom(self):
        return self.y + self.height

    @property
    def right(self):
        return self.x + self.width

    @property
    def middle(self):
        return self.x + self.width / 2

    def svg(self):
        if self.name == "lapsa":
            yield (f'<path class="room {self.look}" d="M{self.x - 10:.0f} {self.bottom:.0f} L{self.x + 62:.0f} {self.y:.0f} '
                   f'H{self.right - 62:.0f} L{self.right + 10:.0f} {self.bottom:.0f} Z" stroke-linejoin="round"/>')
            yield (f'<text class="title" x="{self.middle:.0f}" y="{self.y + 33:.0f}" text-anchor="middle">'
                   f'lapsa <tspan class="type" dx="6">{escape(self.types[0])}</tspan></text>')
            return
        yield (f'<rect class="room {self.look}" x="{self.x:.0f}" y="{self.y:.0f}" width="{self.width:.0f}" '
               f'height="{self.height:.0f}" rx="7"/>')
        yield f'<text class="title" x="{self.x + PADDING:.0f}" y="{self.y + PADDING + 11:.0f}">{escape(self.name)}</text>'
        for x, line, name in self.words:
            yield (f'<text class="type" x="{self.x + PADDING + x:.0f}" '
                   f'y="{self.y + PADDING + TITLE + 8 + line * LINE:.0f}">{escape(name)}</text>')


class Picture:
    def __init__(self, house):
        self.house = house
        self.boxes = {}
        self.uses = {room.name: room.rooms - {"resources"} for room in house.rooms if not room.folder.startswith("tests")}
        self.uses["lapsa"] = house.targets["lapsa"].rooms - {"resources"}
        self.via = {}  # x of the gutter by which an arrow gets past the rooms between its ends, and its end's least inset
        self.place()

    def box(self, name, look, x, width):
        types = ["LapsaApp"] if name == "lapsa" else self.house.targets[name].types
        self.boxes[name] = Box(name, look, x, width, types)
        return self.boxes[name]

    def shares(self, width, *columns):
        """The widths of columns of rooms that share a width, by the longest name in each."""
        longest = [max(width_of(name, TYPE_SIZE) for room in rooms for name in self.house.targets[room].types)
                   for rooms in columns]
        spare = (width - GUTTER * (len(columns) - 1) - sum(longest)) / len(columns)
        return [name + spare for name in longest]

    # ---- Where each room stands

    def place(self):
        """Two wings of a tower, the work on files and the interface, and a lower wing, the desktop around."""
        files, views = 250, 262
        left, middle = MARGIN, MARGIN + files + GUTTER
        right = middle + views + GUTTER + AROUND
        wing = WIDTH - MARGIN - AROUND - right

        lapsa = self.box("lapsa", "top", left, files + GUTTER + views)
        side = 150
        desktop = self.box("desktop", "top", left, files + views - side)
        scripting = self.box("scripting", "top", desktop.right + GUTTER, side)
        panel = self.box("panel", "interface", left, files)
        preferences = self.box("preferences", "interface", middle, views)
        lapsa.y = MARGIN
        desktop.y = scripting.y = lapsa.bottom + GAP
        scripting.height = desktop.height
        panel.y = preferences.y = desktop.bottom + GAP
        panel.height = preferences.height = max(panel.height, preferences.height)

        bottom = self.place_files(left, files, panel.bottom + GAP)
        platform = self.box("platform", "ground-floor", middle, WIDTH - MARGIN - middle)
        interface = self.place_interface(middle, views)
        needed = preferences.bottom + sum(GAP + floor[0].height for floor in interface) + GAP + platform.height
        bottom = max(bottom, needed)
        self.boxes["io"].height = bottom - self.boxes["io"].y
        platform.y = bottom - platform.height
        # What the tower's other wing has to spare goes between these floors.
        y, gap = preferences.bottom, GAP
        for floor in interface:
            for room in floor:
                room.y = y + gap
            y += gap + floor[0].height
            gap = GAP + (bottom - needed) / len(interface)

        self.place_facilities(right, wing, platform.y - GAP - AROUND)
        base = self.box("base", "ground-floor", MARGIN, WIDTH - 2 * MARGIN)
        base.y = bottom + 12
        self.height = base.bottom + MARGIN
        self.via |= {("scripting", "engine"): (left + files + GUTTER / 2, 16),
                     ("model", "platform"): (left + files + GUTTER / 2, 16),
                     ("disposal", "platform"): (left + files + GUTTER / 2, 16),
                     ("engine", "platform"): (left + files + GUTTER / 2, 16),
                     ("lanes", "platform"): (left + files + GUTTER / 2, 16),
                     ("lanes", "io"): (left + files + GUTTER / 2, 16)}

    def place_files(self, x, width, y):
        half, other = self.shares(width, ["copy", "removal"], ["trash", "lanes"])
        for name in ("engine", "disposal", "model"):
            room = self.box(name, "work", x, width)
            room.y = y
            y = room.bottom + GAP
        filesystem, lanes = self.box("filesystem", "files", x, half), self.box("lanes", "work", x + half + GUTTER, other)
        filesystem.y = lanes.y = y
        filesystem.height = lanes.height = max(filesystem.height, lanes.height)
        y = filesystem.bottom + GAP
        copy, removal = self.box("copy", "files", x, half), self.box("removal", "files", x, half)
        trash = self.box("trash", "files", x + half + GUTTER, other)
        copy.y = trash.y = y
        removal.y = copy.bottom + GAP
        trash.height = removal.bottom - trash.y
        io = self.box("io", "files", x, width)
        io.y = removal.bottom + GAP
        return io.bottom

    def place_interface(self, x, width):
        half, other = self.shares(width, ["theme"], ["l10n"])
        theme, l10n = self.box("theme", "interface", x, half), self.box("l10n", "interface", x + half + GUTTER, other)
        theme.height = l10n.height = max(theme.height, l10n.height)
        left, right = self.shares(width, ["rows"], ["dialogs"])
        rows, dialogs = self.box("rows", "interface", x, left), self.box("dialogs", "interface", x + left + GUTTER, right)
        rows.height = dialogs.height = max(rows.height, dialogs.height)
        return [[self.box("recovery", "interface", x, width)], [rows, dialogs],
                [self.box("widgets", "interface", x, width)], [theme, l10n]]

    def place_facilities(self, x, width, bottom):
        """Three columns on the floor that ends at bottom."""
        one, two, wide = self.shares(width, ["selection", "clipboard"], ["tray", "hotkeys"], ["session", "process"])
        first, second, third = x, x + one + GUTTER, x + one + two + 2 * GUTTER
        floors = [[("freedesktop", x, width)],
                  [("selection", first, one), ("tray", second, two), ("session", third, wide)],
                  [("clipboard", first, one), ("hotkeys", second, two), ("process", third, wide)],
                  [("x11", first, one + GUTTER + two), ("portal", third, wide)]]
        for floor in reversed(floors):
            rooms = [self.box(name, "facility", x, width) for name, x, width in floor]
            height = max(room.height for room in rooms)
            for room in rooms:
                room.height, room.y = height, bottom - height
            bottom -= height + GAP
        self.via |= {("tray", "x11"): (second - GUTTER / 2, 20), ("freedesktop", "hotkeys"): (third - GUTTER / 2, 20),
                     ("session", "portal"): (third - GUTTER / 2, 46)}
        self.wing = [name for floor in floors for name, _, _ in floor]

    # ---- Arrows

    def below(self, room):
        found, to_visit = set(), set(self.uses[room])
        while to_visit:
            name = to_visit.pop()
            if name not in found:
                found.add(name)
                to_visit |= self.uses[name]
        return found

    def arrows(self):
        """Those that no longer way implies. All may use base, so nothing is drawn to it, and the lower wing, which
        implements the interfaces of platform, has one arrow there together."""
        for room, used in self.uses.items():
            for other in sorted(used - {"base"} - ({"platform"} if room in self.wing else set())):
                if not any(other in self.below(between) for between in used - {other}):
                    yield self.boxes[room], self.boxes[other]

    def arrow(self, upper, lower):
        start, end = max(upper.x, lower.x), min(upper.right, lower.right)
        if (upper.name, lower.name) == ("lapsa", "freedesktop"):
            x, y, end = upper.right - 24, upper.y + upper.height / 2, lower.right - 26
            path = f"M{x:.0f} {y:.0f} H{end - 16:.0f} Q{end:.0f} {y:.0f} {end:.0f} {y + 16:.0f} V{lower.y - 7:.0f}"
        elif way := self.via.get((upper.name, lower.name)):
            gutter, inset = way
            start = min(max(gutter, upper.x + 14), upper.right - 14)
            end = min(max(gutter, lower.x + inset), lower.right - inset)
            turn, last = upper.bottom + GAP - 6, lower.y - GAP + 6
            path = (f"M{start:.0f} {upper.bottom:.0f} C{start:.0f} {turn - 8:.0f} {gutter:.0f} {turn - 16:.0f} "
                    f"{gutter:.0f} {turn:.0f} V{last:.0f} C{gutter:.0f} {last + 10:.0f} {end:.0f} {last + 6:.0f} "
                    f"{end:.0f} {lower.y - 7:.0f}")
        elif end - start > 24:
            end = (start + end) / 2
            path = f"M{end:.0f} {upper.bottom:.0f} V{lower.y - 7:.0f}"
        else:
            start = min(max(lower.middle, upper.x + 20), upper.right - 20)
            end = min(max(upper.middle, lower.x + 20), lower.right - 20)
            half = (lower.y - upper.bottom) / 2
            path = (f"M{start:.0f} {upper.bottom:.0f} C{start:.0f} {upper.bottom + half:.0f} {end:.0f} "
                    f"{lower.y - half:.0f} {end:.0f} {lower.y - 7:.0f}")
        yield f'<path class="arrow" d="{path}"/>'
        yield f'<path class="tip" d="M{end - 4:.0f} {lower.y - 8:.0f} h8 l-4 6.5 z"/>'

    def frame(self):
        """Around the lower wing, with its arrow to platform."""
        rooms, platform = [self.boxes[name] for name in self.wing], self.boxes["platform"]
        x, y = min(room.x for room in rooms) - AROUND, min(room.y for room in rooms) - AROUND
        right, bottom = max(room.right for room in rooms) + AROUND, max(room.bottom for room in rooms) + AROUND
        frame = Box("", "frame", x, right - x, [], y)
        frame.height = bottom - y
        yield f'<rect class="frame" x="{x:.0f}" y="{y:.0f}" width="{right - x:.0f}" height="{bottom - y:.0f}" rx="12"/>'
        if any("platform" in self.uses[name] for name in self.wing):
            yield from self.arrow(frame, platform)

    # ---- All of it

    def legend(self):
        """What the picture says, in the room that the lower wing leaves."""
        x, roof = self.boxes["freedesktop"].x - AROUND, self.boxes["freedesktop"].y - AROUND
        y = (MARGIN + 50 + roof - 34 - len(SAID) * 20 - len(KEY) * 25) / 2 + 10
        yield f'<text class="head" x="{x:.0f}" y="{y:.0f}">The rooms of Lapsa</text>'
        y += 30
        for line in SAID:
            yield f'<text class="legend" x="{x:.0f}" y="{y:.0f}">{escape(line)}</text>'
            y += 20
        y += 14
        for look, line in KEY:
            yield f'<rect class="room {look}" x="{x:.0f}" y="{y - 12:.0f}" width="22" height="16" rx="4"/>'
            yield f'<text class="legend" x="{x + 32:.0f}" y="{y:.0f}">{escape(line)}</text>'
            y += 25

    def svg(self):
        parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {self.height:.0f}" role="img">',
                 "<!-- Drawn by tools/house from the targets of the build. -->",
                 "<title>The rooms of Lapsa, and which uses which</title>", f"<style>{STYLE}</style>",
                 f'<rect class="ground" width="{WIDTH}" height="{self.height:.0f}" rx="12"/>', *self.legend()]
        parts += self.frame()
        for upper, lower in self.arrows():
            parts += self.arrow(upper, lower)
        for box in self.boxes.values():
            parts += box.svg()
        return "\n".join([*parts, "</svg>"]) + "\n"


def draw(house):
    return Picture(house).svg()


if __name__ == "__main__":
    sys.stdout.write(draw(House(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve())))
