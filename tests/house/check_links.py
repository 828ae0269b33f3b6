#!/usr/bin/env python3
"""The terminal program, the simulated controller and the makers of data link no Qt; the desktop program does.

usage: check_links.py BIN
"""
import pathlib
import subprocess
import sys

WITHOUT_QT = ["qrv", "qrv_controller", "make_catalogue"]
WITH_QT = ["qrv_edit"]


def libraries(program):
    listing = subprocess.run(["readelf", "-d", program], capture_output=True, text=True, check=True).stdout
    return [line.split("[")[1].rstrip("]") for line in listing.splitlines() if "(NEEDED)" in line]


def main():
    folder = pathlib.Path(sys.argv[1])
    faults = []
    for name in WITHOUT_QT:
        faults += [f"{name} links {lib}" for lib in libraries(folder / name) if "Qt" in lib]
    for name in WITH_QT:
        if (folder / name).exists() and not any("Qt6Widgets" in lib for lib in libraries(folder / name)):
            faults.append(f"{name} does not link the windows")
    print("\n".join(faults) or "every program links what it may")
    return 1 if faults else 0


sys.exit(main())
