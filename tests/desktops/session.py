# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The ground that a desktop stands on: an X server, buses, a home and a runtime folder that are nobody else's."""

import os
import select
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>{type}</type><listen>unix:dir={folder}</listen><auth>EXTERNAL</auth>{services}
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
"""
# What a desktop sets for its own programs must not come from the machine's.
FOREIGN = ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "XAUTHORITY", "SESSION_MANAGER",
           "AT_SPI_BUS_ADDRESS", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "XDG_DATA_DIRS",
           "XDG_CONFIG_DIRS", "NO_AT_BRIDGE", "LANGUAGE", "DESKTOP_STARTUP_ID")


class NotThere(Exception):
    """What was waited for did not come; the text says what."""


class NotPossible(Exception):
    """The desktop does not allow what was tried; the text is the reason that it gives."""


def wait_until(what, condition, seconds=10):
    deadline = time.monotonic() + seconds
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise NotThere(f"{what} did not come within {seconds} s")
        time.sleep(0.05)
    return result


def output(*command, seconds=20):
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False, timeout=seconds)
    except subprocess.TimeoutExpired:
        return ""
    return done.stdout.strip()


class Session:
    """Processes are ended by their ids, in the opposite order of their start."""

    def __init__(self, name, logs, screen="1280x900", activated=(), environment=None):
        self.processes = {}
        # What the programs on a nested compositor have instead of the outer display.
        self.inner = {}
        self.folder = Path(tempfile.mkdtemp(prefix=f"lapsa-{name}."))
        self.logs = logs / name
        shutil.rmtree(self.logs, ignore_errors=True)
        self.logs.mkdir(parents=True)
        self.home = self.folder / "home"
        self.make_environment(environment or {})
        os.environ.clear()
        os.environ.update(self.environment)
        os.environ["DISPLAY"] = ":" + self.announced(
            "Xvfb", ["Xvfb", "-displayfd", "{}", "-screen", "0", screen + "x24", "-nolisten", "tcp", "-noreset"])
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = self.bus("system", ())
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.bus("session", activated)

    def make_environment(self, own):
        for folder in (".config", ".cache", ".local/share", ".local/state", "Desktop", "Downloads"):
            (self.home / folder).mkdir(parents=True)
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700)
        self.environment = {name: value for name, value in os.environ.items() if name not in FOREIGN}
        self.environment.update({
            "HOME": str(self.home), "XDG_CONFIG_HOME": f"{self.home}/.config", "XDG_CACHE_HOME": f"{self.home}/.cache",
            "XDG_DATA_HOME": f"{self.home}/.local/share", "XDG_STATE_HOME": f"{self.home}/.local/state",
            "XDG_RUNTIME_DIR": str(runtime), "XDG_SESSION_TYPE": "x11", "LC_ALL": "C.UTF-8", "LANG": "C.UTF-8",
            "LIBGL_ALWAYS_SOFTWARE": "1", "GTK_USE_PORTAL": "0", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **own})

    def bus(self, kind, activated):
        folder = self.folder / kind
        services = folder / "services"
        services.mkdir(parents=True)
        for name in activated:
            source = Path(f"/usr/share/dbus-1/services/{name}.service")
            if source.exists():
                shutil.copy(source, services)
        configuration = folder / "bus.conf"
        configuration.write_text(BUS.format(type=kind, folder=folder,
                                            services=f"<servicedir>{services}</servicedir>"))
        return self.announced(f"{kind}-bus", ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
                                              "--print-address={}"])

    def announced(self, name, command):
        """Starts a program that writes one line when it is ready, and gives that line."""
        reading, writing = os.pipe()
        self.start(name, *[part.format(writing) if "{}" in part else part for part in command], pass_fds=(writing,))
        os.close(writing)
        line = b""
        while not line.endswith(b"\n"):
            if not select.select([reading], [], [], 15)[0] or not (part := os.read(reading, 256)):
                raise NotThere(f"{name}, which did not start,")
            line += part
        os.close(reading)
        return line.decode().strip()

    def start(self, name, *command, environment=None, **options):
        with open(self.logs / f"{name}.log", "ab") as log:
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True,
                                       env={**self.for_programs(), **(environment or {})}, cwd=self.home, **options)
        self.processes[name] = process
        return process

    def for_programs(self):
        return {**os.environ, **self.inner}

    def running(self, name):
        return name in self.processes and self.processes[name].poll() is None

    def end(self, name, how=signal.SIGTERM, seconds=10):
        """Whether it ended in time, by itself after the signal."""
        process = self.processes.pop(name)
        if process.poll() is None:
            process.send_signal(how)
        try:
            process.wait(seconds)
            return True
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            return False

    def close(self):
        for name in reversed(list(self.processes)):
            self.end(name, seconds=3)
        shutil.rmtree(self.folder, ignore_errors=True)


def on_the_bus(name):
    return "true" in output("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                            "--method", "org.freedesktop.DBus.NameHasOwner", name)
