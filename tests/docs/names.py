# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""The names that the source has: of types, functions, files and folders."""
import re
from pathlib import Path

# The pages themselves are no source, nor is what a build makes.
LEFT_OUT = {".git", ".cache", "build", "docs", "CHANGELOG.md", "README.md", "CONTRIBUTING.md"}
# Words that a page may use for something that is not there.
EXAMPLES = {"NAME", "FILE", "FILES", "FOLDER", "COMMIT", "ARCHIVE"}


class Names:
    def __init__(self, source):
        self.source = source
        self.paths = set()
        self.words = {}  # each word, and the files that have it
        for top in source.iterdir():
            if top.name not in LEFT_OUT:
                for path in [top] if top.is_file() else top.rglob("*"):
                    self.add(path)

    def add(self, path):
        self.paths.add(path.name)
        if path.is_file() and path.suffix != ".png" and path.name != "README.md":
            text = path.read_text(encoding="utf-8", errors="ignore")
            if path.suffix in (".h", ".cpp"):
                text = re.sub(r"//.*", "", text)
            for word in set(re.findall(r"\w+", text)):
                self.words.setdefault(word, set()).add(path)

    def unknown(self, span, folder):
        """What a span names and the source does not have. A member has to be in a file of its type."""
        for part in span.split():
            part = part.strip("\"'<>()[],;…")
            if part.startswith(("--", "/", "~", "$", "http")) or part.rsplit("/", 1)[-1] in EXAMPLES:
                continue
            if "/" in part or re.search(r"\.(h|cpp|md|py|txt|json|qrc)$", part):
                if not self.is_path(part, folder) and part not in self.paths and not self.is_made(part):
                    yield part
                continue
            for name in re.findall(r"[A-Za-z_]\w+(?:::[A-Za-z_]\w+)*", part):
                # What belongs to Qt is mentioned even where Lapsa does not use it.
                *owners, member = name.split("::")
                files = self.files_with(member)
                for owner in owners:
                    own = {path for path in self.files_with(owner)
                           if re.split(r"[_.]", path.name)[0] == owner and not path.stem.endswith("_test")}
                    files = files & (own or self.files_with(owner))
                if not files and not re.match("Q[A-Z]", name):
                    yield name

    def files_with(self, word):
        return self.words.get(word, set())

    def is_path(self, part, folder):
        if "*" in part:
            return any(self.source.rglob(part.rsplit("/", 1)[-1]))
        return any((start / part).exists() for start in (self.source, folder))

    def is_made(self, part):
        """Whether it is a file that Lapsa makes, and that its source names as a text: "state.json"."""
        return any(re.search(rf'["/]{re.escape(part)}"', path.read_text(encoding="utf-8", errors="ignore"))
                   for path in self.files_with(Path(part).stem))
