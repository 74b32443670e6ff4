#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""idle.py [--seconds N] PROGRAM: what the running program costs beside its work, as a table in Markdown.

Starts PROGRAM with a home of its own on the display and session bus it finds (tests/ui/on-display makes both), and
looks at its memory with the panel never opened, open, and closed again, and at its use of the processor while closed.
"""

import argparse
import json
import os
import subprocess
import tempfile
import time
from datetime import datetime, timedelta, timezone
from pathlib import Path

PATIENCE = 60
MEMORY_WANTED = 30  # MB, with the panel open
TICKS_WANTED = 1
BUS_NAME = "org.lapsa.Lapsa"
# The program's own defaults, except for the panel, which must close on Escape.
SETTINGS = {"autoCleanFolders": [], "defaultExpirationMinutes": 120, "enableExpiryNotifications": True,
            "fileTypeRules": [], "keepPanelOpen": False, "notifyBeforeMinutes": 5, "pauseAllCountdowns": False,
            "recoveryRetentionHours": 24, "theme": "system", "useRecoveryWindow": True, "useTrash": True}


def wait_until(condition, what):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise SystemExit(f"idle.py: {what} does not come")
        time.sleep(0.05)


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()


def on_the_bus():
    return "true" in output("dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                            "org.freedesktop.DBus.NameHasOwner", f"string:{BUS_NAME}")


def windows(pid):
    return output("xdotool", "search", "--onlyvisible", "--pid", str(pid)).split()


def panel_is_active(pid):
    active = output("xdotool", "getactivewindow")
    return active != "" and output("xdotool", "getwindowpid", active) == str(pid)


def ticks(pid):
    """What the process has used of the processor, in ticks of the kernel, of which there are 100 in a second."""
    fields = Path(f"/proc/{pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def settled(pid):
    """Waits until the process has used nothing for a second."""
    deadline = time.monotonic() + PATIENCE
    before, since = ticks(pid), time.monotonic()
    while time.monotonic() - since < 1 and time.monotonic() < deadline:
        time.sleep(0.1)
        if ticks(pid) != before:
            before, since = ticks(pid), time.monotonic()


def memory(pid):
    """Megabytes: the share that is this process's, the same without anybody to share the toolkit with, and the private
    part."""
    share = alone = private = 0
    toolkit = False
    for line in Path(f"/proc/{pid}/smaps").read_text(encoding="utf-8").splitlines():
        name, *values = line.split()
        if not name.endswith(":"):
            toolkit = "/libQt6" in line or "/qt6/" in line
        elif name == "Pss:":
            share += int(values[0])
            alone += 0 if toolkit else int(values[0])
        elif name == "Rss:" and toolkit:
            alone += int(values[0])
        elif name in ("Private_Clean:", "Private_Dirty:"):
            private += int(values[0])
    return [kilobytes * 1024 / 1e6 for kilobytes in (share, alone, private)]


def write_state(home, items):
    """Items that are due in a year."""
    data = home / ".local/share/Lapsa"
    data.mkdir(parents=True, mode=0o700)
    now = datetime.now(timezone.utc)
    added, expires = (moment.strftime("%Y-%m-%dT%H:%M:%SZ") for moment in (now, now + timedelta(days=365)))
    state = []
    folder = home / "files"
    folder.mkdir()
    for number in range(items):
        path = folder / f"report {number}.{('pdf', 'zip', 'txt', 'png')[number % 4]}"
        path.touch()
        state.append({"id": f"item-{number}", "path": str(path), "displayName": path.name, "addedAt": added,
                      "expiresAt": expires, "fiveMinuteWarningSent": False, "locked": False})
    (data / "settings.json").write_text(json.dumps(SETTINGS), encoding="utf-8")
    (data / "state.json").write_text(json.dumps(state), encoding="utf-8")


def measure(program, items, seconds):
    with tempfile.TemporaryDirectory() as folder:
        home = Path(folder)
        write_state(home, items)
        environment = os.environ | {"HOME": folder, "XDG_DATA_HOME": str(home / ".local/share"),
                                    "XDG_CONFIG_HOME": str(home / ".config"), "XDG_CACHE_HOME": str(home / ".cache")}
        with subprocess.Popen([program], env=environment) as process:
            try:
                yield from rows(process.pid, program, environment, items, seconds)
            finally:
                process.terminate()


def rows(pid, program, environment, items, seconds):
    wait_until(on_the_bus, "the program")
    wait_until(lambda: windows(pid), "the splash")
    wait_until(lambda: not windows(pid), "the end of the splash")
    settled(pid)
    yield memory_row("never opened", items, pid)

    subprocess.run([program], env=environment, check=True)
    wait_until(lambda: windows(pid) and panel_is_active(pid), "the panel")
    time.sleep(3)  # it ticks
    yield memory_row("open", items, pid, MEMORY_WANTED)

    output("xdotool", "key", "Escape")
    wait_until(lambda: not windows(pid), "the end of the panel")
    settled(pid)
    yield memory_row("closed again", items, pid)

    before = ticks(pid)
    time.sleep(seconds)
    used = ticks(pid) - before
    yield (f"processor while closed, {seconds} s", items, f"{used * 1000 // os.sysconf('SC_CLK_TCK')} ms", "", "",
           f"at most {TICKS_WANTED} tick of 10 ms", "met" if used <= TICKS_WANTED else "missed")


def memory_row(what, items, pid, wanted=None):
    share, alone, private = memory(pid)
    limit = f"at most {wanted} MB" if wanted else ""
    verdict = ("met" if alone <= wanted else "missed") if wanted else ""
    return (f"memory, panel {what}", items, f"{share:.1f} MB", f"{alone:.1f} MB", f"{private:.1f} MB", limit, verdict)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("program")
    options = parser.parse_args()
    print("| running program | items | PSS, or time | PSS with the toolkit to itself | private | target | |")
    print("|---|--:|--:|--:|--:|---|---|")
    for items in (10, 100000):
        for row in measure(os.path.abspath(options.program), items, options.seconds):
            print("| " + " | ".join(map(str, row)) + " |", flush=True)


if __name__ == "__main__":
    main()
