#!/usr/bin/env python3
"""Checks a file of Access 2000-2003 from end to end: every page in exactly one place, every index complete and in
order, every count right, every long value whole and used once.

    access_checker.py FILE [--before FILE]

It knows the format by itself and shares no code with the program. With --before, what was already odd in that
earlier state of the file (counts that another writer let go, pages that no map lists) is not held against it.
Prints what is wrong and ends with 1, or prints one line of figures and ends with 0.
"""
import argparse
import csv
import os
import struct
import sys
from collections import defaultdict

SIZE = 4096
BITS_PER_PAGE = (SIZE - 4) * 8
HERE = os.path.dirname(os.path.abspath(__file__))
SORT_CODES = os.path.join(HERE, "..", "..", "..", "src", "store", "access", "sort_codes.csv")


class Broken(Exception):
    pass


def u16(data, at):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at):
    return struct.unpack_from("<I", data, at)[0]


def pointer(word):
    return word >> 8, word & 0xFF


class SortCodes:
    def __init__(self):
        self.codes = {}
        with open(SORT_CODES, newline="") as table:
            for line in csv.DictReader(table, delimiter=";"):
                extra = int(line["accent_or_code"], 16) if line["accent_or_code"] else None
                self.codes[chr(int(line["codepoint"], 16))] = (line["kind"], bytes.fromhex(line["inline"]), extra)

    def key(self, text):
        """The key of a text; None if the table lacks a character."""
        inline, accents, ignored, place = b"", [], b"", 0
        for character in text.rstrip(" "):
            if character not in self.codes:
                return None
            kind, codes, extra = self.codes[character]
            if kind == "U":
                ignored += struct.pack(">HBB", 0x8000 + 7 + 4 * place, 6, extra)
                continue
            place += 1
            inline += codes
            accents.append(extra if kind == "I" else 2)
        while accents and accents[-1] == 2:
            accents.pop()
        key = inline + b"\x01" + bytes(accents)
        if ignored:
            key += b"\x01\x01\x01" + ignored
        return key + b"\x00"


class Column:
    def __init__(self, data):
        self.type = data[0]
        self.number, self.place = u16(data, 5), u16(data, 7)
        self.sort_order = u32(data, 11)
        self.fixed, self.autonumber = data[15] & 1, data[15] & 4
        self.fixed_place, self.length = u16(data, 21), u16(data, 23)
        self.owned = self.with_room = None


class Index:
    pass


