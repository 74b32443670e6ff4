#!/usr/bin/python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""moving_picture.py PROGRAM PICTURE: films two hours in the life of three files as an animated WebP.

PROGRAM is part of a complete installation: its icons are in ../share. The program, the file manager, the taskbar and the
notification daemon are real and run on an X server of their own. Only the clock of PROGRAM is moved ahead, with
libfaketime; its pass still comes once a minute, so this takes three minutes. The captions and the pointer are drawn
afterwards: a screenshot has no pointer.
"""

import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from PIL import Image, ImageDraw, ImageFont, ImageGrab

PATIENCE = 90  # seconds; a pass comes after 60
SCREEN = (880, 636)
PANEL = (430, 560)
CAPTION_HEIGHT = 44
FONT = "/usr/share/fonts/opentype/inter/Inter-Medium.otf"
POINTER = [(0, 0), (0, 17), (4, 13.5), (6.6, 19.4), (9.4, 18.2), (6.9, 12.5), (12, 12.5)]
FILES = {"report.zip": 400_000, "draft.pdf": 90_000, "minutes.txt": 2_000}

BUS = """<busconfig><type>session</type><listen>unix:dir={folder}</listen><auth>EXTERNAL</auth>
<servicedir>/usr/share/xfce4/no-services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""
CHANNELS = {
    "xfce4-panel": """<property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/><property name="panel-1" type="empty">
<property name="position" type="string" value="p=6;x=0;y=0"/><property name="length" type="uint" value="100"/>
<property name="position-locked" type="bool" value="true"/><property name="size" type="uint" value="28"/>
<property name="plugin-ids" type="array"><value type="int" value="1"/><value type="int" value="2"/></property>
</property></property>
<property name="plugins" type="empty"><property name="plugin-1" type="string" value="separator">
<property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/></property>
<property name="plugin-2" type="string" value="systray"><property name="square-icons" type="bool" value="true"/>
</property></property>""",
    "xfce4-notifyd": """<property name="notify-location" type="uint" value="1"/>
<property name="initial-opacity" type="double" value="1"/><property name="do-fadeout" type="bool" value="false"/>
<property name="expire-timeout" type="int" value="-1"/>""",
    "thunar": """<property name="last-side-pane" type="string" value="void"/>
<property name="last-location-bar" type="string" value="void"/>
<property name="last-menubar-visible" type="bool" value="false"/>
<property name="last-statusbar-visible" type="bool" value="false"/>
<property name="last-view" type="string" value="ThunarIconView"/>
<property name="last-icon-view-zoom-level" type="string" value="THUNAR_ZOOM_LEVEL_150_PERCENT"/>
<property name="last-window-width" type="int" value="390"/>
<property name="last-window-height" type="int" value="215"/>""",
    "xsettings": """<property name="Net" type="empty"><property name="ThemeName" type="string" value="Adwaita"/>
<property name="IconThemeName" type="string" value="Adwaita"/></property>""",
}
FONTS = """<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>
<include>/etc/fonts/fonts.conf</include>
<alias binding="same"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>"""


def wait_until(what, condition, seconds=PATIENCE):
    deadline = time.monotonic() + seconds
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise SystemExit(f"moving_picture.py: {what} does not come")
        time.sleep(0.05)
    return result


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()


def found(pattern):
    return str(next(Path("/usr/lib").glob(pattern)))


