#!/usr/bin/env python3
"""Boxes, file dialogs and nested event loops stand in platform/qt alone; statements of SQL in store alone.

usage: check_boxes.py SRC
"""
import pathlib
import re
import sys

RULES = [
    (re.compile(r"\bQMessageBox\b|\bQFileDialog\b|\bexec\(\)|\bprocessEvents\("), "platform/qt/"),
    (re.compile(r"\bsqlite3_\w+\("), "store/"),
    (re.compile(r"catch \(\.\.\.\)"), None),
]


def main():
    src = pathlib.Path(sys.argv[1])
    faults = []
    for file in sorted(src.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        name = file.relative_to(src).as_posix()
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            code = line.split("//")[0]
            for pattern, home in RULES:
                if pattern.search(code) and not (home and name.startswith(home)):
                    faults.append(f"{name}:{number}: {line.strip()}")
    print("\n".join(faults) or "nothing stands where it may not")
    return 1 if faults else 0


sys.exit(main())
