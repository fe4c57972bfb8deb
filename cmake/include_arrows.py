#!/usr/bin/env python3
"""Reads all #include lines of src/ and names those that run against the order of the rooms.

Usage: include_arrows.py FOLDER
"""
import pathlib
import re
import sys

# From the top down, as docs/architecture.md draws it: a room includes itself and those below it.
ROOMS = """
main.cpp
shell
invoices
customers
documents
fiscal_code
db_tools
update
preferences
e_invoice
payments
recap
lists
program
store
platform/qt
platform/office
platform/posix
platform
text
failure.h
""".split()

# The windows of a room are opened by itself and by this one.
OPENS_EVERY_FORM = "shell"

# Libraries, by their headers, and who may know them.
LIBRARIES = [
    (r"Q[A-Z]\w*|Qt\w+/.*", ("platform/qt/", "main.cpp")),
    (r"sqlite3\.h", ("store/sqlite/",)),
    (r"LibreOfficeKit/.*", ("platform/office/",)),
]

# Inside store/, from the top down: files by the start of their names. Those of one line may include each other.
STORE_LAYERS = """
store/engine.cpp store/database
store/access/access_engine
store/access/selection store/access/conditions
store/access/access_file
store/access/stored_tables store/access/empty_file
store/access/table_maker
store/access/catalogue_rows
store/access/catalogue
store/access/table_fill
store/access/table_writer
store/access/index_filling
store/access/index_writer store/access/index_cursor
store/access/index_page
store/access/index_key
store/access/named_row
store/access/table_rows store/access/long_value
store/access/row
store/access/table_counts store/access/definition_reader
store/access/definition_pages store/access/definition_parts
store/access/table_definition store/access/stored_text
store/access/free_space
store/access/usage_map
store/access/data_page
store/access/header
store/access/page_store
store/access/journal
store/access/file
store/access/bytes
store/access/format store/access/failures
""".strip().splitlines()


def room_of(path):
    """The room of a file, by its path below src/; none if it stands in no room of the table."""
    fitting = [room for room in ROOMS if path == room or path.startswith(room + "/")]
    return max(fitting, key=len, default=None)


def layer_of(path):
    for layer, files in enumerate(STORE_LAYERS):
        if any(re.fullmatch(re.escape(stem) + r"(\.\w+)?", path) for stem in files.split()):
            return layer
    return None


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        found = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
        if found:
            yield number, found[1] == '"', found[2]


def offence(source, target, src):
    """What is wrong with this include of another file of src/; nothing if it is allowed."""
    from_room, to_room = room_of(source), room_of(target)
    if to_room is None:
        return "is in no room of the table"
    if ROOMS.index(to_room) < ROOMS.index(from_room):
        return f"lies above {from_room}"
    if (src / target).with_suffix(".ui").exists() and from_room not in (to_room, OPENS_EVERY_FORM):
        return f"is a window of {to_room}, which {from_room} does not open"
    from_layer, to_layer = layer_of(source), layer_of(target)
    if from_layer is not None and to_layer is not None and to_layer < from_layer:
        return f"lies above {source}"
    return None


def main():
    src = pathlib.Path(sys.argv[1])
    offenders = []
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".in"):
            continue
        source = path.relative_to(src).as_posix()
        if room_of(source) is None:
            offenders.append(f"{source}: is in no room of the table")
            continue
        for number, ours, target in includes(path):
            wrong = None
            if ours and (src / target).exists():
                wrong = offence(source, target, src)
            elif not ours:
                for pattern, users in LIBRARIES:
                    if re.fullmatch(pattern, target) and not source.startswith(users):
                        wrong = f"is for {' and '.join(users)} alone"
            if wrong:
                offenders.append(f"{source}:{number}: {target} {wrong}")
    print("\n".join(offenders))
    sys.exit(bool(offenders))


main()
