#!/usr/bin/env python3
"""Compares all values of two archives, of either format, as other programs read them: Python's SQLite, and mdb-export
(mdbtools) for Access files.

    archive_readers.py ONE OTHER

Ends with 77 and says why if there is no mdb-export.
"""
import csv
import decimal
import io
import shutil
import sqlite3
import subprocess
import sys

NULL = "\x01null\x01"
DATE = "%Y-%m-%d"
YES_NO = {"0": "no", "1": "yes", "-1": "yes"}


def by_sqlite(path):
    """For each table the kinds of its columns, by name, and its rows."""
    file = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    tables = {}
    for (name,) in file.execute("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite%'").fetchall():
        kinds = {column: declared.split("(")[0] for _, column, declared, *_ in file.execute(f'PRAGMA table_info("{name}")')}
        rows = file.execute(f'SELECT * FROM "{name}"').fetchall()
        tables[name] = kinds, [dict(zip(kinds, row)) for row in rows]
        for row in tables[name][1]:
            for column, kind in kinds.items():
                if kind == "TENTHOUSANDTHS INT" and row[column] is not None:
                    row[column] = decimal.Decimal(row[column]) / 10000
    return tables


def by_mdb_export(path):
    def ask(*command):
        return subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")

    tables = {}
    for name in ask("mdb-tables", "-1", path).splitlines():
        text = ask("mdb-export", "-0", NULL, "-D", DATE, "-T", DATE, path, name)
        head, *rows = csv.reader(io.StringIO(text, newline=""))
        tables[name] = {}, [dict(zip(head, row)) for row in rows]
    return tables


def read(path):
    with open(path, "rb") as file:
        return by_sqlite(path) if file.read(6) == b"SQLite" else by_mdb_export(path)


def plain(kind, value):
    """A value in one form for all programs. Null and an empty text are one: mdb-export tells them apart not always."""
    text = "" if value is None or value == NULL else str(value)
    if not text:
        return text
    if kind == "BOOLEAN":
        return YES_NO[text]
    if kind == "TENTHOUSANDTHS INT":
        return str(decimal.Decimal(text).normalize())
    return repr(float(text)) if kind == "DOUBLE" else text


def main():
    if not shutil.which("mdb-export"):
        print("mdbtools is not installed")
        return 77
    one, other = (read(path) for path in sys.argv[1:])
    bad = 0 if one.keys() == other.keys() else print("not the same tables:", *one, "and", *other) or 1
    for name in one.keys() & other.keys():
        kinds = one[name][0] or other[name][0]
        columns = kinds or [c for row in other[name][1][:1] for c in row]
        rows = [sorted([plain(kinds.get(c), row.get(c, "no such column")) for c in columns] for row in table[name][1])
                for table in (one, other)]
        if rows[0] != rows[1]:
            bad += 1
            print(f"{name}: {len(rows[0])} and {len(rows[1])} rows")
            print(*[f"{a}\n{b}" for a, b in zip(*rows) if a != b][:3], sep="\n")
    print(sum(len(rows) for _, rows in one.values()), "rows compared")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
