#!/usr/bin/env python3
"""Compares what the program read from an Access file with what other programs read from it, value by value.

    access_readers.py FILE DUMP FOLDER

DUMP holds a line of JSON for each table: its name, columns, and rows of texts as the program shows them, null for
null. Asks mdb-export (mdbtools) and mdb-reader, a package that npm brings into FOLDER the first time. Ends with 77
and says why if one of them could not be asked and nobody disagrees.
"""
import csv
import fcntl
import io
import json
import os
import shutil
import subprocess
import sys
import time

NULL = "\x01null\x01"
DATE = "%d/%m/%Y"
WANTED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "npm")
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


def file_text(*path):
    path = os.path.join(*path)
    return open(path, encoding="utf-8").read() if os.path.exists(path) else None


def mdb_reader(folder):
    """The folder of the package, and what is wrong if there is none."""
    if not shutil.which("node") or not shutil.which("npm"):
        return None, "node and npm are not installed"
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "lock"), "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)  # tests run side by side
        package, failed = os.path.join(folder, "node_modules", "mdb-reader"), os.path.join(folder, "failed")
        versions = file_text(WANTED, "package-lock.json")
        # npm writes its own list last of all.
        if file_text(folder, "package-lock.json") == versions and file_text(folder, "node_modules", ".package-lock.json"):
            return package, None
        if os.path.exists(failed) and time.time() - os.path.getmtime(failed) < 600:
            return None, file_text(failed)
        for name in ("package.json", "package-lock.json"):
            shutil.copy(os.path.join(WANTED, name), folder)
        result = subprocess.run(["npm", "ci", "--ignore-scripts", "--no-audit", "--no-fund", "--fetch-retries=0",
                                 "--fetch-timeout=20000"], cwd=folder, capture_output=True, text=True)
        if result.returncode == 0:
            return package, None
        reason = "npm could not bring mdb-reader: " + result.stderr.strip()[:500]
        with open(failed, "w", encoding="utf-8") as file:
            file.write(reason)
        return None, reason


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
    path, dump, folder = sys.argv[1:]
    tables = [json.loads(line) for line in open(dump, encoding="utf-8")]
    names = [table["name"] for table in tables]
    package, missing = mdb_reader(folder)
    read = {}
    if package:
        read["mdb-reader"] = by_mdb_reader(package, path, names)
    if shutil.which("mdb-export"):
        read["mdb-export"] = {name: by_mdb_export(path, name) for name in names}
    else:
        missing = "mdbtools is not installed"
    bad = sum(compare(who, table["name"], table["columns"], table["rows"], theirs[table["name"]])
              for who, theirs in read.items() for table in tables)
    print(f"{path}: {sum(len(table['rows']) for table in tables)} rows compared with {' and '.join(read) or 'nobody'}")
    if missing:
        print(f"not all were asked: {missing}")
    return 1 if bad else 77 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
