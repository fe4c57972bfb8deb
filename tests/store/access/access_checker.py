#!/usr/bin/env python3
"""Checks a file of Access 2000-2003 from end to end: every page in exactly one place, every index complete and in
order, every count right, every long value whole and used once.

    access_checker.py FILE [--before FILE] [--like-access]

It knows the format by itself and shares no code and no table with the program. With --before, what was already odd in
that earlier state of the file (counts that another writer let go, pages that no map lists) is not held against it; a
table that was not there must then be byte for byte what Access would have made, its rows in the catalogue too, and if
tables came, no page may differ that is no part of it. --like-access holds all tables to Access's form of definitions.
Prints what is wrong and ends with 1, or prints one line of figures and ends with 0.
"""
import argparse
import itertools
import math
import struct
import sys
import unicodedata
from collections import Counter, defaultdict

SIZE = 4096
BITS_PER_PAGE = (SIZE - 4) * 8
TABLES, PARENT_OF_TABLES, DATABASE = 0x0F000001, 0x0F000000, 0x10000000
FIXED_LENGTHS = {1: 1, 2: 1, 3: 2, 4: 4, 5: 8, 6: 4, 7: 8, 8: 8}


class Broken(Exception):
    pass


def u16(data, at):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at):
    return struct.unpack_from("<I", data, at)[0]


def pointer(word):
    return word >> 8, word & 0xFF


def sort_codes():
    """Character -> inline bytes, accent byte or None, places; or code behind the rest. From the alphabet and the rules
    by which the marks go on: no table of characters."""
    plain, ignored = {}, {}

    def give(characters, codes, accent=None, places=1):
        for character, code in zip(characters, codes):
            plain[character] = (bytes.fromhex(code) if isinstance(code, str) else bytes([code]), accent, places)

    alphabet = "4A 4C 4D 4F 51 53 55 57 59 5B 5C 5E 60 62 64 66 68 69 6B 6D 6F 71 73 75 76 78".split()
    give("abcdefghijklmnopqrstuvwxyz", alphabet)
    give("0123456789²³¹", [*range(0x36, 0x4A, 2), 0x3A, 0x3C, 0x38])
    give(" !\"#$%&()*,./:;?@[\\]", [7, 9, 0xA, *range(0xC, 0x28, 2), 0x27, 0x29, 0x2A])
    give("+<=>", range(0x2C, 0x34, 2))
    for lead, row in ((0x2B, "^2_3`7{9|B}D~F¡10¦11¨12¯13´14¸15¿16˜1C‖35‗36‘37’38‚39‛3A“3B”3C„3D‟3E′3F″40‹46›47"),
                      (0x33, "±4«5»7×9÷A"), (0x35, "€A1"), (0x37, "¼12½16¾1A"), (0x2D, "⁄5"), (0x6E, "™4"), (0x08, "\xa02"),
                      (0x34, "¢A6£A7¤A8¥A9§AA©AB¬AC®AD°AE" "µAF¶B0·B1†B3‡B4•B5‣B6․B7‥B8…B9‰BA"), (0x63, "ŋ5"), (0x6C, "ſ6")):
        for at, character in enumerate(row):
            if character not in "0123456789ABCDEF":
                end = next((i for i in range(at + 1, len(row)) if row[i] not in "0123456789ABCDEF"), len(row))
                give([character], [f"{lead:02X}{int(row[at + 1:end], 16):02X}"])
    for pair, letters, places in (("ß", "ss", 2), ("æ", "ae", None), ("œ", "oe", None), ("þ", "th", None), ("ĳ", "ij", None)):
        plain[pair] = (b"".join(plain[letter][0] for letter in letters), None, places)
    for letter, base, accent in ("ªa\x03", "ºo\x03", "ðd\x68", "øo\x21", "đd\x1e", "ħh\x1e", "ıi\x03", "ĸk\x03", "ŀl\x11", "łl\x1f",
                                 "ŉn\x48", "ƒf\x7b", "ˆ^\x03"):
        plain[letter] = (plain[base][0], ord(accent), 1)
    plain["ŧ"] = (b"\x6e\x06", 0x1E, 1)
    marks = dict(zip(map(chr, (0x300, 0x301, 0x302, 0x303, 0x304, 0x306, 0x307, 0x308, 0x30A, 0x30B, 0x30C, 0x327, 0x328)),
                     b"\x0f\x0e\x12\x19\x17\x15\x10\x13\x1a\x1d\x14\x1c\x1b"))
    for number in range(0xC0, 0x180):
        parts = unicodedata.normalize("NFD", chr(number))
        if len(parts) == 2 and chr(number) not in plain:
            plain[chr(number)] = (plain[parts[0].lower()][0], marks[parts[1]], 1)
    for character in list(plain):
        if len(character.upper()) == 1 and ord(character.upper()) < 0x180:
            plain.setdefault(character.upper(), plain[character])
    ignored.update(zip("'-\xad‐‑‒–—―", (0x80, 0x82, 0x83, 0x84, 0x85, 0x88, 0x89, 0x8B, 0x8C)))
    ignored.update((chr(0x7F + i), 0x1D + i) for i in range(0x21))
    return plain, ignored


