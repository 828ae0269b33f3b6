#!/usr/bin/env python3
"""Fails where a source of src/ includes a file of a floor above its own, or Qt where Qt is not.

usage: check_floors.py SRC

The floors, lowest first. A file named *View.h or *View.cpp, and everything in platform/qt, is the top floor
whatever its folder.
"""
import pathlib
import re
import sys

FLOORS = [
    {"platform"},
    {"store"},
    {"blocks", "egu"},
    {"screens", "charts", "alarms", "modbus"},
    {"link"},
    {"tools", "report"},
    {"shell"},
]
TOP = len(FLOORS)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def floor_of(path):
    if path.stem.endswith("View") or path.parts[:2] == ("platform", "qt"):
        return TOP
    for floor, folders in enumerate(FLOORS):
        if path.parts[0] in folders:
            return floor
    return None


def faults(src):
    for file in sorted(src.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        path = file.relative_to(src)
        own = floor_of(path)
        if own is None:
            yield f"{path}: stands on no floor"
            continue
        for bracket, name in INCLUDE.findall(file.read_text(encoding="utf-8")):
            if bracket == "<":
                if own < TOP and re.match(r"Q[A-Z]|Qt", name):
                    yield f"{path}: includes <{name}>, and Qt is for the windows alone"
                continue
            wanted = pathlib.PurePosixPath(name)
            if not (src / wanted).is_file():
                yield f'{path}: includes "{name}", which is not named from src/'
                continue
            other = floor_of(wanted)
            if other is not None and other > own:
                yield f'{path} (floor {own}) includes "{name}" of floor {other} above it'


def main():
    found = list(faults(pathlib.Path(sys.argv[1]).resolve()))
    for fault in found:
        print(fault, file=sys.stderr)
    return 1 if found else 0


sys.exit(main())
