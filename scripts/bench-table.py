#!/usr/bin/env python3
"""Runs benchmark programs, their rows in random order, and prints how ours compare: bench-table.py OUTPUT.json PROGRAM ..."""
import json
import os
import subprocess
import sys

REPETITIONS = 15


def run(program):
    """The least time of each row, in nanoseconds. On a busy machine that is the one to compare."""
    command = [program, "--benchmark_repetitions=%d" % REPETITIONS, "--benchmark_min_time=0.01",
               "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"]
    processor = {max(os.sched_getaffinity(0))}  # one, and not the first, which serves the interrupts
    finished = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
                              preexec_fn=lambda: os.sched_setaffinity(0, processor))
    least = {}
    for row in json.loads(finished.stdout)["benchmarks"]:
        if row["run_type"] == "iteration":
            least[row["name"]] = min(least.get(row["name"], float("inf")), row["cpu_time"])
    return least


def main():
    rows = {}
    for program in sys.argv[2:]:
        for name, nanoseconds in run(program).items():
            work, who = name.rsplit("/", 1)
            rows.setdefault(work, {})[who] = nanoseconds
    with open(sys.argv[1], "w", encoding="utf-8") as output:
        json.dump(rows, output, indent=1)
    print("%-40s %12s  %s" % ("work", "ours, ns", "ours / other"))
    for work, times in sorted(rows.items()):
        ours = times.pop("ours")
        print("%-40s %12.0f  %s" % (work, ours, "  ".join("%s %.2f" % (who, ours / time) for who, time in times.items())))


main()