PLAIN, IGNORED = sort_codes()


def text_key(text):
    """The key of a text; None if it is not known."""
    inline, accents, ignored, unproven = b"", [], b"", False
    for character in text.rstrip(" "):
        if character in IGNORED:
            if unproven:
                return None
            ignored += struct.pack(">HBB", 0x8007 + 4 * len(accents), 6, IGNORED[character])
            continue
        if character not in PLAIN:
            return None
        codes, accent, places = PLAIN[character]
        if accent and unproven:
            return None
        unproven = unproven or places is None
        inline += codes
        accents += [accent or 2] + [2] * ((places or 1) - 1)
    while accents and accents[-1] == 2:
        accents.pop()
    return inline + b"\x01" + bytes(accents) + (b"\x01\x01\x01" + ignored if ignored else b"") + b"\x00"


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


class Column:
    def __init__(self, data):
        self.data, self.type = data, data[0]
        self.number, self.place = u16(data, 5), u16(data, 7)
        self.fixed, self.autonumber = data[15] & 1, data[15] & 4
        self.fixed_place, self.length = u16(data, 21), u16(data, 23)
        self.owned = self.with_room = None


class Index:
    def __init__(self, data, by_number):
        self.data = data
        self.columns = [(by_number[u16(data, 4 + 3 * k)], data[6 + 3 * k] & 1)
                        for k in range(10) if u16(data, 4 + 3 * k) != 0xFFFF]
        self.map, self.root, self.flags = pointer(u32(data, 34)), u32(data, 38), data[46]


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
        """Flags and bytes of the rows of a page, and its free bytes."""
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
        """The pages of a usage map; those of a pointer that is 0 are none."""
        if place == (0, 0):
            return set()
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

    def long_value(self, stored):
        size, place = u32(stored, 0), pointer(u32(stored, 4))
        if size >> 31:
            return stored[12:12 + (size & 0x3FFFFFFF)]
        if size >> 30:
            return self.row(place)[1]
        value = b""
        while place[0]:
            link, value = self.row(place)[1], value + self.row(place)[1][4:]
            place = pointer(u32(link, 0))
        return value

    def free_pages(self, pages_of_bits):
        """The pages of the file that are free: those that the global map marks, and those behind its range. What lies
        below its first page is taken."""
        data, marked = self.row((1, 0))[1], self.members((1, 0), pages_of_bits)
        end = u32(data, 1) + (len(data) - 5) * 8 if data[0] == 0 else (len(data) - 1) // 4 * BITS_PER_PAGE
        return {page for page in range(self.count) if page in marked or page >= end}


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
        self.text = text
        self.rows, self.last_number = u32(text, 16), u32(text, 20)
        self.row_columns, self.variable_columns = u16(text, 41), u16(text, 43)
        columns, logical, real = u16(text, 45), u32(text, 47), u32(text, 51)
        self.owned, self.with_room = pointer(u32(text, 55)), pointer(u32(text, 59))
        self.distinct = [u32(text, 63 + 12 * i + 4) for i in range(real)]
        self.at = 63 + 12 * real

        def take(size):
            self.at += size
            return text[self.at - size:self.at]

        def name_here():
            return take(u16(take(2), 0)).decode("utf-16-le")

        self.columns = [Column(take(25)) for _ in range(columns)]
        for column in self.columns:
            column.name = name_here()
        self.listed = list(self.columns)
        by_number = {column.number: column for column in self.columns}
        self.indexes = [Index(take(52), by_number) for _ in range(real)]
        self.logical = [take(28) for _ in range(logical)]
        self.logical_names = [name_here() for _ in range(logical)]
        for position, index in enumerate(self.indexes):
            index.label = f"index {position} of {name}"
        self.long_values = []
        while (number := u16(take(2), 0)) != 0xFFFF:
            maps, column = take(8), by_number.get(number)
            self.long_values.append(number)
            if column is None:
                column = Column(bytes(25))
                column.number, column.name = number, "(deleted)"
                self.columns.append(column)
            column.owned, column.with_room = pointer(u32(maps, 0)), pointer(u32(maps, 4))
        # Rows that are older than all columns of variable length, deleted ones too, have no part for them. Of a deleted
        # one tell only the gap in the numbers and the place that the next column notes.
        following = 0
        for column in sorted(self.listed, key=lambda column: column.number):
            if not column.fixed or (column.number > following and column.place):
                following = following if column.place else column.number
                break
            following = column.number + 1
        self.first_variable = following if self.variable_columns else self.row_columns
        sizes = [c.fixed_place + c.length for c in self.columns if c.fixed and c.type != 1]
        self.least = 2 + max(sizes, default=0) + (self.row_columns + 7) // 8
        if self.variable_columns:
            self.least += 4 + 2 * self.variable_columns

    def values(self, row):
        """Number of a column -> its stored bytes, None for null; of a yes/no column a bool."""
        columns = u16(row, 0)
        mask = len(row) - (columns + 7) // 8
        ends, variable, fixed_end = [], 0, mask
        if columns > self.first_variable:
            variable = u16(row, mask - 2)
            fixed_end = mask - 2 - 2 * (variable + 1)
            if fixed_end < 2:
                raise Broken("a row is too short")
            ends = [u16(row, mask - 4 - 2 * k) for k in range(variable + 1)]
        result = {}
        for column in self.columns:
            has = column.number < columns and bool(row[mask + column.number // 8] >> (column.number % 8) & 1)
            if column.type == 1:
                result[column.number] = has
            elif not has or (not column.fixed and column.place >= variable):
                result[column.number] = None
            else:
                start, end = 2 + column.fixed_place, 2 + column.fixed_place + column.length
                if not column.fixed:
                    start, end = ends[column.place], ends[column.place + 1]
                if not 2 <= start <= end <= fixed_end:
                    raise Broken("a value lies outside of its row")
                result[column.number] = row[start:end]
        return result


def definition_faults(table):
    """What in a definition is not as Access writes it; counts, places of pages and rubbish are not looked at."""
    faults, text, columns = [], table.text, table.listed

    def expect(what, is_so):
        if not is_so:
            faults.append(f"{table.name}: {what}")

    expect("length", u32(text, 8) == table.at)
    in_use = table.at
    for number in table.pages:
        page = table.file.page(number)
        here = min(in_use, SIZE if number == table.pages[0] else SIZE - 8)
        in_use -= here
        bytes_used = here if number == table.pages[0] else here + 8
        expect("head of its pages", page[:2] == b"\x02\x01" and u16(page, 2) == max(0, SIZE - 8 - bytes_used))
    expect("no page too many", in_use == 0)
    expect("constants of the head", u32(text, 12) == 0x659 and u32(text, 24) == 1)
    order = table.file.order
    whole = len(columns) == table.row_columns
    expect("order of columns", [(u16(c.data, 9), c.name.lower()) for c in columns] ==
           sorted((u16(c.data, 9), c.name.lower()) for c in columns))
    by_number = sorted(columns, key=lambda column: column.number)
    fixed_size = 0
    for column in by_number:
        before = sum(1 for c in columns if not c.fixed and c.number < column.number)
        data, label = column.data, f"column {column.name}"
        expect(label + ", constants", u32(data, 1) == 0x659 and u32(data, 17) == 0)
        if whole:
            expect(label + ", place", column.place == before)
        expect(label + ", sort order", column.type == 16 or data[11:15] == order)
        expect(label + ", flags", data[15] & 0x0A == 2 and data[16] <= (column.type in (10, 12)))
        if column.fixed and column.type in FIXED_LENGTHS:
            expect(label + ", length", column.length == FIXED_LENGTHS[column.type])
            if whole:
                expect(label + ", fixed place", column.fixed_place == (0 if column.type == 1 else fixed_size))
            fixed_size += 0 if column.type == 1 else column.length
    for index in table.indexes:
        unused = [u16(index.data, 4 + 3 * k) for k in range(len(index.columns), 10)]
        expect(f"{index.label}, constants", u32(index.data, 0) == 0x783 and index.flags & 0x80 and
               not any(index.data[47:]) and all(number == 0xFFFF for number in unused))
    names = [name.lower() for name in table.logical_names]
    expect("order of logical indexes", names == sorted(names))
    for logical in table.logical:
        expect("constants of logical indexes", u32(logical, 0) == 0x659 and u32(logical, 24) == 0)
        if logical[23] != 2:
            expect("logical index", logical[12:23] == b"\x00\xff\xff\xff\xff\x00\x00\x00\x00\x04\x04")
    expect("maps of long values", table.long_values == [c.number for c in columns if c.type in (11, 12)])
    return faults


class Check:
    def __init__(self, path):
        self.file = File(path)
        # The sort order lies in the masked part of the header; the catalogue's first column has it in clear.
        self.file.order = b"\x09\x04\x00\x00"
        self.problems, self.roles = [], defaultdict(list)
        self.count_errors, self.unlisted, self.entries = {}, {}, 0
        self.tables, self.rows, self.places = {}, {}, {}

    def wrong(self, text):
        self.problems.append(text)

    def role(self, page, role):
        self.roles[page].append(role)

    def run(self):
        file, bits = self.file, []
        free = file.free_pages(bits)
        holders = {1}
        catalogue = Table(file, 2, "MSysObjects")
        self.tables = {"MSysObjects": catalogue}
        for _, values in self.live_rows(catalogue, file.members(catalogue.owned), quiet=True):
            entry = self.named(catalogue, values)
            if entry["Type"] == b"\x01\x00" and u32(entry["Id"], 0) != 2:
                name = text_of(entry["Name"])
                self.tables[name] = Table(file, u32(entry["Id"], 0) & 0xFFFFFF, name)
        for table in self.tables.values():
            for page in table.pages:
                self.role(page, f"definition of {table.name}")
            maps = [table.owned, table.with_room] + [index.map for index in table.indexes]
            maps += [m for c in table.columns if c.owned for m in (c.owned, c.with_room) if m != (0, 0)]
            for place in maps:
                holders.add(place[0])
                file.members(place, bits)
                self.role(place, f"map of {table.name}")
            self.table(table)
        for page in bits:
            self.role(page, "bits of a map")
        for page in holders:
            self.role(page, "rows that are maps")
        self.role(0, "header")
        for page in free:
            self.role(page, "free")
        self.homeless = {page for page in range(file.count) if not self.roles.get(page)}
        for place, roles in self.roles.items():
            if len(roles) > 1:
                self.wrong(f"{place} is in several places: {', '.join(roles)}")
            if isinstance(place, int) and place >= file.count:
                self.wrong(f"page {place} is behind the end: {roles}")

    @staticmethod
    def named(table, values):
        return {column.name: values[column.number] for column in table.columns}

    def live_rows(self, table, owned, quiet=False):
        """Place and values of each row; checks the pages on the way."""
        targets, moved = set(), Counter()
        wrong = (lambda text: None) if quiet else self.wrong
        for number in sorted(owned):
            page = self.file.page(number)
            if page[0] != 1 or u32(page, 4) != table.number:
                wrong(f"page {number} is no data page of {table.name}")
                continue
            slots, free = self.file.slots(number)
            if u16(page, 2) != free or len(slots) > 255:
                wrong(f"page {number} of {table.name} says {u16(page, 2)} bytes free, it has {free}, {len(slots)} rows")
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
                        wrong(f"row {row} of page {number} of {table.name} leads nowhere")
                        continue
                    moved[target] += 1
                try:
                    yield (number, row), table.values(data)
                except (Broken, struct.error, IndexError) as reason:
                    wrong(f"row {row} of page {number} of {table.name}: {reason}")
        for target in targets | set(moved):
            if target not in targets or moved[target] != 1:
                wrong(f"the moved row at {target} of {table.name} belongs to {moved[target]} rows")

    def table(self, table):
        owned = self.file.members(table.owned)
        for page in owned:
            self.role(page, f"data of {table.name}")
        rows = self.rows[table.name] = list(self.live_rows(table, owned))
        self.count_errors[f"rows of {table.name}"] = table.rows - len(rows)
        self.room(table.name, owned, self.file.members(table.with_room), table.least)
        for column in table.columns:
            if column.autonumber and column.type == 4:
                numbers = [struct.unpack("<i", v[column.number])[0] for _, v in rows if v[column.number]]
                if max(numbers, default=0) > table.last_number:
                    self.wrong(f"{table.name} has a number above the last one given")
            if column.owned:
                self.long_column(table, column, rows)
        for position, index in enumerate(table.indexes):
            self.index(table, position, index, rows)

    def room(self, label, owned, listed, least, without=()):
        for page in listed - owned:
            self.wrong(f"page {page} is listed with room but not owned by {label}")
        for page in owned - set(without):
            slots, free = self.file.slots(page)
            if free >= least + 2 and len(slots) < 255 and page not in listed:
                self.unlisted[page] = (label, free)

    def long_column(self, table, column, rows):
        label = f"{table.name}.{column.name}"
        owned = self.file.members(column.owned)
        there, chained = set(), set()
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
        used = set()
        for place, values in rows:
            stored = values.get(column.number)
            if not stored:
                continue
            size, kind = u32(stored, 0) & 0x3FFFFFFF, u32(stored, 0) >> 30
            at, found, stamp = pointer(u32(stored, 4)), 0, u32(stored, 8)
            if kind == 2:
                if len(stored) < 12 + size or stamp:
                    self.wrong(f"the long value of {label} at {place} is cut off")
                continue
            while at[0]:
                if at in used or at not in there:
                    self.wrong(f"the long value of {label} at {place} leads to {at}, which is not its own")
                    break
                used.add(at)
                data = self.file.row(at)[1]
                found += len(data) - (0 if kind == 1 else 4)
                if kind == 0:
                    chained.add(at[0])
                    if u32(self.file.page(at[0]), 8) != stamp:
                        self.wrong(f"the chained page {at[0]} of {label} bears another stamp than its value")
                    if len(self.file.slots(at[0])[0]) != 1:
                        self.wrong(f"the chained page {at[0]} of {label} holds more than one row")
                elif stamp:
                    self.wrong(f"the long value of {label} at {place} bears a stamp")
                at, stamp = ((0, 0) if kind == 1 else pointer(u32(data, 0))), 0
            if found != size:
                self.wrong(f"the long value of {label} at {place} has {found} bytes of {size}")
        for place in there - used:
            self.wrong(f"the long value of {label} at {place} belongs to no row")
        if column.with_room != (0, 0):
            self.room(label, owned, self.file.members(column.with_room), 65, chained)

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
        if page[26] != (page[0] == 3) or (page[0] == 3 and prefix):
            self.wrong(f"page {number} of {index.label} has the mark {page[26]} and a prefix of {prefix}")
        return entries

    def walk(self, table, index, number, level, levels, rightmost=True):
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
        if not children or tail in children or bool(tail) != rightmost:
            self.wrong(f"page {number} of {index.label} has {len(children)} entries and the tail child {tail}")
        if tail and tail not in children:
            children.append(tail)
            told.append(None)
        last = None
        kinds = {self.file.page(child)[0] for child in children}
        if len(kinds) != 1:
            raise Broken(f"the children of page {number} of {index.label} are of several kinds")
        for position, (child, entry) in enumerate(zip(children, told)):
            last = self.walk(table, index, child, level + 1, levels, rightmost and position + 1 == len(children))
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
        self.count_errors[f"distinct entries of {index.label}"] = table.distinct[position] - len({entry[:-4] for entry in found})
        by_row, seen = {entry[-4:]: entry for entry in found}, Counter()
        for (page, row), values in rows:
            nulls = [values[column.number] is None for column, _ in index.columns]
            place = page.to_bytes(3, "big") + bytes([row])
            if index.flags & 2 and all(nulls):
                continue
            if index.flags & 8 and any(nulls):
                self.wrong(f"{index.label} wants a value in the row at {(page, row)}")
            key = self.key(index, values)
            if place not in by_row or (key is not None and by_row[place] != key + place):
                self.wrong(f"{index.label} has no entry {key and key.hex()} for the row at {(page, row)}")
                continue
            if not all(nulls):
                seen[by_row[place][:-4]] += 1
            del by_row[place]
        for entry in by_row.values():
            self.wrong(f"{index.label} has an entry too many, {entry.hex()}")
        if index.flags & 1 and max(seen.values(), default=0) > 1:
            self.wrong(f"{index.label} is unique but has a key twice")

    def key(self, index, values):
        """The key of a row; None if it is not known."""
        key = b""
        for column, ascending in index.columns:
            part = self.part_of_key(column, values[column.number])
            if part is None or (not ascending and column.type == 10 and part != b"\x00"):
                return None
            key += part if ascending else bytes(byte ^ 0xFF for byte in part)
        return key

    def part_of_key(self, column, stored):
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
        if column.type == 10 and column.data[11:15] == b"\x09\x04\x00\x00":
            key = text_key(text_of(stored))
            return key and b"\x7f" + key
        return None

    def new_table(self, name, untouched):
        """A table that was made since: its definition, maps and rows in the catalogue are those that Access would
        have made. Untouched: nothing was added to it later."""
        table = self.tables[name]
        self.problems += definition_faults(table)
        maps = [table.owned, table.with_room]
        maps += [m for c in table.listed if c.type == 12 for m in (c.owned, c.with_room)]
        maps += [index.map for index in table.indexes]
        if untouched and maps != [(maps[i // 57 * 57][0], i % 57) for i in range(len(maps))]:
            self.wrong(f"{name} has its maps in another order")
        objects, entries = self.tables["MSysObjects"], {}
        for _, values in self.rows["MSysObjects"]:
            entry = self.named(objects, values)
            entries[u32(entry["Id"], 0)] = entry
        entry = entries[table.number]
        expected = dict.fromkeys(entry)
        expected.update(Id=struct.pack("<I", table.number), ParentId=struct.pack("<I", TABLES), Type=b"\x01\x00",
                        Flags=bytes(4), Name=name.encode("utf-16-le"), Owner=entries[DATABASE]["Owner"])
        for moment in ("DateCreate", "DateUpdate"):
            expected[moment] = entry["DateCreate"]
        day = struct.unpack("<d", entry["DateCreate"] or bytes(8))[0]
        if entry != expected or not 36526 < day < 80000 or not math.isclose(day * 86400000, round(day * 86400000), abs_tol=0.01):
            self.wrong(f"the row of {name} in MSysObjects is {entry}")
        engine = entries[TABLES]["Owner"]
        creator = bytes([engine[0], engine[1] ^ 7])
        rights, expected = self.rights(), Counter()
        for sid, mask, inherited in rights[TABLES]:
            if inherited:
                sid = entries[DATABASE]["Owner"] if sid == creator else sid
                expected[sid] |= mask
        if sorted(rights[table.number]) != sorted((sid, mask, False) for sid, mask in expected.items()):
            self.wrong(f"the rows of {name} in MSysACEs are {rights[table.number]}, not {expected}")

    def rights(self):
        rights = defaultdict(list)
        for _, values in self.rows["MSysACEs"]:
            entry = self.named(self.tables["MSysACEs"], values)
            rights[u32(entry["ObjectId"], 0)].append((entry["SID"], u32(entry["ACM"], 0), entry["FInheritable"]))
        return rights

    def strangers(self, before):
        """The pages that differ since `before` though they are no part of a new table, the catalogue or maps."""
        def is_strange(place):
            return not any(role.endswith(("MSysObjects", "MSysACEs")) for role in before.roles.get(place, []))

        for number in range(2, before.file.count):
            roles = before.roles.get(number, [])
            if self.file.page(number) == before.file.page(number) or roles == ["free"]:
                continue
            if roles == ["rows that are maps"]:  # those of the catalogue lie beside others
                for row, (old, new) in enumerate(itertools.zip_longest(before.file.slots(number)[0], self.file.slots(number)[0])):
                    if old != new and is_strange((number, row)):
                        yield f"the map {row} of page {number} has changed"
            elif is_strange(number):
                yield f"page {number}, {roles}, has changed"
        if self.file.page(0) != before.file.page(0):
            yield "the header has changed"
        for name in ("MSysObjects", "MSysACEs"):
            now = dict(self.rows[name])
            yield from (f"the row of {name} at {place} has changed" for place, row in before.rows[name] if now.get(place) != row)


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("file")
    arguments.add_argument("--before", help="an earlier state whose oddities are allowed")
    arguments.add_argument("--only-new-tables", action="store_true", help="nothing else may have changed since then")
    arguments.add_argument("--like-access", action="store_true")
    options = arguments.parse_args()
    allowed = Check(options.before) if options.before else None
    check = Check(options.file)
    try:
        if allowed:
            allowed.run()
        check.run()
        new = [name for name in check.tables if allowed and name not in allowed.tables]
        for name in new:
            check.new_table(name, options.only_new_tables)
        if options.only_new_tables:
            check.problems += check.strangers(allowed)
        if options.like_access:
            for table in check.tables.values():
                check.problems += definition_faults(table)
    except (Broken, struct.error, IndexError) as reason:
        print(f"{options.file}: {reason}")
        return 1
    excused = set(allowed.problems) if allowed else set()
    problems = [problem for problem in check.problems if problem not in excused]
    for what, error in check.count_errors.items():  # counts that Access let go stay as far off as they were
        if error != (allowed.count_errors.get(what, 0) if allowed else 0):
            problems.append(f"the count of {what} is off by {error:+}")
    for page, (label, free) in check.unlisted.items():
        if not allowed or allowed.unlisted.get(page) != (label, free):
            problems.append(f"page {page} of {label} has {free} bytes free, but is not listed with room")
    for page in check.homeless - (allowed.homeless if allowed else set()):
        problems.append(f"page {page} is in no map")
    for problem in problems:
        print(f"{options.file}: {problem}")
    if not problems:
        rows = sum(len(rows) for rows in check.rows.values())
        print(f"{options.file}: sound, {check.file.count} pages, {len(check.tables)} tables, {rows} rows, "
              f"{check.entries} index entries")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
