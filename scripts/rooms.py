#!/usr/bin/env python3
"""Checks that each room of src/ names in its CMakeLists.txt exactly the rooms it sees.

A room sees the rooms whose headers its files include, and those that these headers include in turn. The build
already fails where it sees one that it does not name. This also finds rooms that it names and does not see,
and circles. With --write the lists are put right.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^\s*#\s*include "([a-z0-9_]+)/', re.M)
DEPENDS = re.compile(r'(pluvo_room\((\w+)(?: FOLDERS(?: [a-z_]+_page)+)?)( DEPENDS((?:\s+[a-z0-9_]+)+))?', re.M)


def included(files, rooms):
    found = set()
    for file in files:
        found |= {room for room in INCLUDE.findall(file.read_text()) if room in rooms}
    return found


def seen(room, folders, shown):
    """What the room's files include, through public headers to the end."""
    folder = folders[room]
    inner = {other for other in folders.values() if other != folder and folder in other.parents}
    inner |= {main.parent for main in folder.rglob("main.cpp")}  # programs name for themselves what they see
    files = [file for file in folder.rglob("*") if file.suffix in (".h", ".cpp")
             and not any(other in file.parents for other in inner)]
    todo = included(files, folders)
    done = set()
    while todo:
        other = todo.pop()
        if other not in done:
            done.add(other)
            todo |= shown[other]
    return done - {room}


def main():
    lists = {}
    for file in (ROOT / "src").rglob("CMakeLists.txt"):
        match = DEPENDS.search(file.read_text())
        if match:
            lists[match.group(2)] = (file, match)
    folders = {room: file.parent for room, (file, _) in lists.items()}
    shown = {room: included((folder / "include").rglob("*.h"), folders) for room, folder in folders.items()}
    sees = {room: seen(room, folders, shown) for room in folders}
    faults = 0
    for room, (file, match) in sorted(lists.items()):
        named = set((match.group(4) or "").split())
        if named != sees[room]:
            faults += 1
            print(f"{room}: names {sorted(named - sees[room])} and does not see it; "
                  f"sees {sorted(sees[room] - named)} and does not name it")
            if "--write" in sys.argv:
                kept = [name for name in (match.group(4) or "").split() if name in sees[room]]
                names = kept + sorted(sees[room] - set(kept))
                text = file.read_text()
                depends = " DEPENDS " + " ".join(names) if names else ""
                file.write_text(text[:match.start()] + match.group(1) + depends + text[match.end():])
        for other in sees[room]:
            if room in sees[other]:
                faults += 1
                print(f"{room} and {other} see each other")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
