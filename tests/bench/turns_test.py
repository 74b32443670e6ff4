#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""When does the comparison of two builds of the benchmarks fail? turns_test.py SOURCE-FOLDER"""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(sys.argv.pop(1))


def result(**milliseconds):
    """What a run of the benchmarks writes: each operation with two repetitions, the first of them disturbed."""
    return {"benchmarks": [
        {"run_type": "iteration", "name": f"{name}/{who}/1000/real_time", "real_time": 9 * time, "cpu": time * disturbed}
        for name, time in milliseconds.items() for who in ("lapsa", "rename loop") for disturbed in (3, 1)]}


class Turns(unittest.TestCase):
    def compare(self, *results):
        with tempfile.TemporaryDirectory() as folder:
            paths = []
            for number, one in enumerate(results):
                paths.append(Path(folder, f"{number}.json"))
                paths[-1].write_text(json.dumps(one), encoding="utf-8")
            return subprocess.run([sys.executable, SOURCES / "bench" / "turns.py", *paths],
                                  capture_output=True, text=True, check=False)

    def test_an_operation_that_is_slower_in_every_turn_fails_and_is_named(self):
        run = self.compare(result(add=1, scan=1), result(add=1.3, scan=1), result(add=2, scan=2), result(add=2.6, scan=2))
        self.assertEqual(run.returncode, 1, run.stderr)
        marked = [line for line in run.stdout.splitlines() if "slower" in line]
        self.assertEqual(len(marked), 1, run.stdout)
        self.assertIn("add/1000", marked[0])

    def test_one_turn_that_is_not_slower_clears_it(self):
        run = self.compare(result(add=1), result(add=5), result(add=1), result(add=1))
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_each_operation_is_cleared_by_itself(self):
        run = self.compare(result(add=1, scan=1), result(add=2, scan=1), result(add=1, scan=1), result(add=1, scan=2))
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_a_new_operation_is_not_compared(self):
        run = self.compare(result(add=1), result(add=1, scan=7))
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_results_without_a_common_operation_do_not_pass(self):
        run = self.compare(result(add=1), result(scan=1))
        self.assertNotEqual(run.returncode, 0)

    def test_an_earlier_result_alone_does_not_pass(self):
        self.assertNotEqual(self.compare(result(add=1)).returncode, 0)


if __name__ == "__main__":
    unittest.main()
