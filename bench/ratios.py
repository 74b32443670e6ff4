#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""ratios.py [--cpu] RESULT: turns a result of the benchmarks into the table of ratios and growth, in Markdown.

With --cpu it takes the processor's time in place of the time that passed: for a machine that is busy with other things.
"""

import json
import sys
from collections import defaultdict


def fastest_runs(result, key):
    """Milliseconds by operation, who and size: of the repetitions, the one that was disturbed least."""
    runs = defaultdict(lambda: defaultdict(dict))
    for run in result["benchmarks"]:
        if run.get("run_type") != "iteration":
            continue
        operation, who, size = run["name"].split("/")[:3]
        sizes = runs[operation][who]
        time = run[key]
        sizes[int(size)] = min(time, sizes.get(int(size), time))
    return runs


def figure(milliseconds):
    return f"{milliseconds:.3g}" if milliseconds < 100 else f"{milliseconds:.0f}"


def growth(sizes):
    """What one item costs at the largest size, in terms of what it costs at the smallest."""
    small, large = min(sizes), max(sizes)
    return (sizes[large] / large) / (sizes[small] / small)


def repainted_rows(result):
    """Of the rows on screen, the most that were painted anew, by operation and size."""
    rows = {}
    for run in result["benchmarks"]:
        if run.get("run_type") == "iteration" and "rows_repainted" in run:
            operation, _, size = run["name"].split("/")[:3]
            most = max(run["rows_repainted"], rows.get((operation, size), (0, 0))[0])
            rows[operation, size] = most, run["rows_visible"]
    return rows


def main():
    key = "cpu" if "--cpu" in sys.argv else "real_time"
    with open(sys.argv[-1], encoding="utf-8") as file:
        result = json.load(file)
    print("| operation | items | Lapsa, ms | peer | peer, ms | ratio | growth of Lapsa | growth of the peer |")
    print("|---|--:|--:|---|--:|--:|--:|--:|")
    for operation, sides in fastest_runs(result, key).items():
        ours = sides["lapsa"]
        peer, theirs = next((who, sizes) for who, sizes in sides.items() if who != "lapsa")
        for size in sorted(ours):
            grown = ("", "")
            if size == max(ours) and len(ours) > 1:
                grown = (f"{growth(ours):.2f}", f"{growth(theirs):.2f}")
            ratio = ours[size] / theirs[size]
            print(f"| {operation} | {size} | {figure(ours[size])} | {peer} | {figure(theirs[size])} "
                  f"| {ratio:.2f} | {grown[0]} | {grown[1]} |")
    rows = repainted_rows(result)
    if rows:
        print()
        print("| operation | items | rows repainted at most | rows on screen |")
        print("|---|--:|--:|--:|")
        for (operation, size), (repainted, visible) in rows.items():
            print(f"| {operation} | {size} | {repainted:.0f} | {visible:.0f} |")


if __name__ == "__main__":
    main()