def on_the_bus(name):
    return "true" in output("dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                            "org.freedesktop.DBus.NameHasOwner", f"string:{name}")


def windows(*criteria):
    return output("xdotool", "search", "--onlyvisible", *criteria).split()


def place_of(window):
    """x, y, width and height on the screen."""
    shell = dict(line.split("=") for line in output("xdotool", "getwindowgeometry", "--shell", window).splitlines())
    return tuple(int(shell[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))


class Film:
    """Frames, and for how long each is shown."""

    def __init__(self):
        self.frames = []
        self.pointer = (SCREEN[0] // 2, SCREEN[1] // 2)
        self.caption = ""
        self.font = ImageFont.truetype(FONT, 19)

    def shoot(self, milliseconds):
        picture = Image.new("RGB", (SCREEN[0], SCREEN[1] + CAPTION_HEIGHT), "#1d1d1f")
        picture.paste(ImageGrab.grab(xdisplay=os.environ["DISPLAY"]).convert("RGB"), (0, 0))
        self.draw_pointer(picture)
        ImageDraw.Draw(picture).text((SCREEN[0] / 2, SCREEN[1] + CAPTION_HEIGHT / 2), self.caption, "#f5f5f7",
                                     font=self.font, anchor="mm")
        self.frames.append((picture, milliseconds))

    def draw_pointer(self, picture):
        # Drawn four times as large and scaled down, because Pillow does not smooth edges.
        large = Image.new("RGBA", (60, 88))
        corners = [(x * 4 + 4, y * 4 + 4) for x, y in POINTER]
        ImageDraw.Draw(large).polygon(corners, fill="black", outline="white")
        ImageDraw.Draw(large).line([*corners, corners[0]], fill="white", width=5)
        small = large.resize((15, 22), Image.Resampling.LANCZOS)
        picture.paste(small, self.pointer, small)

    def move(self, x, y, steps=6):
        from_x, from_y = self.pointer
        for step in range(1, steps + 1):
            way = step / steps
            way = way * way * (3 - 2 * way)
            self.pointer = (round(from_x + (x - from_x) * way), round(from_y + (y - from_y) * way))
            output("xdotool", "mousemove", *map(str, self.pointer))
            time.sleep(0.12)
            self.shoot(70)

    def click(self):
        output("xdotool", "click", "1")

    def save(self, path):
        first, *others = [picture for picture, _ in self.frames]
        first.save(path, save_all=True, append_images=others, duration=[time for _, time in self.frames], loop=0,
                   lossless=True, quality=100, method=6, minimize_size=True)


class Session:
    """A home folder, a session bus, a display and the programs of a desktop."""

    def __init__(self, folder, shared):
        self.folder = Path(folder)
        self.home = self.folder / "home"
        self.data = self.home / ".local/share/Lapsa"
        self.started = []
        (self.home / ".config/xfce4/xfconf/xfce-perchannel-xml").mkdir(parents=True)
        (self.home / "Downloads").mkdir()
        (self.folder / "run").mkdir(mode=0o700)
        for name, size in FILES.items():
            (self.home / "Downloads" / name).write_bytes(b"\n" * size)
        for name, properties in CHANNELS.items():
            (self.home / f".config/xfce4/xfconf/xfce-perchannel-xml/{name}.xml").write_text(
                f'<?xml version="1.0" encoding="UTF-8"?>\n<channel name="{name}" version="1.0">{properties}</channel>')
        (self.home / ".config/fontconfig").mkdir()
        (self.home / ".config/fontconfig/fonts.conf").write_text(FONTS)
        kept = {name: os.environ[name] for name in ("PATH", "LC_CTYPE") if name in os.environ}
        os.environ.clear()
        os.environ.update(kept, HOME=str(self.home), XDG_RUNTIME_DIR=f"{folder}/run", XDG_CURRENT_DESKTOP="XFCE",
                          XDG_SESSION_TYPE="x11", GSETTINGS_BACKEND="memory", GTK_USE_PORTAL="0", NO_AT_BRIDGE="1",
                          LC_ALL="C.UTF-8", GTK_THEME="Adwaita", XDG_DATA_DIRS=f"{shared}:/usr/local/share:/usr/share")

    def start(self, *command, **options):
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   stdout=options.pop("stdout", subprocess.DEVNULL), text=True, **options)
        self.started.append(process)
        return process

    def start_desktop(self):
        display = self.start("Xvfb", "-displayfd", "1", "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24", "-nolisten",
                             "tcp", "-noreset", stdout=subprocess.PIPE)
        os.environ["DISPLAY"] = ":" + display.stdout.readline().strip()
        (self.folder / "bus.conf").write_text(BUS.format(folder=self.folder))
        bus = self.start("dbus-daemon", "--nofork", "--print-address", f"--config-file={self.folder}/bus.conf",
                         stdout=subprocess.PIPE)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self.start(found("*/xfce4/xfconf/xfconfd"))
        wait_until("xfconfd", lambda: on_the_bus("org.xfce.Xfconf"))
        self.start("xfwm4", "--compositor=on")
        wait_until("the window manager", lambda: output("xdotool", "get_num_desktops"))
        output("hsetroot", "-add", "#9fb6d3", "-add", "#6c86ab", "-gradient", "180")
        self.start(found("*/xfce4/notifyd/xfce4-notifyd"))
        self.start("xfce4-panel", "--disable-wm-check")
        wait_until("the notification daemon", lambda: on_the_bus("org.freedesktop.Notifications"))
        wait_until("the taskbar", lambda: on_the_bus("org.kde.StatusNotifierWatcher"))

    def start_lapsa(self, program):
        self.clock = self.folder / "clock"
        self.move_clock(0)
        self.start(program, env=os.environ | {
            "LD_PRELOAD": found("*/faketime/libfaketime.so.1"), "FAKETIME_TIMESTAMP_FILE": str(self.clock), "FAKETIME_NO_CACHE": "1",
            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "NO_FAKE_STAT": "1"})
        wait_until("Lapsa", lambda: on_the_bus("org.lapsa.Lapsa"))
        wait_until("the splash", lambda: windows("--name", "Lapsa"))
        wait_until("the end of the splash", lambda: not windows("--name", "Lapsa"))

    def move_clock(self, minutes):
        """Sets Lapsa's clock ahead of the real one."""
        fresh = self.clock.with_suffix(".new")
        fresh.write_text(f"+{minutes * 60}\n")
        fresh.rename(self.clock)

    def end(self):
        for process in reversed(self.started):
            process.send_signal(signal.SIGTERM)
        for process in reversed(self.started):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


def lapsa_panel():
    """The left and top edges of Lapsa's panel. Its window is larger: it includes the shadow."""
    for window in windows("--class", "lapsa"):
        x, y, width, height = place_of(window)
        if width >= PANEL[0] and height >= PANEL[1]:
            return x + width - PANEL[0], y
    return None


def open_folder(session, folder, top):
    """Shows a folder in the file manager, in the left half of the screen."""
    before = windows("--class", "thunar")
    session.start("Thunar", str(folder))
    window = wait_until("the file manager", lambda: [new for new in windows("--class", "thunar") if new not in before])
    output("xdotool", "windowmove", "--sync", window[0], "26", str(top))
    time.sleep(1)  # its icons
    return place_of(window[0])


def click_beside_icons(film, folder):
    left, top, width, height = folder
    film.move(left + width - 50, top + height - 90)
    film.click()
    time.sleep(0.3)


def open_panel(film):
    film.caption = "Lapsa is an icon in the tray"
    film.shoot(1200)
    film.move(SCREEN[0] - 14, 16)
    film.click()
    panel = wait_until("the panel", lapsa_panel)
    time.sleep(0.6)
    film.shoot(900)
    return panel


def drop_everything(film, downloads, panel):
    film.caption = "Drop files or folders on its panel"
    click_beside_icons(film, downloads)
    output("xdotool", "key", "ctrl+a")
    time.sleep(0.3)
    film.shoot(600)
    left, top = downloads[:2]
    film.move(left + 60, top + 50, 4)
    output("xdotool", "mousedown", "1")
    film.move(left + 90, top + 60, 3)
    film.move(panel[0] + PANEL[0] // 2, panel[1] + 150, 9)
    film.shoot(600)
    output("xdotool", "mouseup", "1")
    film.caption = "Each gets a lifespan, by its type"
    for _ in range(8):
        time.sleep(0.15)
        film.shoot(150)
    click_beside_icons(film, downloads)
    film.shoot(2200)


def lock_one(session, film):
    film.caption = "1 h 55 min later: a warning for what is due"
    session.move_clock(115)
    bubbles = wait_until("the warnings", lambda: two_bubbles(windows("--class", "xfce4-notifyd")))
    time.sleep(1.5)
    film.shoot(2600)
    film.caption = "“Lock” keeps a file"
    x, y, width, height = max(map(place_of, bubbles), key=lambda place: place[1])
    film.move(x + width - 57, y + height - 31)
    film.click()
    wait_until("the lock", lambda: '"locked" : true' in (session.data / "state.json").read_text(encoding="utf-8"))
    time.sleep(1.2)
    film.shoot(2400)


def lose_the_other(session, film):
    film.caption = "5 min later: the other one has moved to Recovery"
    session.move_clock(121)
    recovery = session.data / "Recovery"
    wait_until("the move", lambda: recovery.is_dir() and any(recovery.iterdir()))
    time.sleep(1.5)
    film.shoot(2600)
    film.caption = "Changed your mind? It waits there for 24 hours"
    open_folder(session, recovery, 340)
    film.shoot(4000)


def play(session, film, program):
    downloads = open_folder(session, session.home / "Downloads", 62)
    session.start_lapsa(program)
    panel = open_panel(film)
    drop_everything(film, downloads, panel)
    lock_one(session, film)
    lose_the_other(session, film)


def two_bubbles(bubbles):
    return bubbles if len(bubbles) == 2 else None


def main():
    program, picture = map(os.path.abspath, sys.argv[1:])
    with tempfile.TemporaryDirectory(prefix="lapsa-film.") as folder:
        session = Session(folder, Path(program).parents[1] / "share")
        film = Film()
        try:
            session.start_desktop()
            play(session, film, program)
        finally:
            session.end()
        film.save(picture)


if __name__ == "__main__":
    main()
