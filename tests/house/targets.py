# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The rooms as the build has them, read from what lapsa_write_house() wrote, and from their sources."""
import re
from dataclasses import dataclass, field
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


@dataclass
class Target:
    name: str
    kind: str
    folder: str  # below the source folder
    output: Path
    sources: list
    links: list  # each library on its link line
    passes_on: list  # those of them that its users get as well
    headers: list = field(default_factory=list)

    @property
    def rooms(self):
        return rooms_of(self.links)

    @property
    def public_rooms(self):
        return rooms_of(self.passes_on)

    @property
    def outside(self):
        """Libraries that are not ours."""
        return {link for link in self.links if not is_ours(link)}

    @property
    def types(self):
        """A header with its sources counts once; what follows an underscore is a topic of the type before it."""
        return sorted({type_of(Path(source).name) for source in self.sources})


def type_of(file_name):
    return re.split(r"[_.]", file_name)[0]


def is_ours(link):
    return link.startswith(("Lapsa::", "lapsa_"))


def rooms_of(links):
    names = (link.removeprefix("Lapsa::").removeprefix("lapsa_") for link in links if is_ours(link))
    return {name for name in names if name not in ("compiler", "testcompiler")}


class House:
    """Each library and program of the build, by the short name that link lines use."""

    def __init__(self, source, build):
        self.source = source
        self.targets = {}
        for line in (build / "house.txt").read_text(encoding="utf-8").splitlines():
            name, kind, folder, output, sources, links, passes_on = line.split("\t")
            target = Target(name.removeprefix("lapsa_"), kind, str(Path(folder).relative_to(source)), Path(output),
                            sources.split(), links.split(), passes_on.split())
            target.headers = sorted(name for name in target.sources if name.endswith(".h"))
            self.targets[target.name] = target
        self.rooms = [target for target in self.targets.values() if target.kind == "ROOM"]
        self.room_of = {header: room.name for room in self.rooms for header in room.headers}

    def text(self, target, name):
        return (self.source / target.folder / name).read_text(encoding="utf-8")

    def includes(self, target):
        """Each file of a target with each of our headers that it includes; what moc makes is not ours."""
        for name in target.sources:
            if name.endswith((".h", ".cpp")):
                for header in INCLUDE.findall(self.text(target, name)):
                    if not header.endswith(".moc") and not header.startswith("moc_"):
                        yield name, header

    def reached(self, target):
        """The rooms whose headers the compiler finds: those on the link line, and what these pass on."""
        found, to_visit = set(), set(target.rooms)
        while to_visit:
            room = to_visit.pop()
            if room not in found and room in self.targets:
                found.add(room)
                to_visit |= self.targets[room].public_rooms
        return found

    def linked(self, target):
        """Each library that ends up in a program, ours and others'."""
        found, to_visit = set(), set(target.links)
        while to_visit:
            link = to_visit.pop()
            if link not in found:
                found.add(link)
                if room := next(iter(rooms_of([link])), None):
                    to_visit |= set(self.targets[room].links)
        return found
