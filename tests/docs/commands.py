# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""Every command that the pages show: how it is run, or why it is only looked at."""
import os
from dataclasses import dataclass, field
from typing import Callable

from world import until


@dataclass(frozen=True)
class Run:
    """`play` gets the world and the command, and asserts what has to come of it."""

    play: Callable


@dataclass(frozen=True)
class Look:
    reason: str
    # Each tool of the command, with the question that it answers with its options; one of ours says them in its head.
    tools: dict = field(default_factory=dict)
    # Further words that the answers have to know.
    words: tuple = ()
    # What of ours makes the things that it names.
    files: tuple = ()
    may_be_missing: bool = False


# ---- What is run


def adds_a_file(world, command):
    lapsa = world.start_lapsa(command)
    state = world.data / "state.json"
    until("the file on the list", lambda: "Downloads/report.zip" in state.read_text().replace("\\/", "/"))
    world.end(lapsa)
    assert world.file.exists()


def starts(world, command):
    world.end(world.start_lapsa(command))


def shows_recovery(world, command):
    world.expire()
    assert "report.zip" in world.shell(command)


def shows_records(world, command):
    world.expire()
    shown = world.shell(command)
    for key in ("originalPath", "recoveryPath", "purgeAfter"):
        assert key in shown, f"no {key} in {shown}"


def takes_back(world, command):
    world.expire()
    world.shell(command)
    assert world.file.read_text() == "the report"


def shows_trash(world, command):
    world.expire(useRecoveryWindow=False)
    until("the file in the Trash", lambda: "report.zip" in world.shell(command))


def restores_from_trash(world, command):
    world.expire(useRecoveryWindow=False)
    until("the file in the Trash", lambda: "report.zip" in world.shell("gio trash --list"))
    world.shell(command)
    until("the file back", world.file.exists)
    assert world.file.read_text() == "the report"


def shows_birth_times(world, command):
    assert world.shell(command).endswith(f" {world.file}\n")


def acts(world, command):
    lapsa = world.start_lapsa()
    world.shell(command)
    assert lapsa.poll() is None, "Lapsa is gone"
    world.end(lapsa)


def quits(world, command):
    lapsa = world.start_lapsa()
    world.shell(command)
    assert lapsa.wait(60) == 0


def lists_by_lapsactl(world, command):
    lapsa = world.start_lapsa()
    said = world.shell(command)
    if " list" in command:
        assert said == ""
        world.shell(f"lapsactl add {world.file}")
        said = world.shell(command)
    assert said.endswith(f"  {world.file}\n"), said
    world.end(lapsa)


def locks_by_lapsactl(world, command):
    lapsa = world.start_lapsa(f"lapsa {world.file}")
    until("the file on the list", lambda: world.shell("lapsactl list"))
    world.shell(command)
    assert "  locked  " in world.shell("lapsactl list")
    world.end(lapsa)


def lists_recovered(world, command):
    world.expire()
    lapsa = world.start_lapsa()
    assert world.shell(command).endswith(f"  {world.file}\n")
    world.end(lapsa)


def puts_back(world, command):
    world.expire()
    lapsa = world.start_lapsa()
    assert world.shell(command) == f"{world.file}\n"
    assert world.file.read_text() == "the report"
    world.end(lapsa)


def tells_the_interface(world, command):
    lapsa = world.start_lapsa()
    said = world.shell(command)
    assert "interface org.lapsa.Lapsa1 {" in said and "PutBack(" in said
    world.end(lapsa)


def tells_whether_it_runs(world, command):
    assert world.shell(command) == "(false,)\n"
    lapsa = world.start_lapsa()
    assert world.shell(command) == "(true,)\n"
    world.end(lapsa)


def tells_its_number(world, command):
    lapsa = world.start_lapsa()
    assert str(lapsa.pid) in world.shell(command).split()
    world.end(lapsa)


def asks_notifications(world, command):
    world.start_notifications()
    assert "dunst" in world.shell(command)


