# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The plan of the house: which room may use which.

A link line may name fewer rooms than the plan allows, never more. A new arrow is drawn here first.
"""

FILES = {"copy", "removal", "io"}
INTERFACE = {"dialogs", "widgets", "theme", "l10n"}

MAY_USE = {
    "base": set(),

    # The trash is reached through FileBatch only.
    "io": {"base"},
    "removal": {"io", "base"},
    "copy": {"removal", "io", "base"},
    "trash": {"io", "base"},
    "filesystem": {"trash", "base"} | FILES,

    "platform": {"base"},
    "process": {"base"},
    "x11": {"platform", "base"},
    "portal": {"platform", "base"},
    "clipboard": {"x11", "platform", "base"},
    "selection": {"clipboard", "x11", "platform", "base"},
    "tray": {"x11", "platform", "base"},
    "hotkeys": {"x11", "portal", "platform", "base"},
    "session": {"x11", "portal", "process", "platform", "base"},
    "freedesktop": {"selection", "tray", "hotkeys", "session", "x11", "platform", "base"},

    # Threads, and the text of the mount table.
    "lanes": {"io", "platform", "base"},

    "model": {"lanes", "filesystem", "io", "platform", "base"},
    "disposal": {"model", "lanes", "filesystem", "platform", "base"} | FILES,
    "engine": {"disposal", "model", "lanes", "filesystem", "platform", "base"} | FILES,

    # What other programs of the session may ask; the bus is its only facility of a desktop.
    "scripting": {"engine", "model", "removal", "io", "platform", "base"},

    # What the controls look like and say; none of these knows the model or the engine.
    "theme": {"platform", "base"},
    "l10n": {"base"},
    "widgets": {"theme", "l10n", "platform", "base"},
    "dialogs": {"widgets", "theme", "l10n", "lanes", "io", "platform", "base"},

    # What the rows of two surfaces share.
    "rows": {"widgets", "theme", "l10n", "disposal", "base"},

    # The surfaces never meet.
    "panel": {"rows", "engine", "disposal", "model", "lanes", "io", "platform", "base"} | INTERFACE,
    "preferences": {"engine", "model", "lanes", "io", "platform", "base"} | INTERFACE,
    "recovery": {"rows", "engine", "disposal", "model", "lanes", "io", "platform", "base"} | INTERFACE,

    # It wires everything, but only the program itself makes the real facilities.
    "desktop": {"panel", "preferences", "recovery", "engine", "model", "lanes", "io", "platform", "base"} | INTERFACE,
}

# The program: desktop/LapsaApp.cpp.
PROGRAM = "lapsa"
PROGRAM_MAY_USE = set(MAY_USE) | {"resources"}

# The command for scripts, control/: a client of the bus, beside the house.
CONTROL = "lapsactl"
CONTROL_MAY_USE = {"l10n", "platform", "base"}
CONTROL_LIBRARIES = {"Qt6::Core", "Qt6::DBus"}

# Rooms that run without a display, a session bus or a window, and the libraries that they may link besides.
WITHOUT_DESKTOP = {"base", "io", "removal", "copy", "trash", "filesystem", "platform", "process", "lanes", "model", "disposal", "engine"}
CORE = {"Qt6::Core", "Threads::Threads", "simdjson::simdjson"}
# Headers that must not be found there.
DESKTOP_HEADERS = ("QWidget", "QColor", "QDBusConnection")

# Test programs of these folders link none of the libraries of a desktop.
CORE_TESTS = ("tests/base/", "tests/filesystem/", "tests/model/", "tests/engine/", "tests/faults/", "tests/soak/")
DESKTOP_LIBRARIES = r"libQt6(Gui|Widgets|DBus|Svg)\b|libxcb|libX11"
