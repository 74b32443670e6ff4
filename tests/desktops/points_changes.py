# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The points of the tour that change the desktop under Lapsa, and its end."""

import time
from pathlib import Path

from points import inside, point
from program import NAME
from screen import black_share, brightness, key, picture, save
from session import NotPossible, NotThere, on_the_bus, wait_until


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
    tour.lapsa.need_icon()
    tour.desktop.kill_bar()
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
        raise NotPossible(tour.windows.why_not_composited)
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


@point("the icon in the dash opens the panel")
def dash(tour):
    tour.desktop.use_dash(right_click=False)
    wait_until("the panel", tour.lapsa.panel, 8)
    if not tour.lapsa.icon:
        time.sleep(1)
        save(tour.picture)
    return "seen"


@point("an action of the icon in the dash opens the preferences")
def dash_actions(tour):
    tour.desktop.use_dash(right_click=True)
    wait_until("the preferences", lambda: tour.lapsa.windows("Preferences"), 8)
    key("ctrl+w")
    wait_until("the end of the preferences", lambda: not tour.lapsa.windows("Preferences"), 5)
    return "seen"


@point("the end of the session")
def end_of_session(tour):
    """The window manager, the bar and then the display go away, as when the user logs out."""
    state = Path(tour.session.home) / ".local/share/Lapsa/state.json"
    assert on_the_bus(NAME), "Lapsa does not run"
    process = tour.session.processes["lapsa"]
    tour.desktop.end_display()
    try:
        process.wait(10)
    except Exception as failure:
        raise NotThere("Lapsa's end after the display's") from failure
    assert state.exists() and state.read_text().rstrip().endswith(("]", "}")), "the list is not whole"
    return "seen: ended with the display, the list is whole"