def tells_the_folder(world, command):
    world.end(world.start_lapsa())
    assert os.path.samefile(world.shell(command).strip(), world.data)


def tells_the_session(world, command):
    assert world.shell(command) == "XFCE x11\n"


# ---- What is looked at

BUILDS = "builds, or installs what is missing; the tests of tools/try-fresh do that on a bare machine"
TAKES_LONG = "takes minutes to hours, and is run by hand and by .ci/run"
INSTALLS = "changes the machine; tools/package --check does it in a bare one"
INSTALLS_DESKTOPS = "installs whole desktops and takes minutes for each"
INSTALLS_FILE_MANAGERS = "installs all file managers; FileManagers_desktop_test asks those that are here"
INSTALLED = "writes into the real home; Installation_test installs into folders of its own"
CMAKE = {"cmake": ["bash", "-c", "cmake --help; cmake --install"]}
CTEST = {"ctest": ["ctest", "--help"]}
USER_MANAGER = {"reason": "the user manager wants a machine that was booted",
                "files": ("packaging/app-org.lapsa.Lapsa.service.in",), "may_be_missing": True}


def ours(tool, reason=TAKES_LONG):
    return Look(reason, {f"tools/{tool}": None})


TABLE = {
    "tools/run ~/Downloads/report.zip": ours("run", BUILDS),
    "tools/run other.pdf": ours("run", BUILDS),
    "build/release/lapsa other.pdf": Look("is what the line above it starts; LapsaApp_test hands files over so"),
    "tools/test": ours("test", BUILDS),
    "tools/test --preset asan -R Trash": ours("test"),
    "tools/test --preset clang": ours("test"),
    "tools/try-fresh --suite trixie test": ours("try-fresh"),
    "tools/test -R 'FileManager|UriList'": ours("test"),
    "tools/test -L 'hostile|services'": ours("test"),
    "tools/test -R '^(FileSystem|FileBatch|Trash|SystemLog|Language|UserFolders|DebouncedTask)'": ours("test"),
    "tools/file-managers": ours("file-managers", INSTALLS_FILE_MANAGERS),
    "tools/desktops": ours("desktops", INSTALLS_DESKTOPS),
    "tools/desktops --only xfce": ours("desktops", INSTALLS_DESKTOPS),
    "tools/package": ours("package", BUILDS),
    "sudo apt install ./build/package/lapsa_*.deb": Look(INSTALLS, {"apt": ["apt", "--help"]}, words=("install",)),
    "sudo apt remove lapsa": Look(INSTALLS, {"apt": ["apt", "--help"]}, words=("remove",)),
    "sudo apt purge lapsa": Look(INSTALLS, {"apt": ["apt-get", "--help"]}, words=("purge",)),
    "cmake --preset release -B build/install -DLAPSA_WERROR=OFF -DLAPSA_TESTS=OFF": Look(BUILDS, CMAKE),
    "cmake --build build/install": Look(BUILDS, CMAKE),
    "cmake --install build/install --prefix ~/.local": Look(INSTALLED, CMAKE),
    "DESTDIR=/tmp/stage cmake --install build/install --prefix /usr": Look(INSTALLED, CMAKE),
    "xargs -d '\\n' rm < build/install/install_manifest.txt": Look(INSTALLED, {"xargs": ["xargs", "--help"]}),
    "cmake --preset NAME": Look(BUILDS, CMAKE),
    "tools/bench --cpu --engine --in /dev/shm": ours("bench"),
    "tools/bench --check": ours("bench"),
    "tools/bench --kept": ours("bench"),
    "tools/bench --cpu --growth --in /dev/shm": ours("bench"),
    "tools/bench --disk": ours("bench"),
    "tools/bench --loop": ours("bench"),
    "tools/bench --engine --benchmark_filter='put back'": ours("bench"),
    "tools/bench --answers --starts 11": ours("bench"),
    "tools/bench --panel --benchmark_filter='open Recovery'": ours("bench"),
    "tools/bench --panel": ours("bench"),
    'timeout -s INT 125 strace -f -tt -p "$(pgrep -x lapsa)"': Look(
        "takes two minutes, and a container need not let it trace",
        {"timeout": ["timeout", "--help"], "strace": ["strace", "--help"], "pgrep": ["pgrep", "--help"]}),
    "tools/faults": ours("faults"),
    "tools/faults --threads": ours("faults"),
    "tools/faults --threads --thin 2": ours("faults"),
    "tools/faults --short": ours("faults"),
    "tools/faults --scenario recovery-file@volume --cuts 5": ours("faults"),
    "tools/faults --scenario recovery-file@volume --only 'late-EIO once 50' --calls": ours("faults"),
    "tools/soak --in /dev/shm": ours("soak"),
    "tools/fuzz --minutes 9": ours("fuzz"),
    "ctest --test-dir build/debug -L fuzz": Look(TAKES_LONG, CTEST),
    "ctest --test-dir build/debug -R LapsaStore_damage": Look(TAKES_LONG, CTEST),

    "lapsa ~/Downloads/report.zip": Run(adds_a_file),
    "lapsa": Run(starts),
    "lapsactl add --for 2h ~/Downloads/report.zip": Run(lists_by_lapsactl),
    "lapsactl list": Run(lists_by_lapsactl),
    "lapsactl lock report.zip": Run(locks_by_lapsactl),
    "lapsactl recovered": Run(lists_recovered),
    "lapsactl put-back report.zip": Run(puts_back),
    "gdbus introspect --session --dest org.lapsa.Lapsa --object-path /org/lapsa/Lapsa": Run(tells_the_interface),
    "ls -l ~/.local/share/Lapsa/Recovery": Run(shows_recovery),
    "cat ~/.local/share/Lapsa/recovery.json": Run(shows_records),
    "mv ~/.local/share/Lapsa/Recovery/report.zip ~/Downloads/": Run(takes_back),
    "gio trash --list": Run(shows_trash),
    "gio trash --restore trash:///report.zip": Run(restores_from_trash),
    "stat --format='%w %n' ~/Downloads/*": Run(shows_birth_times),
    "gapplication action org.lapsa.Lapsa add-selection": Run(acts),
    "gapplication action org.lapsa.Lapsa open-lapsa": Run(acts),
    "gapplication action org.lapsa.Lapsa preferences": Run(acts),
    "gapplication action org.lapsa.Lapsa recovery": Run(acts),
    "gapplication action org.lapsa.Lapsa open-data-folder": Run(acts),
    "gapplication action org.lapsa.Lapsa quit": Run(quits),
    "gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus "
    "--method org.freedesktop.DBus.NameHasOwner org.lapsa.Lapsa": Run(tells_whether_it_runs),
    "gdbus call --session --dest org.freedesktop.Notifications --object-path /org/freedesktop/Notifications "
    "--method org.freedesktop.Notifications.GetServerInformation": Run(asks_notifications),
    "pgrep -x lapsa": Run(tells_its_number),
    'echo "${XDG_DATA_HOME:-$HOME/.local/share}/Lapsa"': Run(tells_the_folder),
    'echo "$XDG_CURRENT_DESKTOP $XDG_SESSION_TYPE"': Run(tells_the_session),

    "gdbus introspect --session --only-properties --dest org.freedesktop.portal.Desktop "
    "--object-path /org/freedesktop/portal/desktop": Look(
        "a portal needs the desktop whose portal it is", {"gdbus": ["gdbus", "introspect", "--help"]}),
    "journalctl --user --unit app-org.lapsa.Lapsa.service --since today": Look(
        tools={"journalctl": ["journalctl", "--help"]}, **USER_MANAGER),
    "systemctl --user status app-org.lapsa.Lapsa.service": Look(
        tools={"systemctl": ["systemctl", "--help"]}, words=("status",), **USER_MANAGER),
    "dpkg -s lapsa": Look("Lapsa need not be installed", {"dpkg": ["dpkg", "--help"]}),
    "findmnt --target PATH": Look("names no real path", {"findmnt": ["findmnt", "--help"]}),
}
