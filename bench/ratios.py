#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""ratios.py [--cpu] RESULT: turns a result of the benchmarks into the table of ratios and growth, in Markdown.
ratios.py --store RESULT...: keeps the ratios as those that are checked against; of several results the middle of each.
ratios.py --kept RESULT...: shows the ratios beside those that are kept; of several results the best of each counts.

With --cpu it takes the processor's time in place of the time that passed: for a machine that is busy with other things.
The kept ratios are always of that.
"""

import json
import statistics
import sys
from collections import defaultdict
from pathlib import Path

HERE = Path(__file__).parent
KEPT = HERE / "kept.json"


def fastest_runs(results, key):
    """Milliseconds by operation, who and size: of the repetitions, the one that was disturbed least."""
    runs = defaultdict(lambda: defaultdict(dict))
    for result in results:
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


def verdict(ratio, limit):
    if limit is None:
        return ""
    return f"{limit:g}: {'met' if ratio <= limit else 'missed'}"


def repainted_rows(result):
    """Of the rows on screen, the most that were painted anew, by operation and size."""
    rows = {}
    for run in result["benchmarks"]:
        if run.get("run_type") == "iteration" and "rows_repainted" in run:
            operation, _, size = run["name"].split("/")[:3]
            most = max(run["rows_repainted"], rows.get((operation, size), (0, 0))[0])
            rows[operation, size] = most, run["rows_visible"]
    return rows


def ratios(runs):
    """By "operation/peer/size": Lapsa's time in terms of the peer's."""
    found = {}
    for operation, sides in runs.items():
        for who, sizes in sides.items():
            if who != "lapsa":
                for size in sorted(set(sizes) & set(sides["lapsa"])):
                    found[f"{operation}/{who}/{size}"] = sides["lapsa"][size] / sizes[size]
    return found


def print_tables(results, key):
    wanted = json.loads((HERE / "wanted.json").read_text(encoding="utf-8"))
    print("| operation | items | Lapsa, ms | peer | peer, ms | ratio | target |")
    print("|---|--:|--:|---|--:|--:|---|")
    runs = fastest_runs(results, key)
    for operation, sides in runs.items():
        ours = sides["lapsa"]
        for who, theirs in sides.items():
            for size in sorted(set(theirs) & set(ours)) if who != "lapsa" else ():
                ratio = ours[size] / theirs[size]
                limit = wanted.get(operation, {}).get(who)
                print(f"| {operation} | {size} | {figure(ours[size])} | {who} | {figure(theirs[size])} "
                      f"| {ratio:.2f} | {verdict(ratio, limit)} |")
    print()
    print("| operation | from | to | growth of Lapsa | growth of the peers |")
    print("|---|--:|--:|--:|---|")
    for operation, sides in runs.items():
        ours = sides["lapsa"]
        if len(ours) > 1:
            peers = ", ".join(f"{who} {growth(sizes):.2f}" for who, sizes in sides.items()
                              if who != "lapsa" and len(sizes) > 1)
            print(f"| {operation} | {min(ours)} | {max(ours)} | {growth(ours):.2f} | {peers} |")
    for result in results:
        rows = repainted_rows(result)
        if rows:
            print()
            print("| operation | items | rows repainted at most | rows on screen |")
            print("|---|--:|--:|--:|")
            for (operation, size), (repainted, visible) in rows.items():
                print(f"| {operation} | {size} | {repainted:.0f} | {visible:.0f} |")


def store(found):
    middle = {name: round(statistics.median(ratios[name] for ratios in found), 3) for name in found[0]}
    KEPT.write_text(json.dumps(middle, indent=2, sort_keys=True) + "\n", encoding="utf-8")


def show_kept(found):
    kept = json.loads(KEPT.read_text(encoding="utf-8"))
    for name in sorted(set(found) & set(kept)):
        print(f"{found[name]:7.2f} (kept {kept[name]:.2f})  {name}")


def main():
    options = {argument for argument in sys.argv[1:] if argument.startswith("--")}
    results = [json.loads(Path(argument).read_text(encoding="utf-8"))
               for argument in sys.argv[1:] if argument not in options]
    if "--store" in options:
        store([ratios(fastest_runs([result], "cpu")) for result in results])
    elif "--kept" in options:
        show_kept(ratios(fastest_runs(results, "cpu")))
    else:
        print_tables(results, "cpu" if "--cpu" in options else "real_time")


if __name__ == "__main__":
    main()
