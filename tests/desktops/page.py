# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Writes the page of what was seen."""

import json

HEAD = """# Desktops

`tools/desktops` starts each desktop in a virtual display, with a home folder, a runtime folder and buses of its own, and
runs the same tour with Lapsa on each: with a real pointer and real keys. It looks at the screen, at the list and at the
processes. This page is what it wrote; nothing in the table is entered by hand. Wayland's compositors run in a window of the
virtual display, so that the pointer, the keys and the pictures are the same as on X11; Lapsa runs under XWayland there.

- **seen**: the point works; the text says what was measured.
- **fails**: it does not, or the tour did not find what it looked for; the text says which.
- **not possible**: the desktop does not allow it; the reason is what the desktop answers.
- **not tried**: the tour does not drive this point on this desktop yet.

```sh
tools/desktops                  # all of them; installs them
tools/desktops --only xfce      # one; the others keep what was seen last
```
"""


def known(logs, desktop):
    file = logs / f"{desktop.name}.json"
    return json.loads(file.read_text()) if file.exists() else None


def write(page, logs, desktops, points):
    visited = [(desktop, result) for desktop in desktops if (result := known(logs, desktop))]
    lines = [HEAD, "| | " + " | ".join(desktop.title for desktop, _ in visited) + " |",
             "|---|" + "---|" * len(visited)]
    for name in points:
        answers = (result["points"].get(name, "not tried") for _, result in visited)
        lines.append(f"| {name} | " + " | ".join(answer.replace("|", "/").replace("\n", " ") for answer in answers) + " |")
    lines += ["", "Other desktops were not tried by this tour.", "", "## Versions and pictures", ""]
    for desktop, result in visited:
        lines += [f"### {desktop.title}", "", f"{result['versions']}", ""]
        if (page.parent / "desktops" / f"{desktop.name}.png").exists():
            lines += [f"![{desktop.title} with Lapsa's panel open](desktops/{desktop.name}.png)", ""]
    page.write_text("\n".join(lines).rstrip("\n") + "\n")
