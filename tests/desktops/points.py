# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The points of the tour, in their order. Each gives what was seen, or fails with the reason."""

import signal
import sys
import time
from pathlib import Path
from subprocess import CalledProcessError

from buttons import shown_button
from program import NAME
from screen import (black_share, brightness, changed_box, click, do, drag, key, middle, picture, save, stroke_colour)
from session import NotThere, on_the_bus, wait_until

NEIGHBOUR = str(Path(__file__).with_name("neighbour.py"))
POINTS = {}


def point(name):
    def note(function):
        POINTS[name] = function
        return function
    return note


def inside(place, area):
    """Up to a pixel: with a scale of 1.5, half a pixel is rounded up."""
    x, y, width, height = place[:4]
    return (x >= area[0] and y >= area[1] and x + width <= area[0] + area[2] + 1 and y + height <= area[1] + area[3] + 1)


@point("the icon is in the taskbar")
def icon_there(tour):
    before, after, box = tour.lapsa.start()
    tour.colour = stroke_colour(before, after, box)
    return f"seen: {box[2] - box[0]} x {box[3] - box[1]} pixels"


@point("the icon has its neighbours' colour")
def icon_colour(tour):
    tour.lapsa.end()
    before, bar = picture(), tour.windows.bar()
    tour.session.start("neighbour", sys.executable, NEIGHBOUR)
    box = tour.lapsa.new_icon(before, bar)
    neighbour = stroke_colour(before, picture(), box)
    tour.session.end("neighbour")
    tour.lapsa.start()
    difference = max(abs(a - b) for a, b in zip(tour.colour, neighbour))
    text = f"#{'%02x%02x%02x' % tour.colour} beside #{'%02x%02x%02x' % neighbour}"
    assert difference <= 60, text
    return f"seen: {text}"


@point("a click opens the panel at the icon, inside the work area")
def panel_at_icon(tour):
    panel = tour.lapsa.open_panel()
    place, area = panel[:4], tour.windows.work_area()
    save(tour.picture)
    assert inside(place, area), f"panel {place} outside of the work area {area}"
    x = middle(tour.lapsa.icon)[0]
    distance = max(place[0] - x, x - place[0] - place[2], 0)
    assert distance == 0, f"panel {place} is {distance} pixels beside the icon at {x}"
    return f"seen: {place[2]} x {place[3]} at {place[0]}, {place[1]}"


@point("the panel has no button in the taskbar")
def no_taskbar_button(tour):
    panel = tour.lapsa.open_panel()
    states = tour.windows.states(panel[4])
    missing = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"} - states
    assert not missing, f"without {', '.join(sorted(missing))}"
    return "seen: skips taskbar and pager"


@point("the next click closes the panel")
def next_click_closes(tour):
    tour.lapsa.open_panel()
    tour.lapsa.click_icon()
    wait_until("the panel's end", lambda: not tour.lapsa.panel(), 5)
    time.sleep(1)
    assert not tour.lapsa.panel(), "the panel came back"
    return "seen"


def open_menu(tour):
    before = tour.windows.pop_ups()
    tour.lapsa.click_icon(button=3)
    wait_until("the menu", lambda: tour.windows.pop_ups() - before, 6)
    time.sleep(0.5)


@point("a right click opens the menu")
def menu(tour):
    open_menu(tour)
    key("Escape")
    return "seen"


def preferences_window(tour):
    return tour.lapsa.windows("Preferences")


@point("an entry of the menu opens the preferences")
def preferences(tour):
    # The taskbar draws the menu; which of its rows is the entry differs, so rows are tried from the top.
    for row in range(1, 6):
        open_menu(tour)
        key(*["Down"] * row, "Return")
        try:
            wait_until("the preferences", lambda: preferences_window(tour), 2)
            break
        except NotThere:
            assert not tour.lapsa.ended(), f"row {row} ended Lapsa before the preferences were found"
            tour.lapsa.be_at_rest()
    else:
        raise AssertionError("no row of the menu opens the preferences")
    place = preferences_window(tour)[0][:4]
    key("ctrl+w")
    wait_until("the end of the preferences", lambda: not preferences_window(tour), 5)
    return f"seen: {place[2]} x {place[3]}, closed with Ctrl+W"


