#!/usr/bin/env python3
"""Makes sort_codes.inc of sort_codes.csv: make_sort_codes.py < sort_codes.csv > sort_codes.inc"""
import csv
import sys

print("// Made by make_sort_codes.py of sort_codes.csv: code point, kind, inline bytes and how many, accent or code.")
for row in csv.DictReader(sys.stdin, delimiter=";"):
    inline = bytes.fromhex(row["inline"])
    extra = row["accent_or_code"] or "0"
    print("{0x%s, SortCode::Kind::%s, {0x%02X, 0x%02X}, %d, 0x%s}," % (
        row["codepoint"], {"S": "plain", "I": "accented", "U": "ignored"}[row["kind"]],
        inline[0] if inline else 0, inline[1] if len(inline) > 1 else 0, len(inline), extra))
