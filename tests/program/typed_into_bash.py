#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""typed_into_bash.py COMPLETION FOLDER LINE: an interactive bash on a terminal of its own.

Loads the completion, puts FOLDER in front of PATH, types the line and Tab, and runs what stands there then.
"""
import os
import pty
import select
import sys
import time

completion, folder, line = sys.argv[1:]
pid, terminal = pty.fork()
if pid == 0:
    os.environ.update(PS1="ready> ", INPUTRC="/dev/null", TERM="dumb", COLUMNS="500")
    os.execvp("bash", ["bash", "--norc", "--noprofile", "-i"])
seen = b""
def until(text):
    global seen
    limit = time.monotonic() + 60
    while text not in seen and time.monotonic() < limit:
        if select.select([terminal], [], [], 1)[0]:
            try:
                seen += os.read(terminal, 4096)
            except OSError:
                break
    if text not in seen:
        sys.exit(f"no {text!r} in {seen!r}")
    seen = seen[seen.index(text) + len(text):]
until(b"ready> ")
os.write(terminal, f"source {completion}; PATH={folder}:$PATH; bind 'set bell-style none'; stty columns 500; echo so'urced'\n".encode())
until(b"sourced")
until(b"ready> ")
os.write(terminal, f"{line}\t; echo en'ded'\n".encode())
until(b"ended")
os.write(terminal, b"exit\n")
os.waitpid(pid, 0)
