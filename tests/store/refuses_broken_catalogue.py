#!/usr/bin/env python3
"""make_catalogue refuses a text that breaks a rule: exit code 1, file, row and rule told, nothing written.

usage: refuses_broken_catalogue.py MAKE_CATALOGUE TEXT_FOLDER
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

# file, what its last line becomes, rule
BREAKS = [
    ("params.csv", "86,1,\"CABINET TOO HOT ABOVE, C\",0,-40000,100000,100001,1,2,1", "defaultIsWithinLimits"),
    ("version.csv", "1.00,2", "rowsCanBeRead"),
]


def main():
    program, text = sys.argv[1:]
    for file, row, rule in BREAKS:
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch) / "text"
            shutil.copytree(text, folder)
            lines = (folder / file).read_text().splitlines()
            lines[-1] = row
            (folder / file).write_text("\n".join(lines) + "\n")
            data = pathlib.Path(scratch) / "QRVDATA.DAT"
            run = subprocess.run([program, folder, "--data", data], capture_output=True, text=True, check=False)
            wanted = f"{folder}/{file}:{len(lines)}: {rule}: "
            if run.returncode != 1 or not run.stderr.startswith(wanted) or data.exists():
                print(f"wanted exit code 1 and {wanted!r}, got {run.returncode} and {run.stderr!r}")
                return 1
    return 0


sys.exit(main())
