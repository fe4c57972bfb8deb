#!/usr/bin/env python3
"""Compares what the program read from an Access file with what others read from it, value by value.

    access_readers.py FILE DUMP

DUMP holds a line of JSON for each table: its name, columns, and rows of texts as the program shows them, null for
null. Asks mdb-export (mdbtools) for all values, and access_checker.py for what an empty text is and what null: to
mdb-export they are one.
"""
import csv
import io
import json
import subprocess
import sys

import access_checker

NULL = "\x01null\x01"
DATE = "%d/%m/%Y"
TEXT = 10


def by_mdb_export(path, table):
    command = ["mdb-export", "-0", NULL, "-D", DATE, "-T", DATE, path, table]
    output = subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")
    rows = list(csv.reader(io.StringIO(output, newline="")))
    return [{name: "" if value == NULL else value for name, value in zip(rows[0], row)} for row in rows[1:]]


def by_checker(check, table):
    """Texts as they are, of other values whether they are there; and the columns that are texts."""
    found = next(one for one in check.tables if one.name == table)
    rows = check.live_rows(found, check.file.members(found.owned), quiet=True)
    texts = {column.name for column in found.columns if column.type == TEXT}
    return [{column.name: None if values[column.number] is None
             else access_checker.text_of(values[column.number]) if column.name in texts else "there"
             for column in found.columns} for _, values in rows], texts


def compare(who, table, columns, ours, theirs):
    """The order of rows is each program's own, so they are matched as a multitude."""
    ours = sorted(json.dumps(row, ensure_ascii=False) for row in ours)
    theirs = sorted(json.dumps([row.get(column) for column in columns], ensure_ascii=False) for row in theirs)
    if ours == theirs:
        return 0
    print(f"{who} and the program disagree on {table}: {len(theirs)} rows and {len(ours)}")
    for mine, other in [(a, b) for a, b in zip(ours, theirs) if a != b][:3]:
        print(f"  program: {mine[:600]}\n  {who}: {other[:600]}")
    return 1


def main():
    path, dump = sys.argv[1:]
    check, bad, count = access_checker.Check(path), 0, 0
    check.run()
    with open(dump, encoding="utf-8") as lines:
        tables = [json.loads(line) for line in lines]
    for table in tables:
        name, columns, rows = table["name"], table["columns"], table["rows"]
        count += len(rows)
        bad += compare("mdb-export", name, columns, [[value or "" for value in row] for row in rows],
                       by_mdb_export(path, name))
        theirs, texts = by_checker(check, name)
        ours = [[value if value is None or column in texts else "there" for column, value in zip(columns, row)]
                for row in rows]
        bad += compare("access_checker.py", name, columns, ours, theirs)
    print(f"{path}: {count} rows compared")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
