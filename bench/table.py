#!/usr/bin/env python3
"""Prints the rows of the benchmarks as one table: medians, the ratio to the floor, and whether it is in reach.

The names of the benchmarks say what belongs together (see row.h): "work|ours|1.5 x" and "work|floor", or
"work|ours|10 us" for a work without a floor, "work|ours|40 MB" for memory above that of "work|floor".
"""

import json
import sys


def in_words(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def main(paths):
    ours, floors = {}, {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            # The repetitions come mixed; the rows stand in the order in which they are registered.
            for run in sorted(json.load(file)["benchmarks"], key=lambda run: run["family_index"]):
                if run.get("error_occurred"):
                    sys.exit(f"{run['run_name']}: {run['error_message']}")
                if run.get("aggregate_name") != "median":
                    continue
                unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
                name, on_the_wall, _ = run["run_name"].partition("/real_time")
                name = name.removesuffix("/iterations:1")
                time = run["real_time" if on_the_wall else "cpu_time"] * unit
                time = run.get("megabytes", time)
                work, kind, *reach = name.split("|")
                if kind == "floor":
                    floors[work] = time
                else:
                    ours[work] = (time, reach[0])

    print("| work | ours | floor | ratio | reach | |")
    print("|---|---|---|---|---|---|")
    for work, (time, reach) in ours.items():
        limit, unit = reach.split()
        if unit in ("x", "MB") and work not in floors:
            sys.exit(f"no floor was measured for: {work}")
        if unit == "MB":
            more = time - floors[work]
            print(f"| {work} | {time:.3g} MB | {floors[work]:.3g} MB | {more:+.1f} MB | {reach} more | "
                  f"{'in reach' if more <= float(limit) else 'MISSED'} |")
            continue
        if unit == "x":
            ratio = time / floors[work]
            floor, shown, reached = in_words(floors[work]), f"{ratio:.2f} x", ratio <= float(limit)
        else:
            floor, shown, reached = "-", "-", time <= float(limit) * 1e3
            reach = in_words(float(limit) * 1e3)
        print(f"| {work} | {in_words(time)} | {floor} | {shown} | {reach} | {'in reach' if reached else 'MISSED'} |")


main(sys.argv[1:])
