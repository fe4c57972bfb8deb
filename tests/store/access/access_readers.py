#!/usr/bin/env python3
"""Compares what the program read from an archive with what others read from it, tables, columns and every value. Of an
Access file: mdb-export, mdb-tables and mdb-schema (mdbtools), and access_checker.py; else SQLite itself.

    access_readers.py FILE DUMP

DUMP holds for each table its name, names and kinds of columns, and rows of texts as the program shows them; behind a
table, a row, a text stand 1D, 1E, 1F.
"""
import csv
import datetime
import io
import json
import sqlite3
import struct
import subprocess
import sys

import access_checker

NULL = "\x01null\x01"
DATE = "%d/%m/%Y"


def by_mdb_export(path, table):
    command = ["mdb-export", "-0", NULL, "-D", DATE, "-T", DATE, path, table]
    output = subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")
    rows = list(csv.reader(io.StringIO(output, newline="")))
    return [{name: None if value == NULL else value for name, value in zip(rows[0], row)} for row in rows[1:]]


def by_checker(check, name):
    def text(column, stored):
        if stored is None or column.type == 1:
            return stored
        if column.type == 10:
            return access_checker.text_of(stored)
        if column.type == 12:
            return access_checker.text_of(check.file.long_value(stored))
        if column.type in (2, 3, 4, 5):
            number = int.from_bytes(stored, "little", signed=column.type != 2)
            return str(number / 10000 if column.type == 5 else number)
        number = struct.unpack("<f" if column.type == 6 else "<d", stored)[0]
        if column.type == 8:
            return (datetime.date(1899, 12, 30) + datetime.timedelta(int(number))).strftime("%d/%m/%Y")
        return str(number)

    return [{column.name: text(column, values[column.number]) for column in check.tables[name].listed}
            for _, values in check.rows[name]]


def by_sqlite(path, name):
    file = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    kinds = {column: declared for _, column, declared, *_ in file.execute(f'PRAGMA table_info("{name}")')}

    def text(kind, value):
        if value is None:
            return None
        if kind == "DATE":
            return datetime.date.fromisoformat(value).strftime("%d/%m/%Y")
        return str(value / 10000 if kind == "TENTHOUSANDTHS INT" else value)

    return [{column: text(kind, value) for (column, kind), value in zip(kinds.items(), row)}
            for row in file.execute(f'SELECT * FROM "{name}"')]


def plain(kind, value):
    """A value as every program shows it. To the program an empty text and null are one."""
    if kind == "yes_no":
        return str(value).lower() in ("1", "-1", "true")
    if kind == "number" and value:
        return float(value.replace(",", "."))
    return value or ""


def compare(who, table, theirs):
    """The order of rows is each program's own, so they are matched as a multitude."""
    columns = table["columns"]
    ours = sorted(json.dumps([plain(kind, v) for (_, kind), v in zip(columns, row)]) for row in table["rows"])
    theirs = sorted(json.dumps([plain(kind, row.get(name)) for name, kind in columns]) for row in theirs)
    if ours == theirs:
        return 0
    print(f"{who} and the program disagree on {table['name']}: {len(theirs)} rows and {len(ours)}")
    for mine, other in [(a, b) for a, b in zip(ours, theirs) if a != b][:3]:
        print(f"  program: {mine[:600]}\n  {who}: {other[:600]}")
    return 1


def by_mdb_schema(path, tables):
    """Tables whose columns are not all there, as mdb-tables and mdb-schema see them."""
    def ask(*command):
        return subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")

    known = ask("mdb-tables", "-1", path).splitlines()
    missing = [table["name"] for table in tables if table["name"] not in known or
               any(f"[{name}]" not in ask("mdb-schema", "-T", table["name"], path) for name, _ in table["columns"])]
    if missing:
        print(f"mdb-schema lacks columns of {', '.join(missing)}")
    return len(missing)


def main():
    path, dump = sys.argv[1:]
    tables = []
    with open(dump, encoding="utf-8", newline="") as text:
        for table in text.read().split("\x1d")[:-1]:
            head, *rows = table.split("\x1e")
            name, *columns = head.split("\x1f")
            rows = [row.split("\x1f")[:-1] for row in rows]
            tables.append({"name": name, "columns": list(zip(columns[::2], columns[1::2])), "rows": rows})
    with open(path, "rb") as file:
        if file.read(6) == b"SQLite":
            return 1 if sum(compare("SQLite", table, by_sqlite(path, table["name"])) for table in tables) else 0
    bad = by_mdb_schema(path, tables)
    check = access_checker.Check(path)
    check.run()
    for table in tables:
        bad += compare("mdb-export", table, by_mdb_export(path, table["name"]))
        bad += compare("the checker", table, by_checker(check, table["name"]))
    print(f"{path}: {sum(len(table['rows']) for table in tables)} rows compared")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
