#!/usr/bin/env python3
"""How many lines of tests each room has beside its code, as docs/testing.md shows it. test_figures.py [CHECKOUT]"""

import pathlib
import sys

ROOMS = ["customers", "invoices", "documents", "fiscal_code", "db_tools", "update", "preferences", "shell", "e_invoice", "lists",
         "program", "store", "text", "platform"]
# Tests of several rooms: real windows and the word processor are those of the platform.
OF_PLATFORM = ["platform", "desktop", "office"]


def lines(folder, kinds):
    files = (path for path in folder.rglob("*") if path.suffix in kinds) if folder.is_dir() else ()
    return sum(len(path.read_bytes().splitlines()) for path in files)


def main():
    top = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    code = {room: lines(top / "src" / room, {".cpp", ".h", ".ui"}) for room in ROOMS}
    tests = {room: sum(lines(top / "tests" / part, {".cpp", ".h", ".py"}) for part in (OF_PLATFORM if room == "platform" else [room]))
             for room in ROOMS}
    code["all"], tests["all"] = lines(top / "src", {".cpp", ".h", ".ui"}), lines(top / "tests", {".cpp", ".h", ".py"})
    for room in [*ROOMS, "all"]:
        print(f"| {room} | {code[room]} | {tests[room]} | {100 * tests[room] // code[room]} % |")


main()
