# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Finds buttons on the screen as a screen reader does; they are then pressed with the pointer."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402: the version has to be chosen first

DEEPEST = 20


def parts(node, depth=0):
    yield node
    if depth < DEEPEST:
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child:
                yield from parts(child, depth + 1)


def shown_button(name, area):
    """The middle of the button with that name inside of an area of the screen, None where there is none."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        try:
            program = desktop.get_child_at_index(index)
            # Lapsa's own rows have buttons with the same name.
            if not program or "lapsa" in program.get_name().lower():
                continue
            program.clear_cache()
            for part in parts(program):
                if part.get_name().replace("&", "") == name and part.get_role() == Atspi.Role.PUSH_BUTTON:
                    place = part.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
                    spot = place.x + place.width // 2, place.y + place.height // 2
                    if area[0] <= spot[0] < area[2] and area[1] <= spot[1] < area[3]:
                        return spot
        except (GLib.Error, AttributeError):  # a window that goes while it is read
            continue
    return None
