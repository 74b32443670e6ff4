#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""house.py SOURCE_FOLDER BUILD_FOLDER [--configured]: whether the walls between the rooms hold.

The link lines of the build are compared with the plan (plan.py) and with the includes of the sources. Then the compiler
is asked, with the flags of each room, for headers that the room must not find and for one that it must find. The test
programs of files, model and engine must load no library of a desktop. Last, docs/house.svg must show the house as it is.
With --configured, no built program is looked at, and a build folder that is only configured will do.
"""
import json
import re
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
sys.dont_write_bytecode = True
import plan  # noqa: E402
from picture import draw  # noqa: E402
from targets import House  # noqa: E402


class Compiler:
    """Compiles a few lines as if they stood in a given room."""

    def __init__(self, house, build, folder):
        self.folder = folder
        self.commands = {}
        for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
            self.commands.setdefault(Path(entry["file"]), entry)
        self.house = house

    def errors(self, target, text, mode=("-fsyntax-only",)):
        """What the compiler says to the text, in the room of the target; empty if nothing."""
        source = next(self.house.source / target.folder / name for name in target.sources if name.endswith(".cpp"))
        entry = self.commands[source]
        words = shlex.split(entry["command"])
        if Path(words[0]).name in ("ccache", "sccache"):
            words = words[1:]
        for option, count in (("-c", 2), ("-o", 2), ("-MF", 2), ("-MT", 2), ("-MQ", 2), ("-MD", 1), ("-MMD", 1)):
            while option in words:
                at = words.index(option)
                del words[at:at + count]
        # Outside the room, or its own folder would be searched because the file lies in it.
        probe = self.folder / f"{target.name}.cpp"
        probe.write_text(text, encoding="utf-8")
        answer = subprocess.run([*words, *mode, "-x", "c++", str(probe)], cwd=entry["directory"], check=False,
                                capture_output=True, text=True, errors="replace", timeout=120,
                                env={"PATH": "/usr/bin:/bin:/usr/local/bin", "LC_ALL": "C"})
        return (answer.stderr or "the compiler failed without a word") if answer.returncode else ""


class Walls:
    def __init__(self, source, build, configured_only):
        self.house = House(source, build)
        self.build = build
        self.configured_only = configured_only
        self.failures = []
        self.counts = {"arrows": 0, "includes": 0, "headers that are not found": 0, "test programs": 0}

    def fail(self, place, reason):
        self.failures.append(f"{place}: {reason}")

    # ---- The link lines

    def check_plan(self):
        """No room has an arrow that the plan does not have, and only rooms of the plan are built."""
        production = {target.name for target in self.house.targets.values()
                      if target.kind.endswith(("ROOM", "LIBRARY")) and not target.folder.startswith(("tests", "bench"))}
        production.discard("resources")
        for name in sorted(production ^ set(plan.MAY_USE)):
            self.fail(name, "is not in both the plan and the build")
        for name in sorted(production & set(plan.MAY_USE)):
            target = self.house.targets[name]
            self.counts["arrows"] += len(target.rooms)
            for room in sorted(target.rooms - plan.MAY_USE[name]):
                self.fail(f"{target.folder}/CMakeLists.txt", f"{name} links {room}; the plan has no such arrow")
            if name in plan.WITHOUT_DESKTOP:
                for library in sorted(target.outside - plan.CORE):
                    self.fail(f"{target.folder}/CMakeLists.txt", f"{name} links {library}; it has to run without a desktop")
        program = self.house.targets[plan.PROGRAM]
        for room in sorted(program.rooms - plan.PROGRAM_MAY_USE):
            self.fail(f"{program.folder}/CMakeLists.txt", f"the program links {room}")
        control = self.house.targets[plan.CONTROL]
        for library in sorted((control.rooms - plan.CONTROL_MAY_USE) | (control.outside - plan.CONTROL_LIBRARIES)):
            self.fail(f"{control.folder}/CMakeLists.txt", f"{plan.CONTROL} links {library}")

    def check_files(self):
        """What lies in a room is compiled there, and no two headers share a name."""
        listed = {}
        for target in self.house.targets.values():
            for name in target.sources:
                path = (self.house.source / target.folder / name).resolve()
                if path in listed and path.suffix == ".h" and listed[path] != target.name:
                    continue
                listed[path] = target.name
        for room in self.house.rooms:
            for path in sorted((self.house.source / room.folder).glob("*.[hc]*")):
                if path.suffix in (".h", ".cpp") and path.resolve() not in listed:
                    self.fail(path.relative_to(self.house.source), "is in no list of sources")
        names = [header for room in self.house.rooms for header in room.headers]
        for name in sorted({name for name in names if names.count(name) > 1}):
            self.fail(name, "is the name of two headers")

    def check_includes(self):
        """Each include goes along an arrow of the room's own link line, and along each arrow goes an include."""
        for target in [*self.house.rooms, self.house.targets[plan.PROGRAM], self.house.targets[plan.CONTROL]]:
            used = set()
            for name, header in self.house.includes(target):
                place = f"{target.folder}/{name}"
                room = self.house.room_of.get(Path(header).name)
                self.counts["includes"] += 1
                if header in target.headers:
                    continue
                if room is None:
                    self.fail(place, f'includes "{header}", which is in no room')
                elif room != target.name:
                    used.add(room)
                    if room not in target.rooms:
                        self.fail(place, f'includes "{header}" of {room}, which is not on the link line of {target.name}')
                    elif name.endswith(".h") and room not in target.public_rooms:
                        self.fail(place, f'includes "{header}" of {room}, which {target.name} links PRIVATE')
            for room in sorted(target.rooms - used - {"resources"}):
                self.fail(f"{target.folder}/CMakeLists.txt", f"{target.name} links {room} and includes nothing of it")

    # ---- The compiler

    def check_compiler(self):
        with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(max_workers=2) as pool:
            compiler = Compiler(self.house, self.build, Path(folder))
            for failures in pool.map(lambda room: self.tried(compiler, room), self.house.rooms):
                self.failures += failures

    def tried(self, compiler, target):
        """What is wrong with the walls of one room."""
        reached = self.house.reached(target)
        neighbours = [room for room in self.house.rooms if room.headers and room.name != target.name]
        hidden = [f'"{room.headers[0]}"' for room in neighbours if room.name not in reached]
        if target.name in plan.WITHOUT_DESKTOP:
            hidden += [f"<{header}>" for header in plan.DESKTOP_HEADERS]
        found = [f'"{room.headers[0]}"' for room in neighbours if room.name in reached]
        found += [f'"{header}"' for header in target.headers] + ["<QString>"]
        self.counts["headers that are not found"] += len(hidden)

        # All of them by a question, and one by a real include: the question alone could be put wrongly.
        lines = [f"#if __has_include({header})\n#error finds={header}=\n#endif" for header in hidden]
        lines += [f"#if !__has_include({header})\n#error misses={header}=\n#endif" for header in found]
        said = compiler.errors(target, "\n".join(lines) + "\n")
        failures = [f"{target.name}: {verb} {header}" for verb, header in re.findall(r"\b(finds|misses)=([^=\n]+)=", said)]
        if said and not failures:
            failures.append(f"{target.name}: {said}")
        if hidden and not re.search(r"No such file|file not found", compiler.errors(target, f"#include {hidden[0]}\n")):
            failures.append(f"{target.name}: an include of {hidden[0]} compiles")
        smallest = min(target.headers, key=lambda header: len(self.house.text(target, header)))
        # Preprocessed only: reading the headers of the toolkit takes a second a room.
        if said := compiler.errors(target, f'#include "{smallest}"\n', ("-E", "-o", "/dev/null")):
            failures.append(f'{target.name}: its own "{smallest}" is not found whole: {said}')
        return sorted(set(failures))

    # ---- The test programs

    def check_programs(self):
        for target in self.house.targets.values():
            if target.kind != "EXECUTABLE" or not f"{target.folder}/".startswith(plan.CORE_TESTS):
                continue
            self.counts["test programs"] += 1
            for library in sorted(self.house.linked(target)):
                if re.match(r"Qt6::(?!Core|Test)|xcb|PkgConfig::", library):
                    self.fail(f"{target.folder}/CMakeLists.txt", f"{target.name} links {library} by way of a room")
            if self.configured_only:
                continue
            if not target.output.exists():
                self.fail(target.name, "is not built")
                continue
            answer = subprocess.run(["readelf", "--dynamic", target.output], check=True, capture_output=True, text=True)
            for library in re.findall(r"\(NEEDED\).*\[(.*)\]", answer.stdout):
                if re.match(plan.DESKTOP_LIBRARIES, library):
                    self.fail(target.name, f"needs {library}")

    def check_picture(self):
        drawn = self.house.source / "docs" / "house.svg"
        if not drawn.exists() or drawn.read_text(encoding="utf-8") != draw(self.house):
            self.fail("docs/house.svg", "does not show the house as it is; draw it anew with tools/house")

    def check(self):
        self.check_plan()
        self.check_files()
        self.check_includes()
        self.check_compiler()
        self.check_programs()
        self.check_picture()
        print(f"{len(self.house.rooms)} rooms, " + ", ".join(f"{count} {what}" for what, count in self.counts.items()))
        for failure in self.failures:
            print(failure)
        return 1 if self.failures or not all(self.counts.values()) else 0


if __name__ == "__main__":
    sys.exit(Walls(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve(), "--configured" in sys.argv[3:]).check())
