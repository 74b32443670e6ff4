#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""documentation.py SOURCE_FOLDER BUILD_FOLDER: whether the commands and links of the pages work.

Each command that a page shows is either run here, in a home and a session of its own, or looked at: its tool is there
and knows the options. commands.py has the one table that says which, and why. A command that is not in the table fails,
and so does one of the table that no page shows any more. The names that the pages for developers mention have to be in
the source.
"""
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
sys.dont_write_bytecode = True
from commands import TABLE, Look, Run  # noqa: E402
from names import Names  # noqa: E402
from world import World  # noqa: E402

# What begins a command in the middle of a text.
STARTERS = ("apt", "build/release/lapsa", "cat", "cmake", "cp", "ctest", "dpkg", "findmnt", "gapplication", "gdbus",
            "gio", "journalctl", "lapsa", "lapsactl", "ls", "mv", "stat", "sudo", "systemctl", "xargs")
# What these say of the source is compared with it.
DEVELOPER_PAGES = ("CONTRIBUTING.md", "docs/architecture.md", "docs/porting.md", "platform/README.md")
SYNOPSIS = re.compile(r"tools/[\w-]+( \[.*)?")


def normal(command):
    return " ".join(re.sub(r"\s#\s.*$", "", command).split())


def fenced_commands(text):
    """The line and the text of each command in blocks of shell, continued lines joined."""
    for block in re.finditer(r"^```sh\n(.*?)^```", text, re.MULTILINE | re.DOTALL):
        line = text.count("\n", 0, block.start()) + 2
        joined = ""
        for content in block.group(1).split("\n"):
            joined += content.removesuffix("\\")
            if not content.endswith("\\"):
                if normal(joined):
                    yield line, normal(joined)
                joined = ""
            line += 1


def inline_spans(text):
    # Blanked out and not removed: the lines keep their numbers.
    blocks = re.compile(r"^ *```.*?^ *```", re.MULTILINE | re.DOTALL)
    plain = blocks.sub(lambda block: "\n" * block.group().count("\n"), text)
    for span in re.finditer(r"`([^`]+)`", plain):
        yield plain.count("\n", 0, span.start()) + 1, " ".join(span.group(1).replace("\\|", "|").split())


def sections_of(text):
    """The names by which the sections of a page are linked to."""
    headings = re.findall(r"^#+ (.*)", text, re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class Documentation:
    def __init__(self, source, build):
        self.source = source
        self.build = build
        self.pages = [source / "README.md", source / "CONTRIBUTING.md", source / "platform" / "README.md",
                      *sorted(source.glob("docs/*.md"))]
        self.failures = []
        self.done = {Run: 0, Look: 0}

    def fail(self, place, reason):
        self.failures.append(f"{place}: {reason}")

    # ---- What the pages show

    def shown(self):
        """Each command with the first place where it stands. What only names a tool and its options is looked at."""
        commands = {}
        for page in self.pages:
            name = str(page.relative_to(self.source))
            text = page.read_text(encoding="utf-8")
            if re.search(r"^ +```sh", text, re.MULTILINE):
                self.fail(name, "a block of commands that is indented is not seen here")
            for line, command in fenced_commands(text):
                commands.setdefault(command, f"{name}:{line}")
            for line, span in inline_spans(text):
                first = span.split()[0]
                if SYNOPSIS.fullmatch(span):
                    self.look_at_tool(f"{name}:{line}", first, re.findall(r"--[\w-]+", span))
                elif " " in span and (first in STARTERS or first.startswith(("tools/", "DESTDIR="))):
                    commands.setdefault(span, f"{name}:{line}")
        return commands

    # ---- Commands that are only looked at

    def help_of(self, place, tool, question):
        if tool.startswith("tools/"):
            path = self.source / tool
            if not os.access(path, os.X_OK) or not path.is_file():
                self.fail(place, f"{tool} is not there, or not executable")
                return ""
            lines = path.read_text(encoding="utf-8").split("\n")
            end = next(i for i, text in enumerate(lines) if not text.startswith("#"))
            return "\n".join(lines[:end])
        answer = subprocess.run(question, capture_output=True, text=True, errors="replace", check=False, timeout=60,
                                stdin=subprocess.DEVNULL)
        return answer.stdout + answer.stderr

    def look_at_tool(self, place, tool, options, question=None):
        told = self.help_of(place, tool, question)
        if "[CTEST OPTION" in told:
            told += self.help_of(place, "ctest", ["ctest", "--help"])
        for option in options:
            if told and not re.search(rf"(?<![\w-]){re.escape(option)}(?![\w-])", told):
                self.fail(place, f"{tool} tells nothing of {option}")

    def look(self, place, command, entry):
        words = shlex.split(command.replace('"$(', " ").replace(')"', " "))
        tool, options = None, {}
        for word in words:
            if word in entry.tools:
                tool = word
                options.setdefault(tool, [])
            elif tool and word.startswith("-"):
                options[tool].append("-D" if word.startswith("-D") else word.split("=")[0])
        if set(options) != set(entry.tools):
            self.fail(place, f"the table speaks of {sorted(entry.tools)}, the command of {sorted(options)}")
        for tool, question in entry.tools.items():
            if question and not shutil.which(question[0]):
                if entry.may_be_missing:
                    print(f"not looked at, {tool} is not on this machine: {command}")
                    continue
                self.fail(place, f"there is no {tool} here")
                continue
            self.look_at_tool(place, tool, options.get(tool, []) + list(entry.words), question)
        self.look_at_names(place, command, words)
        for name in entry.files:
            if not (self.source / name).exists():
                self.fail(place, f"it speaks of what {name} makes, which is not there")

    def look_at_names(self, place, command, words):
        """The presets, the settings of the build and the tests that a command names have to be there."""
        presets = json.loads((self.source / "CMakePresets.json").read_text(encoding="utf-8"))
        known = {preset["name"] for preset in presets["configurePresets"]} | {"NAME"}
        settings = (self.source / "CMakeLists.txt").read_text(encoding="utf-8")
        for word, following in zip(words, [*words[1:], ""]):
            if word == "--preset" and following not in known:
                self.fail(place, f"there is no preset {following}")
            if word.startswith("-D") and f"option({word[2:].split('=')[0]} " not in settings:
                self.fail(place, f"the build has no setting {word[2:]}")
            if word in ("-R", "-L") and words[0] in ("ctest", "tools/test"):
                listed = subprocess.run(["ctest", "--test-dir", self.build, "-N", word, following], check=False,
                                        capture_output=True, text=True, timeout=60)
                if not re.search(r"Total Tests: [1-9]", listed.stdout):
                    self.fail(place, f"no test is meant by {word} {following}")

    # ---- Commands that are run

    def run(self, place, command, entry):
        with World(self.build / "lapsa") as world:
            try:
                entry.play(world, command)
            except (AssertionError, OSError, subprocess.SubprocessError) as failure:
                self.fail(place, f"{command}\n    {failure}")

    # ---- All of it

    def check(self):
        shown = self.shown()
        for command in sorted(set(TABLE) - set(shown)):
            self.fail("commands.py", f"no page shows this any more: {command}")
        for command, place in shown.items():
            entry = TABLE.get(command)
            if entry is None:
                self.fail(place, f"not in the table of commands.py: {command}")
                continue
            self.done[type(entry)] += 1
            (self.run if isinstance(entry, Run) else self.look)(place, command, entry)
        self.check_links()
        self.check_names()
        self.check_changelog()
        print(f"{self.done[Run]} commands run, {self.done[Look]} looked at")
        for failure in self.failures:
            print(failure)
        return 1 if self.failures else 0

    def check_links(self):
        for page in self.pages:
            for target in re.findall(r"\]\(([^)]+)\)", page.read_text(encoding="utf-8")):
                path, _, section = target.partition("#")
                linked = page.parent / path if path else page
                place = f"{page.relative_to(self.source)}, link to {target}"
                if ":" in path:
                    continue
                if not linked.exists():
                    self.fail(place, "there is no such file")
                elif section and section not in sections_of(linked.read_text(encoding="utf-8")):
                    self.fail(place, "there is no such section")

    def check_names(self):
        """Types, functions, files and folders that a page for developers speaks of are there."""
        names = Names(self.source)
        for page in DEVELOPER_PAGES:
            for line, span in inline_spans((self.source / page).read_text(encoding="utf-8")):
                if span.split()[0] not in STARTERS:
                    for name in names.unknown(span, (self.source / page).parent):
                        self.fail(f"{page}:{line}", f"there is no {name}, of which `{span}` speaks")

    def check_changelog(self):
        settings = (self.source / "CMakeLists.txt").read_text(encoding="utf-8")
        version = re.search(r"project\(lapsa VERSION ([\d.]+)", settings).group(1)
        day = re.search(r"LAPSA_RELEASE_DATE ([\d-]+)", settings).group(1)
        if f"## [{version}] - {day}\n" not in (self.source / "CHANGELOG.md").read_text(encoding="utf-8"):
            self.fail("CHANGELOG.md", f"says nothing of version {version} of {day}")


if __name__ == "__main__":
    sys.exit(Documentation(Path(sys.argv[1]), Path(sys.argv[2])).check())
