#!/usr/bin/env python3
"""Compares what the program read from an Access file with what other programs read from it, value by value.

    access_readers.py FILE DUMP

DUMP holds a line of JSON for each table: its name, columns, and rows of texts as the program shows them, null for
null. Asks mdb-export (mdbtools), and mdb-reader (npm) if TARVELLO_MDB_READER names the folder of that package.
Ends with 77 if mdb-export is not there.
"""
import csv
import io
import json
import os
import shutil
import subprocess
import sys

NULL = "\x01null\x01"
DATE = "%d/%m/%Y"
JAVASCRIPT = """
const MDBReader = (await import(process.argv[1])).default;
const fs = await import("fs");
const reader = new MDBReader(fs.readFileSync(process.argv[2]));
const two = (n) => String(n).padStart(2, "0");
const text = (v) => v === null || v === undefined ? null : v instanceof Date
    ? `${two(v.getUTCDate())}/${two(v.getUTCMonth() + 1)}/${v.getUTCFullYear()}` : String(v);
const result = {};
for (const name of process.argv.slice(3)) {
    const table = reader.getTable(name);
    const columns = table.getColumnNames();
    result[name] = table.getData().map((row) => Object.fromEntries(columns.map((c) => [c, text(row[c])])));
}
console.log(JSON.stringify(result));
"""


def by_mdb_export(path, table):
    command = ["mdb-export", "-0", NULL, "-D", DATE, "-T", DATE, path, table]
    output = subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")
    rows = list(csv.reader(io.StringIO(output, newline="")))
    return [{name: None if value == NULL else value for name, value in zip(rows[0], row)} for row in rows[1:]]


def by_mdb_reader(package, path, tables):
    entry = json.load(open(os.path.join(package, "package.json")))
    module = entry.get("main") or entry["exports"]["."]["import"]
    command = ["node", "--input-type=module", "-e", JAVASCRIPT, os.path.join(os.path.abspath(package), module), path]
    return json.loads(subprocess.run(command + tables, capture_output=True, check=True).stdout)


def compare(who, table, columns, ours, theirs):
    """The order of rows is each program's own, so they are matched as a multitude. To mdb-export an empty text and
    null are one; mdb-reader tells them apart."""
    def key(row):
        values = [row.get(column) for column in columns]
        return json.dumps([v or "" for v in values] if who == "mdb-export" else values, ensure_ascii=False)

    ours = sorted(key(dict(zip(columns, row))) for row in ours)
    theirs = sorted(key(row) for row in theirs)
    if ours == theirs:
        return 0
    print(f"{who} and the program disagree on {table}: {len(theirs)} rows and {len(ours)}")
    for mine, other in [(a, b) for a, b in zip(ours, theirs) if a != b][:3]:
        print(f"  program: {mine[:600]}\n  {who}: {other[:600]}")
    return 1


def main():
    path, dump = sys.argv[1:]
    if not shutil.which("mdb-export"):
        return 77
    tables = [json.loads(line) for line in open(dump, encoding="utf-8")]
    package = os.environ.get("TARVELLO_MDB_READER")
    read = by_mdb_reader(package, path, [table["name"] for table in tables]) if package else {}
    bad = 0
    for table in tables:
        bad += compare("mdb-export", table["name"], table["columns"], table["rows"], by_mdb_export(path, table["name"]))
        if package:
            bad += compare("mdb-reader", table["name"], table["columns"], table["rows"], read[table["name"]])
    print(f"{path}: {sum(len(table['rows']) for table in tables)} rows compared" + (", mdb-reader too" if package else ""))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
