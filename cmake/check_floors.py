#!/usr/bin/env python3
"""Fails where a source of src/ includes a file of a floor above its own, or Qt where Qt is not.

usage: check_floors.py SRC [STAMP]

The floors, lowest first. A file named *View.h or *View.cpp, and everything in platform/qt, is the top floor
whatever its folder. Where nothing fails STAMP is written, and STAMP.d says what it rests on: each source and, because
one may come or go, each folder.
"""
import os
import pathlib
import re
import sys
import time

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
SOURCES = (".h", ".cpp")
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
        if file.suffix not in SOURCES:
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


def as_dependency(path):
    """As the tools that build read a name with blanks and the like."""
    return re.sub(r"([ #])", r"\\\1", str(path).replace("$", "$$"))


def write_stamp(stamp, src, began):
    rests_on = [src, *(path for path in sorted(src.rglob("*")) if path.is_dir() or path.suffix in SOURCES)]
    names = " ".join(as_dependency(path) for path in rests_on)
    pathlib.Path(f"{stamp}.d").write_text(f"{as_dependency(stamp)}: {names}\n", encoding="utf-8")
    stamp.touch()
    # A source that was changed meanwhile is younger than its stamp.
    os.utime(stamp, ns=(began, began))


def main():
    began = time.time_ns()
    src = pathlib.Path(sys.argv[1]).resolve()
    found = list(faults(src))
    for fault in found:
        print(fault, file=sys.stderr)
    if found:
        return 1
    if len(sys.argv) > 2:
        write_stamp(pathlib.Path(sys.argv[2]), src, began)
    return 0


sys.exit(main())
