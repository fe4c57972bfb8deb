#!/usr/bin/env python3
"""Prints the cells of a .csv or .xlsx file, one line a row, by nothing but the formats: what a spreadsheet would see.

A cell of a sheet is its kind and its value: t a text, n a number, with the number format where there is one.
"""

import csv
import re
import sys
import xml.etree.ElementTree as tree
import zipfile

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"


def print_csv(path):
    with open(path, "rb") as file:
        assert file.read(3) == b"\xef\xbb\xbf", "no mark"
    with open(path, encoding="utf-8-sig", newline="") as file:
        for row in csv.reader(file, delimiter=";", strict=True):
            print("|".join(row))


def print_xlsx(path):
    with zipfile.ZipFile(path) as archive:
        assert archive.testzip() is None
        parts = {name: tree.fromstring(archive.read(name)) for name in archive.namelist()}
    print("sheet", parts["xl/workbook.xml"].find(f".//{MAIN}sheet").get("name"))
    styles = parts["xl/styles.xml"]
    formats = {item.get("numFmtId"): item.get("formatCode") for item in styles.iter(f"{MAIN}numFmt")}
    used = [formats.get(item.get("numFmtId"), "") for item in styles.find(f"{MAIN}cellXfs")]
    sheet = parts["xl/worksheets/sheet1.xml"]
    print("frozen", sheet.find(f".//{MAIN}pane").get("topLeftCell"), "filter", sheet.find(f"{MAIN}autoFilter").get("ref"))
    for row in sheet.iter(f"{MAIN}row"):
        cells = []
        for cell in row:
            column = re.match("[A-Z]+", cell.get("r")).group()
            if cell.get("t") == "inlineStr":
                cells.append(f"{column} t {''.join(cell.itertext())}")
            else:
                cells.append(f"{column} n {float(cell.findtext(MAIN + 'v')):.15g} {used[int(cell.get('s', 0))]}".rstrip())
        print("|".join(cells))


(print_csv if sys.argv[1].endswith(".csv") else print_xlsx)(sys.argv[1])