def file_in_file_manager(tour, name):
    """A file and where its icon is: what changes in the file manager's window when the file comes."""
    folder = tour.session.home / f"folder-{name}"
    folder.mkdir()
    tour.desktop.open_folder(folder)
    window_class = tour.desktop.file_manager_class
    wait_until("the file manager's window", lambda: tour.windows.of_class(window_class), 20)
    time.sleep(3)
    x, y, width, height, window = max(tour.windows.of_class(window_class), key=lambda found: found[2] * found[3])
    do("windowsize", window.id, 520, 420)
    do("windowmove", window.id, 60, 300)
    time.sleep(1)
    x, y, width, height, window = max(tour.windows.of_class(window_class), key=lambda found: found[2] * found[3])
    before = picture()
    path = folder / f"{name}.txt"
    path.write_text("text\n")
    # The place below the tool bars and above the status bar, which counts the files.
    area = (x, y + 60, x + width, y + height - 40)
    box = wait_until("the file's icon", lambda: changed_box(before, picture(), area), 10)
    time.sleep(1)
    box = changed_box(before, picture(), area) or box
    # The icon stands at the top of what is drawn for the file, its name below.
    return path, (min((box[0] + box[2]) // 2, box[0] + 40), box[1] + min(20, (box[3] - box[1]) // 2)), window


def close_file_manager(tour):
    for found in tour.windows.of_class(tour.desktop.file_manager_class):
        try:
            do("windowclose", found[4].id)
        except CalledProcessError:  # it went with the one before it
            continue
        time.sleep(0.3)
    if "file-manager" in tour.session.processes:
        tour.session.end("file-manager", seconds=3)


@point("a file dropped from the desktop's file manager")
def drop(tour):
    try:
        path, icon, _ = file_in_file_manager(tour, "dropped")
        panel = tour.lapsa.open_panel()
        # On the drop zone, which is at the top.
        drag(icon, (panel[0] + panel[2] // 2, panel[1] + panel[3] // 5))
        wait_until("the dropped file on the list", lambda: tour.lapsa.lists(path), 6)
        return f"seen: from {tour.desktop.file_manager[0]}"
    finally:
        close_file_manager(tour)


@point("the hot key adds the selected file")
def hot_key(tour):
    try:
        path, icon, _ = file_in_file_manager(tour, "selected")
        click(*icon)
        time.sleep(0.5)
        key("super+shift+y")
        wait_until("the selected file on the list", lambda: tour.lapsa.lists(path), 6)
        wait_until("the panel", tour.lapsa.panel, 5)
        # An icon of the desktop's, of its clipboard for example, may have come beside it.
        tour.lapsa.find_icon(while_open=True)
        return f"seen: from {tour.desktop.file_manager[0]}"
    finally:
        close_file_manager(tour)


@point("a warning, and its button locks the file")
def warning(tour):
    path = tour.session.home / "warned.txt"
    path.write_text("text\n")
    before = picture()
    tour.lapsa.add(path, "2min")
    screen = tour.windows.root.get_geometry()
    area = (screen.width // 3, 40, screen.width, screen.height - 40)
    box = wait_until("the warning", lambda: changed_box(before, picture(), area), 75)
    time.sleep(2)
    box = changed_box(before, picture(), area)
    assert box, "the warning went at once"
    spot = wait_until("a button Lock in the warning", lambda: shown_button("Lock", box), 8)
    click(*spot)
    wait_until("the lock", lambda: locked(tour, path), 5)
    # A notification daemon may now have an icon of its own.
    tour.lapsa.find_icon()
    return f"seen: pressed at {spot[0]}, {spot[1]}"


def locked(tour, path):
    return any(item.get("locked") for item in tour.lapsa.items() if str(path) in map(str, item.values()))


def inner(panel):
    x, y, width, height = panel[:4]
    return picture((x + width // 4, y + height // 4, x + width * 3 // 4, y + height * 3 // 4))


@point("dark and light are followed live")
def dark_and_light(tour):
    panel = tour.lapsa.open_panel()
    light = brightness(inner(panel))
    tour.set(tour.desktop.set_dark, True)
    try:
        wait_until(f"a dark panel (it is {light:.0f} of 255 bright)", lambda: brightness(inner(panel)) < 110, 8)
        dark = brightness(inner(panel))
    finally:
        tour.desktop.set_dark(False)
    wait_until("a light panel again", lambda: brightness(inner(panel)) > 150, 8)
    return f"seen: brightness {light:.0f}, {dark:.0f} and back"


def at_scale(tour, percent):
    tour.set(tour.desktop.set_text_scale, percent)
    try:
        tour.lapsa.end()
        tour.lapsa.start()
        place, area = tour.lapsa.open_panel()[:4], tour.windows.work_area()
        assert inside(place, area), f"panel {place} outside of the work area {area}"
        assert place[2] > 430, f"the panel is {place[2]} wide, as at 100 %"
        return f"seen: {place[2]} x {place[3]} in {area[2]} x {area[3]}"
    finally:
        tour.lapsa.be_at_rest()
        tour.lapsa.end()
        tour.desktop.set_text_scale(100)
        time.sleep(1)
        tour.lapsa.start()


@point("150 %")
def scale_150(tour):
    return at_scale(tour, 150)


@point("200 %")
def scale_200(tour):
    return at_scale(tour, 200)


@point("the taskbar is killed and comes back")
def bar_killed(tour):
    tour.session.end("bar", signal.SIGKILL)
    time.sleep(2)
    tour.desktop.start_bar()
    wait_until("the tray", lambda: on_the_bus("org.kde.StatusNotifierWatcher"), 60)
    time.sleep(4)
    tour.lapsa.find_icon()
    tour.lapsa.open_panel()
    return "seen: the icon is there and opens the panel"


@point("compositing ends and begins while the panel is open")
def compositing(tour):
    if not tour.windows.composited():
        return "not possible: nobody owns _NET_WM_CM_S0, so there is no compositing to end"
    panel = tour.lapsa.open_panel()
    x, y, width, height = panel[:4]
    shares = []
    try:
        for on in (False, True):
            tour.set(tour.desktop.set_compositing, on)
            time.sleep(3)
            frames = [(x, y, x + width, y + 4), (x, y + height - 4, x + width, y + height),
                      (x, y, x + 4, y + height), (x + width - 4, y, x + width, y + height)]
            shares.append(max(black_share(picture(frame)) for frame in frames))
    finally:
        tour.desktop.set_compositing(True)
    worst = max(shares)
    assert worst < 0.5, f"a black frame around the panel: {worst:.0%} of an edge is black"
    assert tour.lapsa.panel(), "the panel is gone"
    return f"seen: at most {worst:.0%} of an edge is black"


@point("a second start opens the panel")
def start_again(tour):
    status = tour.lapsa.start_again()
    assert status == 0, f"exit status {status}"
    wait_until("the panel", tour.lapsa.panel, 5)
    return "seen"


@point("the end of the session")
def end_of_session(tour):
    """The window manager, the bar and then the display go away, as when the user logs out."""
    state = Path(tour.session.home) / ".local/share/Lapsa/state.json"
    assert on_the_bus(NAME), "Lapsa does not run"
    process = tour.session.processes["lapsa"]
    tour.session.end("Xvfb")
    try:
        process.wait(10)
    except Exception as failure:
        raise NotThere("Lapsa's end after the display's") from failure
    assert state.exists() and state.read_text().rstrip().endswith(("]", "}")), "the list is not whole"
    return "seen: ended with the display, the list is whole"
