# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The points of the tour that need files: dropped, selected, warned of."""

import time

from points import point
from screen import changed_box, click, do, drag, key, picture
from session import wait_until


def file_in_file_manager(tour, name):
    """A file and where its icon is: what changes in the file manager's window when the file comes."""
    folder = tour.session.home / f"folder-{name}"
    folder.mkdir()
    tour.desktop.open_folder(folder)
    window_class = tour.desktop.file_manager_class
    wait_until("the file manager's window", lambda: tour.windows.of_class(window_class), 20)
    time.sleep(3)
    x, y, width, height, window = max(tour.windows.of_class(window_class), key=lambda found: found[2] * found[3])
    tour.windows.put(window, 60, 300, 520, 420)
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
        tour.windows.close(found[4])
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
    tour.desktop.hot_key_is_possible()
    try:
        path, icon, _ = file_in_file_manager(tour, "selected")
        click(*icon)
        time.sleep(0.5)
        key("super+shift+y")
        wait_until("the panel", tour.lapsa.panel, 6)
        wait_until("the selected file on the list, as the panel did,", lambda: tour.lapsa.lists(path), 6)
        return f"seen: from {tour.desktop.file_manager[0]}"
    finally:
        close_file_manager(tour)
        # An icon of the desktop's, of its clipboard for example, may have come beside Lapsa's.
        tour.lapsa.end()
        tour.lapsa.start()


@point("a warning, and its button locks the file")
def warning(tour):
    path = tour.session.home / "warned.txt"
    path.write_text("text\n")
    # The pointer on an icon shows its tool tip.
    do("mousemove", 20, 400)
    time.sleep(1)
    before = picture()
    tour.lapsa.add(path, "2min")
    width, height = tour.windows.size()
    area = (width // 3, 40, width, height - 40)
    box = wait_until("the warning", lambda: changed_box(before, picture(), area), 75)
    time.sleep(2)
    box = changed_box(before, picture(), area)
    assert box, "the warning went at once"
    pressed = tour.desktop.press_lock(box, tour.windows)
    wait_until("the lock", lambda: locked(tour, path), 5)
    # A notification daemon may now have an icon of its own, and Lapsa's looks different while the panel is open.
    tour.lapsa.end()
    tour.lapsa.start()
    return f"seen: {pressed}"


def locked(tour, path):
    return any(item.get("locked") for item in tour.lapsa.items() if str(path) in map(str, item.values()))
