# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The points of the tour, in their order. Each gives what was seen, or fails with the reason."""

import sys
import time
from pathlib import Path

from screen import key, middle, picture, save, stroke_colour
from session import NotPossible, NotThere, wait_until

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
    tour.lapsa.need_icon()
    tour.colour = stroke_colour(before, after, box)
    return f"seen: {box[2] - box[0]} x {box[3] - box[1]} pixels"


def named(colour):
    return "#%02x%02x%02x" % colour


def contrast(one, other):
    """From 1 to 21, as the guidelines for accessible pages define it."""
    def light(colour):
        parts = [part / 255 for part in colour]
        linear = [part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]
    dark, bright = sorted((light(one), light(other)))
    return (bright + 0.05) / (dark + 0.05)


@point("the icon has its neighbours' colour")
def icon_colour(tour):
    tour.lapsa.need_icon()
    tour.lapsa.end()
    before, bar = picture(), tour.windows.bar()
    tour.session.start("neighbour", sys.executable, NEIGHBOUR)
    box = tour.lapsa.new_icon(before, bar)
    neighbour = stroke_colour(before, picture(), box)
    tour.session.end("neighbour")
    _, _, box = tour.lapsa.start()
    ground = picture().getpixel((box[0] - 1, middle(box)[1]))
    if not tour.desktop.recolours_icons:
        assert contrast(ground, tour.colour) >= 3, f"{named(tour.colour)} on {named(ground)}"
        raise NotPossible(f"the taskbar recolours no icons; Lapsa's is {named(tour.colour)} on {named(ground)}, "
                          f"its neighbour's {named(neighbour)}")
    difference = max(abs(a - b) for a, b in zip(tour.colour, neighbour))
    text = f"{named(tour.colour)} beside {named(neighbour)}"
    assert difference <= 60, text
    return f"seen: {text}"


@point("a click opens the panel at the icon, inside the work area")
def panel_at_icon(tour):
    panel = tour.lapsa.open_panel()
    place, area = panel[:4], tour.windows.work_area()
    save(tour.picture)
    assert inside(place, area), f"panel {place} outside of the work area {area}"
    tour.lapsa.need_icon()
    tour.windows.places_are_possible()
    x = middle(tour.lapsa.icon)[0]
    distance = max(place[0] - x, x - place[0] - place[2], 0)
    assert distance == 0, f"panel {place} is {distance} pixels beside the icon at {x}"
    return f"seen: {place[2]} x {place[3]} at {place[0]}, {place[1]}"


@point("the panel has no button in the taskbar")
def no_taskbar_button(tour):
    panel = tour.lapsa.open_panel()
    shown = tour.windows.shows_in_taskbar(panel[4])
    assert not shown, shown
    return f"seen: {tour.windows.without_button}"


@point("the next click closes the panel")
def next_click_closes(tour):
    tour.lapsa.open_panel()
    tour.lapsa.need_icon()
    tour.lapsa.click_icon()
    wait_until("the panel's end", lambda: not tour.lapsa.panel(), 5)
    time.sleep(1)
    assert not tour.lapsa.panel(), "the panel came back"
    return "seen"


def open_menu(tour):
    tour.lapsa.need_icon()
    before = tour.windows.before_menu()
    tour.lapsa.click_icon(button=3)
    wait_until("the menu", lambda: tour.windows.menu_since(before), 6)
    time.sleep(0.5)
    return tour.windows.menu_since(before)


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
        tour.desktop.choose_row(row, open_menu(tour))
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
