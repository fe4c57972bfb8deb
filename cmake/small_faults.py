#!/usr/bin/env python3
"""Puts small faults into the program, one at a time, and says which of them the tests of the core do not notice.

small_faults.py CLONE --room invoices --count 20 --seed 1 [--tests 'Invoice*:Numbering*'] [--desktop]
CLONE is a clone of the repository that nobody needs otherwise: it is built, and its sources are changed and put back. A fault that does not
compile does not count. With --tests only these look; with --desktop those of the windows look at what the core's have not seen.
"""

import argparse
import os
import pathlib
import random
import re
import subprocess
import sys

CHANGES = [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "), (" && ", " || "),
           (" || ", " && "), (" + 1", ""), (" - 1", ""), ("true", "false"), ("false", "true"), ("if (!", "if ("), (" + ", " - "), (" * ", " + ")]
CALL = re.compile(r"\s+[A-Za-z_][\w.:>\[\]-]*\(.*\);\s*")


def faults(top, room):
    """Every place with what would stand there instead: a sign turned round, or a call left out."""
    for path in sorted((top / "src" / room).rglob("*.cpp")):
        if "/platform/qt/" in str(path) or "/platform/office/" in str(path):
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(keepends=True)):
            code = line.split("//")[0]
            if code.lstrip().startswith(("#", "*", "/", "case ", "static_assert")):
                continue
            for found, put in CHANGES:
                for match in re.finditer(re.escape(found) + (r"\b" if found[-1].isalnum() else ""), code):
                    yield path, number, line[: match.start()] + put + line[match.end():]
            if CALL.fullmatch(code):
                yield path, number, "\n"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("clone", type=pathlib.Path)
    parser.add_argument("--room", default="")
    parser.add_argument("--count", type=int, default=20)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--tests", default="*")
    parser.add_argument("--desktop", action="store_true")
    wanted = parser.parse_args()
    top = wanted.clone.resolve()
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")

    def run(*command):
        try:
            return subprocess.run(command, cwd=top, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=900).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def passes(binary, tests):
        return run("build/bin/" + binary, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + tests)

    if not (top / "build/build.ninja").exists() and not run("cmake", "--preset", "release"):
        sys.exit("does not configure")
    if not run("cmake", "--build", "build", "--target", "core_tests") or not passes("core_tests", wanted.tests):
        sys.exit("does not build, or fails without a fault")
    places = list(faults(top, wanted.room))
    random.Random(wanted.seed).shuffle(places)
    noticed = survived = 0
    for path, number, put in places:
        if noticed + survived == wanted.count:
            break
        whole = path.read_text(encoding="utf-8")
        lines = whole.splitlines(keepends=True)
        was, lines[number] = lines[number], put
        path.write_text("".join(lines), encoding="utf-8")
        try:
            if not run("cmake", "--build", "build", "--target", "core_tests"):
                continue
            seen = not passes("core_tests", wanted.tests)
            if not seen and wanted.desktop:
                seen = run("cmake", "--build", "build", "--target", "desktop_tests") and not passes("desktop_tests", "*")
            noticed, survived = noticed + seen, survived + (not seen)
            if not seen:
                print(f"{path.relative_to(top)}:{number + 1}\n  - {was.strip()}\n  + {put.strip()}", flush=True)
        finally:
            path.write_text(whole, encoding="utf-8")
    print(f"{noticed} of {noticed + survived} faults noticed, {len(places)} places")


main()
