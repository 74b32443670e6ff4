#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""turns.py EARLIER NOW [EARLIER NOW]...: compares two builds of the benchmarks that ran by turns, one pair of results a turn.

Prints what Lapsa's own operations cost now in terms of what they cost earlier, the processor's time of the repetition
that was disturbed least, one column a turn. Ends with 1, and marks the rows, where an operation was slower in every turn,
by more than a quarter: what is less, people judge by the table. One turn that is not slower clears it: a neighbour on
the machine can slow a turn down, but nothing makes slower code fast.
"""

import json
import sys
from pathlib import Path

from ratios import fastest_runs

# An additional check, or an additional file at the start, slows small operations by a tenth; moved code alone by a few
# per cent.
SLOWER = 1.25


def own_times(result):
    """Milliseconds of the processor by "operation/size", of Lapsa alone."""
    runs = fastest_runs([result], "cpu")
    return {f"{operation}/{size}": time
            for operation, sides in runs.items()
            for size, time in sides.get("lapsa", {}).items()}


def changes(earlier, now):
    """By "operation/size": what one turn cost now in terms of what it cost earlier. New and dropped rows have none."""
    before, after = own_times(earlier), own_times(now)
    return {name: after[name] / before[name] for name in sorted(set(before) & set(after))}


def slower_in_every_turn(turns):
    """The rows that no turn cleared, of the rows that every turn has."""
    common = set.intersection(*(set(turn) for turn in turns))
    return sorted(name for name in common if all(turn[name] > SLOWER for turn in turns))


def main():
    results = [json.loads(Path(argument).read_text(encoding="utf-8")) for argument in sys.argv[1:]]
    if not results or len(results) % 2:
        sys.exit(f"{Path(sys.argv[0]).name}: results come in pairs, the earlier build first")
    turns = [changes(*pair) for pair in zip(results[::2], results[1::2])]
    if not any(turns):
        sys.exit(f"{Path(sys.argv[0]).name}: no operation was measured in both builds")
    lost = slower_in_every_turn(turns)
    for name in turns[-1]:
        figures = "".join(f"{turn[name]:7.2f}" if name in turn else "      -" for turn in turns)
        print(f"{figures}  {name}{'  <- slower in every turn' if name in lost else ''}")
    if lost:
        sys.exit(1)


if __name__ == "__main__":
    main()