class File:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        if len(self.data) % SIZE:
            raise Broken("the size is no multiple of a page")
        self.count = len(self.data) // SIZE

    def page(self, number):
        if not 0 <= number < self.count:
            raise Broken(f"page {number} is missing")
        return self.data[number * SIZE:(number + 1) * SIZE]

    def slots(self, number):
        page = self.page(number)
        if page[0] != 1:
            raise Broken(f"page {number} holds no rows")
        count = u16(page, 12)
        end, result = SIZE, []
        for row in range(count):
            word = u16(page, 14 + 2 * row)
            start = word & 0x1FFF
            if not 14 + 2 * count <= start <= end:
                raise Broken(f"row {row} of page {number} lies outside of its room")
            result.append((word & 0xC000, page[start:end]))
            end = start
        return result, end - 14 - 2 * count

    def row(self, place):
        slots, _ = self.slots(place[0])
        if place[1] >= len(slots):
            raise Broken(f"there is no row {place[1]} on page {place[0]}")
        return slots[place[1]]

    def members(self, place, pages_of_bits=None):
        """The pages of a usage map."""
        data = self.row(place)[1]
        if data[0] == 0:
            first = u32(data, 1)
            return {first + i for i in range((len(data) - 5) * 8) if data[5 + i // 8] >> (i % 8) & 1}
        if data[0] != 1:
            raise Broken(f"the map at {place} is of no known kind")
        result = set()
        for entry in range((len(data) - 1) // 4):
            number = u32(data, 1 + 4 * entry)
            if not number:
                continue
            page = self.page(number)
            if page[0] != 5:
                raise Broken(f"page {number} holds no bits")
            if pages_of_bits is not None:
                pages_of_bits.append(number)
            for at in range(4, SIZE):
                if page[at]:
                    first = entry * BITS_PER_PAGE + (at - 4) * 8
                    result |= {first + i for i in range(8) if page[at] >> i & 1}
        return result

    def free_pages(self, pages_of_bits):
        """The free pages of the file: those that the global map marks, and those that it says nothing about."""
        data = self.row((1, 0))[1]
        marked = self.members((1, 0), pages_of_bits)
        if data[0] == 0:
            first, spoken = u32(data, 1), (len(data) - 5) * 8
            told = range(first, first + spoken)
            return {p for p in range(self.count) if p in marked or p not in told}
        told = [bool(u32(data, 1 + 4 * e)) for e in range((len(data) - 1) // 4)]
        return {p for p in range(self.count)
                if p in marked or p // BITS_PER_PAGE >= len(told) or not told[p // BITS_PER_PAGE]}


class Table:
    def __init__(self, file, number, name):
        self.file, self.number, self.name = file, number, name
        self.pages, text = [], b""
        while number:
            page = file.page(number)
            if page[0] != 2 or number in self.pages:
                raise Broken(f"the definition of {name} is not whole")
            self.pages.append(number)
            text += page[8:] if text else page
            number = u32(page, 4)
        self.rows, self.last_number = u32(text, 16), u32(text, 20)
        self.row_columns, self.variable_columns = u16(text, 41), u16(text, 43)
        columns, logical, real = u16(text, 45), u32(text, 47), u32(text, 51)
        self.owned, self.with_room = pointer(u32(text, 55)), pointer(u32(text, 59))
        self.distinct = [u32(text, 63 + 12 * i + 4) for i in range(real)]
        at = 63 + 12 * real
        self.columns = [Column(text[at + 25 * i:at + 25 * i + 25]) for i in range(columns)]
        at += 25 * columns

        def name_at(at):
            size = u16(text, at)
            return text[at + 2:at + 2 + size].decode("utf-16-le"), at + 2 + size

        for column in self.columns:
            column.name, at = name_at(at)
        by_number = {column.number: column for column in self.columns}
        self.indexes = []
        for i in range(real):
            data = text[at + 52 * i:at + 52 * i + 52]
            index = Index()
            index.columns = [(by_number[u16(data, 4 + 3 * k)], data[6 + 3 * k] & 1)
                             for k in range(10) if u16(data, 4 + 3 * k) != 0xFFFF]
            index.map, index.root, index.flags = pointer(u32(data, 34)), u32(data, 38), data[46]
            index.label = f"index {i} of {name}"
            self.indexes.append(index)
        at += 52 * real + 28 * logical
        for _ in range(logical):
            _, at = name_at(at)
        while u16(text, at) != 0xFFFF:
            column = by_number.get(u16(text, at))
            if column is None:
                column = Column(bytes(25))
                column.number, column.name = u16(text, at), "(deleted)"
                self.columns.append(column)
            column.owned, column.with_room = pointer(u32(text, at + 2)), pointer(u32(text, at + 6))
            at += 10
        sizes = [c.fixed_place + c.length for c in self.columns if c.fixed and c.type != 1]
        self.least = (2 + max(sizes, default=0) + 2 + 2 * self.variable_columns + 2 + (self.row_columns + 7) // 8)

    def values(self, row):
        """Number of a column -> its stored bytes, None for null; of a yes/no column a bool."""
        columns = u16(row, 0)
        mask = len(row) - (columns + 7) // 8
        ends, variable, fixed_end = [], 0, mask
        if self.variable_columns:
            variable = u16(row, mask - 2)
            first = mask - 2 - 2 * (variable + 1)
            if first < 2:
                raise Broken("a row is too short")
            ends = [u16(row, mask - 4 - 2 * k) for k in range(variable + 1)]
            fixed_end = first
        result = {}
        for column in self.columns:
            has = column.number < columns and bool(row[mask + column.number // 8] >> (column.number % 8) & 1)
            if column.type == 1:
                result[column.number] = has
            elif not has:
                result[column.number] = None
            elif column.fixed:
                at = 2 + column.fixed_place
                if at + column.length > fixed_end:
                    raise Broken("a value lies outside of its row")
                result[column.number] = row[at:at + column.length]
            elif column.place >= variable:
                result[column.number] = None
            else:
                start, end = ends[column.place], ends[column.place + 1]
                if not 2 <= start <= end <= fixed_end:
                    raise Broken("a value lies outside of its row")
                result[column.number] = row[start:end]
        return result


def text_of(data):
    if data[:2] != b"\xff\xfe":
        return data.decode("utf-16-le", "replace")
    text, narrow, rest = "", True, data[2:]
    while rest:
        if narrow:
            end = rest.find(0)
            run, rest = (rest, b"") if end < 0 else (rest[:end], rest[end + 1:])
            text += run.decode("latin-1")
        else:
            end = 0
            while end < len(rest) and rest[end]:
                end += 2
            text += rest[:end].decode("utf-16-le", "replace")
            rest = rest[end + 1:]
        narrow = not narrow
    return text


class Check:
    def __init__(self, path):
        self.file, self.codes = File(path), SortCodes()
        self.problems, self.roles = [], defaultdict(list)
        self.distinct_errors, self.unlisted, self.entries = {}, {}, 0

    def wrong(self, text):
        self.problems.append(text)

    def role(self, page, role):
        self.roles[page].append(role)

    def run(self):
        file = self.file
        bits = []
        free = file.free_pages(bits)
        holders = {1}
        catalogue = Table(file, 2, "MSysObjects")
        tables = [catalogue]
        by_name = {column.name: column.number for column in catalogue.columns}
        for _, values in self.live_rows(catalogue, file.members(catalogue.owned), quiet=True):
            if values[by_name["Type"]] == b"\x01\x00":
                number = u32(values[by_name["Id"]], 0) & 0xFFFFFF
                if number != 2:
                    tables.append(Table(file, number, text_of(values[by_name["Name"]])))
        for table in tables:
            for page in table.pages:
                self.role(page, f"definition of {table.name}")
            maps = [table.owned, table.with_room] + [index.map for index in table.indexes]
            maps += [m for c in table.columns if c.owned for m in (c.owned, c.with_room)]
            for place in maps:
                holders.add(place[0])
                file.members(place, bits)
            self.table(table)
        for page in bits:
            self.role(page, "bits of a map")
        for page in holders:
            self.role(page, "rows that are maps")
        self.role(0, "header")
        for page in free:
            self.role(page, "free")
        self.homeless = set()
        for page in range(file.count):
            roles = self.roles.get(page, [])
            if not roles:
                self.homeless.add(page)
            elif len(roles) > 1:
                self.wrong(f"page {page} is in several places: {', '.join(roles)}")
        for page in self.roles:
            if page >= file.count:
                self.wrong(f"page {page} is behind the end: {self.roles[page]}")
        self.tables = tables

    def live_rows(self, table, owned, quiet=False):
        """Place and values of each row; checks the pages on the way."""
        targets, moved = set(), {}
        for number in sorted(owned):
            page = self.file.page(number)
            if page[0] != 1 or u32(page, 4) != table.number:
                self.wrong(f"page {number} is no data page of {table.name}")
                continue
            slots, free = self.file.slots(number)
            if not quiet:
                if u16(page, 2) != free:
                    self.wrong(f"page {number} of {table.name} says {u16(page, 2)} bytes free, it has {free}")
                if len(slots) > 255:
                    self.wrong(f"page {number} of {table.name} has {len(slots)} rows")
            for row, (flags, data) in enumerate(slots):
                if flags == 0xC000:
                    continue
                if flags == 0x8000:
                    targets.add((number, row))
                    continue
                if flags == 0x4000:
                    target = pointer(u32(data, 0))
                    target_flags, data = self.file.row(target)
                    if target_flags != 0x8000 or target[0] not in owned:
                        self.wrong(f"row {row} of page {number} of {table.name} leads nowhere")
                        continue
                    moved[target] = moved.get(target, 0) + 1
                try:
                    yield (number, row), table.values(data)
                except (Broken, struct.error, IndexError) as reason:
                    self.wrong(f"row {row} of page {number} of {table.name}: {reason}")
        if not quiet:
            for target in targets ^ set(moved):
                self.wrong(f"the moved row at {target} of {table.name} belongs to nobody")
            for target, count in moved.items():
                if count > 1:
                    self.wrong(f"the moved row at {target} of {table.name} belongs to {count} rows")

    def table(self, table):
        owned = self.file.members(table.owned)
        for page in owned:
            self.role(page, f"data of {table.name}")
        rows = list(self.live_rows(table, owned))
        if len(rows) != table.rows:
            self.wrong(f"{table.name} says {table.rows} rows, it has {len(rows)}")
        self.room(table.name, owned, self.file.members(table.with_room), table.least)
        for column in table.columns:
            if column.autonumber and column.type == 4:
                highest = max((struct.unpack("<i", v[column.number])[0] for _, v in rows if v[column.number]), default=0)
                if highest > table.last_number:
                    self.wrong(f"{table.name} has number {highest}, above the last one given, {table.last_number}")
            if column.owned:
                self.long_values(table, column, rows)
        for position, index in enumerate(table.indexes):
            self.index(table, position, index, rows)

    def room(self, label, owned, listed, least):
        for page in listed - owned:
            self.wrong(f"page {page} is listed with room but not owned by {label}")
        for page in owned:
            slots, free = self.file.slots(page)
            if free >= least + 2 and len(slots) < 255 and page not in listed:
                self.unlisted[page] = (label, free)

    def long_values(self, table, column, rows):
        label = f"{table.name}.{column.name}"
        owned = self.file.members(column.owned)
        there = set()
        for page in owned:
            self.role(page, f"long values of {label}")
            data = self.file.page(page)
            if data[0] != 1 or data[4:8] != b"LVAL":
                self.wrong(f"page {page} is no page of long values, for {label}")
                continue
            slots, free = self.file.slots(page)
            if u16(data, 2) != free:
                self.wrong(f"page {page} of {label} says {u16(data, 2)} bytes free, it has {free}")
            there |= {(page, row) for row, (flags, _) in enumerate(slots) if flags != 0xC000}
        self.room(label, owned, self.file.members(column.with_room), 65)
        used = set()
        for place, values in rows:
            stored = values.get(column.number)
            if not stored:
                continue
            size, kind = u32(stored, 0) & 0x3FFFFFFF, u32(stored, 0) >> 30
            if kind == 2:
                if len(stored) < 12 + size:
                    self.wrong(f"the long value of {label} at {place} is cut off")
                continue
            at, found = pointer(u32(stored, 4)), 0
            while at[0]:
                if at in used or at not in there:
                    self.wrong(f"the long value of {label} at {place} leads to {at}, which is not its own")
                    break
                used.add(at)
                data = self.file.row(at)[1]
                found += len(data) - (0 if kind == 1 else 4)
                at = (0, 0) if kind == 1 else pointer(u32(data, 0))
            if found != size:
                self.wrong(f"the long value of {label} at {place} has {found} bytes of {size}")
        for place in there - used:
            self.wrong(f"the long value of {label} at {place} belongs to no row")

    def index_entries(self, number, index):
        page = self.file.page(number)
        starts = [480] + [480 + at * 8 + bit for at in range(453) for bit in range(8) if page[27 + at] >> bit & 1]
        prefix, entries = u16(page, 24), []
        for start, end in zip(starts, starts[1:]):
            entries.append((entries[0][:prefix] if entries else b"") + page[start:end])
        if u16(page, 2) != SIZE - starts[-1]:
            self.wrong(f"page {number} of {index.label} says {u16(page, 2)} bytes free, it has {SIZE - starts[-1]}")
        if entries != sorted(set(entries)):
            self.wrong(f"the entries of page {number} of {index.label} are not in order")
        return entries

    def walk(self, table, index, number, level, levels):
        """The last entry below a page; collects the pages of each level."""
        page = self.file.page(number)
        if page[0] not in (3, 4) or u32(page, 4) != table.number:
            raise Broken(f"page {number} is no page of {index.label}")
        if any(number == seen for pages in levels.values() for seen, _, _ in pages):
            raise Broken(f"page {number} comes twice in {index.label}")
        entries = self.index_entries(number, index)
        levels[level].append((number, page[0], entries))
        if page[0] == 4:
            return entries[-1] if entries else None
        children = [int.from_bytes(entry[-4:], "big") for entry in entries]
        told = [entry[:-4] for entry in entries]
        tail = u32(page, 20)
        if tail and tail not in children:
            children.append(tail)
            told.append(None)
        if tail and children[-1] != tail:
            self.wrong(f"the tail child of page {number} of {index.label} is not the last one")
        if not children:
            raise Broken(f"page {number} of {index.label} is a node without children")
        last = None
        kinds = {self.file.page(child)[0] for child in children}
        if len(kinds) != 1:
            raise Broken(f"the children of page {number} of {index.label} are of several kinds")
        for position, (child, entry) in enumerate(zip(children, told)):
            last = self.walk(table, index, child, level + 1, levels)
            if entry is not None and last != entry:
                self.wrong(f"page {number} of {index.label} has a wrong last entry for its child {child}")
            if kinds == {3}:
                self.neighbours(index, child, children[position - 1] if position else 0,
                                children[position + 1] if position + 1 < len(children) else 0)
        return last

    def neighbours(self, index, number, previous, following):
        page = self.file.page(number)
        if (u32(page, 12), u32(page, 16)) != (previous, following):
            self.wrong(f"page {number} of {index.label} has the neighbours {u32(page, 12)} and {u32(page, 16)}, "
                       f"not {previous} and {following}")

    def index(self, table, position, index, rows):
        pages = self.file.members(index.map)
        for page in pages:
            self.role(page, index.label)
        levels = defaultdict(list)
        try:
            self.walk(table, index, index.root, 0, levels)
        except Broken as reason:
            self.wrong(str(reason))
            return
        visited = {number for level in levels.values() for number, _, _ in level}
        if visited != pages:
            self.wrong(f"{index.label} has the pages {sorted(visited)}, its map says {sorted(pages)}")
        leaves = [(number, entries) for level in levels.values() for number, kind, entries in level if kind == 4]
        for at, (number, entries) in enumerate(leaves):
            self.neighbours(index, number, leaves[at - 1][0] if at else 0,
                            leaves[at + 1][0] if at + 1 < len(leaves) else 0)
            if not entries and len(leaves) > 1:
                self.wrong(f"page {number} of {index.label} is empty")
        found = [entry for _, entries in leaves for entry in entries]
        if found != sorted(set(found)):
            self.wrong(f"{index.label} is not in order")
        self.entries += len(found)
        distinct = len({entry[:-4] for entry in found})
        self.distinct_errors[index.label] = table.distinct[position] - distinct
        expected = self.expected(index, rows)
        if expected is None:
            return
        if index.flags & 1 and len({e[:-4] for e in expected if e[0] not in (0, 0xFF)}) != \
                len([e for e in expected if e[0] not in (0, 0xFF)]):
            self.wrong(f"{index.label} is unique but has a key twice")
        missing, strange = set(expected) - set(found), set(found) - set(expected)
        if missing:
            self.wrong(f"{index.label} lacks {len(missing)} entries, such as {min(missing).hex()}")
        if strange:
            self.wrong(f"{index.label} has {len(strange)} entries too many, such as {min(strange).hex()}")

    def expected(self, index, rows):
        """The entries that the rows ask for; None if a key is not known."""
        result = []
        for (page, row), values in rows:
            key, nulls = b"", 0
            for column, ascending in index.columns:
                part = self.key(column, values[column.number])
                if part is None:
                    return None
                nulls += values[column.number] is None
                key += part if ascending else bytes(byte ^ 0xFF for byte in part)
            if not (index.flags & 2 and nulls == len(index.columns)):
                result.append(key + page.to_bytes(3, "big") + bytes([row]))
        return result

    def key(self, column, stored):
        if stored is None:
            return b"\x00"
        if column.type == 1:
            return b"\x7f\x00" if stored else b"\x7f\xff"
        if column.type in (3, 4, 5):
            turned = bytearray(reversed(stored))
            turned[0] ^= 0x80
            return b"\x7f" + bytes(turned)
        if column.type in (6, 7, 8):
            turned = bytes(reversed(stored))
            if turned[0] & 0x80:
                return b"\x7f" + bytes(byte ^ 0xFF for byte in turned)
            return b"\x7f" + bytes([turned[0] ^ 0x80]) + turned[1:]
        if column.type == 10 and column.sort_order == 0x0409:
            key = self.codes.key(text_of(stored))
            return None if key is None else b"\x7f" + key
        return None


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("file")
    arguments.add_argument("--before", help="an earlier state whose oddities are allowed")
    options = arguments.parse_args()
    allowed = Check(options.before) if options.before else None
    check = Check(options.file)
    try:
        if allowed:
            allowed.run()
        check.run()
    except (Broken, struct.error, IndexError) as reason:
        print(f"{options.file}: {reason}")
        return 1
    excused = set(allowed.problems) if allowed else set()
    problems = [problem for problem in check.problems if problem not in excused]
    for label, error in check.distinct_errors.items():
        if error != (allowed.distinct_errors.get(label, 0) if allowed else 0):
            problems.append(f"{label} says {error:+} distinct entries more than it has")
    for page, (label, free) in check.unlisted.items():
        if not allowed or allowed.unlisted.get(page) != (label, free):
            problems.append(f"page {page} of {label} has {free} bytes free, but is not listed with room")
    for page in check.homeless - (allowed.homeless if allowed else set()):
        problems.append(f"page {page} is in no map")
    for problem in problems:
        print(f"{options.file}: {problem}")
    if not problems:
        rows = sum(table.rows for table in check.tables)
        print(f"{options.file}: sound, {check.file.count} pages, {len(check.tables)} tables, {rows} rows, "
              f"{check.entries} index entries")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
