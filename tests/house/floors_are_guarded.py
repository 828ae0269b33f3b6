#!/usr/bin/env python3
"""The guard of the floors refuses what it must: an include that runs up, Qt in the core, a nameless include. For a build
it notes when to look again."""
import pathlib
import re
import subprocess
import sys
import tempfile

CASES = [
    ("an include of a floor above", "store/A.cpp", '#include "shell/B.h"\n', "of floor 6 above it"),
    ("Qt in the core", "link/A.cpp", "#include <QString>\n", "Qt is for the windows alone"),
    ("a view included by a form", "blocks/A.cpp", '#include "blocks/BView.h"\n', "above it"),
    ("an include not named from src", "store/A.cpp", '#include "B.h"\n', "not named from src/"),
    ("a folder on no floor", "elsewhere/A.cpp", "\n", "stands on no floor"),
]


def verdict(guard, files):
    with tempfile.TemporaryDirectory() as folder:
        src = pathlib.Path(folder)
        for name, text in files.items():
            path = src / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        run = subprocess.run([sys.executable, guard, folder], capture_output=True, text=True)
        return run.returncode, run.stderr


def stamp_rests_on_every_source_and_folder(guard, files):
    with tempfile.TemporaryDirectory() as folder:
        src = pathlib.Path(folder).resolve() / "a source"
        for name, text in files.items():
            path = src / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        stamp = src.parent / "a stamp"
        (src / "store/CMakeLists.txt").write_text("no source")
        subprocess.run([sys.executable, guard, src, stamp], check=True)
        wanted = [src, *(path for path in src.rglob("*") if path.name != "CMakeLists.txt")]
        escaped = sorted(str(path).replace(" ", "\\ ") for path in wanted)
        target, names = (src.parent / "a stamp.d").read_text().rstrip("\n").split(": ")
        assert target == str(stamp).replace(" ", "\\ "), target
        assert sorted(re.split(r"(?<!\\) ", names)) == escaped, names
        stamp.unlink()
        (src / "store/A.cpp").write_text('#include "shell/B.h"\n')
        run = subprocess.run([sys.executable, guard, src, stamp], capture_output=True, check=False)
        assert run.returncode == 1 and not stamp.exists()


def main():
    guard = sys.argv[1]
    base = {"shell/B.h": "\n", "blocks/BView.h": "#include <QWidget>\n", "platform/P.h": "#include <string>\n"}
    code, words = verdict(guard, {**base, "shell/C.cpp": '#include "platform/P.h"\n'})
    assert code == 0, words
    for name, path, text, expected in CASES:
        code, words = verdict(guard, {**base, path: text})
        assert code != 0 and expected in words, f"{name}: {code} {words}"
    stamp_rests_on_every_source_and_folder(guard, {**base, "store/A.cpp": "\n"})
    print(f"{len(CASES)} wrong arrows refused")


main()
