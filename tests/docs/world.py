# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""A home and a session of one command's own: a folder, a bus on which only the Trash's reader is started, and Lapsa."""
import json
import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

PATIENCE = 30  # seconds, for a machine under load
BUS = """<busconfig><type>session</type><listen>unix:dir={folder}</listen><auth>EXTERNAL</auth>
<servicedir>{folder}/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""


def until(what, condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(f"does not come about: {what}")
        time.sleep(0.02)


class World:
    def __init__(self, program):
        self.program = program
        self.started = []

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="lapsa-docs."))
        self.home = self.folder / "home"
        self.data = self.home / ".local/share/Lapsa"
        for name in ("home/Downloads", "runtime", "programs", "services"):
            (self.folder / name).mkdir(parents=True)
        (self.folder / "runtime").chmod(0o700)
        (self.folder / "programs/lapsa").symlink_to(self.program)
        (self.folder / "programs/lapsactl").symlink_to(self.program.parent / "lapsactl")
        for service in Path("/usr/share/dbus-1/services").glob("org.gtk.vfs.*.service"):
            (self.folder / "services" / service.name).symlink_to(service)
        self.file = self.home / "Downloads/report.zip"
        self.file.write_text("the report")
        self.environment = {
            "HOME": str(self.home), "PATH": f"{self.folder}/programs:{os.environ['PATH']}", "LC_ALL": "C.UTF-8",
            "XDG_RUNTIME_DIR": f"{self.folder}/runtime", "QT_QPA_PLATFORM": "offscreen", "GVFS_DISABLE_FUSE": "1",
            "GSETTINGS_BACKEND": "memory", "XDG_CURRENT_DESKTOP": "XFCE", "XDG_SESSION_TYPE": "x11",
            **{name: text for name, text in os.environ.items() if name.endswith("SAN_OPTIONS")}}
        (self.folder / "bus.conf").write_text(BUS.format(folder=self.folder))
        bus = self.start(["dbus-daemon", "--nofork", "--print-address", f"--config-file={self.folder}/bus.conf"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        return self

    def __exit__(self, *failure):
        for process in reversed(self.started):
            process.terminate()
        for process in self.started:
            try:
                process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
            if process.stdout:
                process.stdout.close()
        # The readers that the bus has started end with it, and may still be writing.
        until("the end of the session", self.removed)

    def removed(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        return not self.folder.exists()

    def start(self, words, **options):
        process = subprocess.Popen(words, cwd=self.home, env=self.environment, stdin=subprocess.DEVNULL, **options)
        self.started.append(process)
        return process

    def owned(self, name):
        return subprocess.run(["gdbus", "wait", "--session", "--timeout", "1", name], env=self.environment,
                              check=False, capture_output=True).returncode == 0

    def shell(self, command):
        """What the command says; it has to succeed."""
        done = subprocess.run(["bash", "-c", command], cwd=self.home, env=self.environment, timeout=PATIENCE,
                              check=False, stdin=subprocess.DEVNULL, capture_output=True, text=True)
        assert done.returncode == 0, f"status {done.returncode}: {done.stderr.strip()}"
        return done.stdout

    # ---- Lapsa

    def start_lapsa(self, command="lapsa"):
        lapsa = self.start(["bash", "-c", f"exec {command}"])
        until("Lapsa on the bus", lambda: self.owned("org.lapsa.Lapsa"))
        until("its files", (self.data / "recovery.json").exists)
        return lapsa

    def end(self, process):
        process.terminate()
        assert process.wait(PATIENCE) == 0, f"Lapsa ended with {process.returncode}"

    def expire(self, **settings):
        """Lapsa disposes of the report as the settings say."""
        self.end(self.start_lapsa())
        stored = json.loads((self.data / "settings.json").read_text())
        assert set(settings) <= set(stored)
        (self.data / "settings.json").write_text(json.dumps({**stored, **settings}))
        (self.data / "state.json").write_text(json.dumps([{
            "addedAt": "2026-03-01T12:00:00Z", "displayName": "report.zip", "expiresAt": "2026-03-01T14:00:00Z",
            "fiveMinuteWarningSent": False, "id": "1", "locked": False, "path": str(self.file)}]))
        lapsa = self.start_lapsa()
        until("the report on its way", lambda: not self.file.exists())
        self.end(lapsa)

    def start_notifications(self):
        # The server's own choice of a number, told when it answers.
        display = self.start(["Xvfb", "-displayfd", "1", "-nolisten", "tcp"], stdout=subprocess.PIPE, text=True,
                             stderr=subprocess.DEVNULL)
        self.environment["DISPLAY"] = ":" + display.stdout.readline().strip()
        self.start(["dunst"], stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        until("the notifications", lambda: self.owned("org.freedesktop.Notifications"))
