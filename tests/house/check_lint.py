"""The linter over every source of src/ and programs/ that the build compiles.

A folder's sources of one target are read as one unit: most of what the linter reads are the system's headers, and so
it reads them once a folder. Where names of two sources collide in that, each of the folder's is read by itself.

usage: check_lint.py SOURCE BUILD
"""
import collections
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor


# What the linter finds unused only in a source that it is given by itself.
SHORT_NAMES = re.compile(r"^\s*(namespace \w+ =|using [\w:]+;)", re.MULTILINE)


def flags_of(entry):
    """How the source of an entry of compile_commands.json is compiled, without its name and its object's."""
    words = iter(shlex.split(entry["command"]))
    flags = []
    for word in words:
        if word in ("-o", "-MF", "-MT"):
            next(words)
        elif word not in ("-c", "-MD", entry["file"]):
            flags.append(word)
    return tuple(flags)


def units_of(source, build):
    """Lists of what is read together: a folder's sources of one kind; those with short names each by itself."""
    tracked = subprocess.run(["git", "ls-files", "-z", "src/*.cpp", "programs/*.cpp"], cwd=source, check=True,
                             capture_output=True, text=True).stdout.split("\0")
    tracked = {str(source / name) for name in tracked if name}
    units = collections.defaultdict(list)
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        if entry["file"] in tracked:
            # What several targets compile is read as the first of them does.
            tracked.remove(entry["file"])
            file = pathlib.Path(entry["file"])
            alone = file.name if SHORT_NAMES.search(file.read_text(encoding="utf-8")) else ""
            units[file.parent, flags_of(entry), alone].append(entry)
    return sorted(units.values(), key=len, reverse=True)


def joined(units, place):
    """One source for each unit, which includes the unit's sources, and how to compile it."""
    place.mkdir(exist_ok=True)
    joints = [str(place / f"{number}.cpp") for number in range(len(units))]
    commands = []
    for joint, unit in zip(joints, units):
        includes = (f'#include "{entry["file"]}"  // NOLINT\n' for entry in unit)
        pathlib.Path(joint).write_text("".join(includes), encoding="utf-8")
        commands.append({"directory": str(place), "file": joint, "arguments": [*flags_of(unit[0]), "-c", joint]})
    (place / "compile_commands.json").write_text(json.dumps(commands, indent=1), encoding="utf-8")
    return joints


def said_about(file, build, rules):
    """What the linter finds in a file that is compiled as `build` tells; empty where it finds nothing."""
    # It takes what the tests beside it leave of the cores, for some of them answer a real line in time.
    ran = subprocess.run(["nice", "-n", "19", "clang-tidy", "-p", str(build), f"--config-file={rules}", "--quiet",
                          "--extra-arg=-Wno-unknown-warning-option", file], capture_output=True, text=True)
    if ran.returncode == 0:
        return ""
    # Its error output mostly counts what it left out of the system's headers.
    errors = "".join(line for line in ran.stderr.splitlines(True) if "warnings generated" not in line)
    return f"{ran.stdout}{errors}clang-tidy ended with {ran.returncode} at {file}\n"


def said_about_unit(joint, unit, build, rules):
    """What the linter finds in the sources of a unit."""
    if len(unit) > 1:
        said = said_about(joint, build / "lint", rules)
        if "[clang-diagnostic-error]" not in said:
            return said
        print(f"{len(unit)} sources can't be read as one:", said, sep="\n")
    return "".join(said_about(entry["file"], build, rules) for entry in unit)


def main():
    source, build = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
    units = units_of(source, build)
    if not units:
        sys.exit(f"no source of {source} is compiled in {build}")
    rules = source / ".clang-tidy"
    with ThreadPoolExecutor(int(os.environ.get("JOBS", os.cpu_count()))) as jobs:
        findings = list(jobs.map(lambda joint, unit: said_about_unit(joint, unit, build, rules),
                                 joined(units, build / "lint"), units))
    print("".join(findings), end="")
    print(f"{sum(map(len, units))} sources in {len(units)} units, {sum(map(bool, findings))} with findings")
    sys.exit(any(findings))


if __name__ == "__main__":
    main()
