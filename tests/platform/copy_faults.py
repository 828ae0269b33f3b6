#!/usr/bin/env python3
"""Copies a file over a user's file while each system call of the copy fails in turn, or the program is killed at it.

usage: copy_faults.py COPY_FILE_PROGRAM

The user's file must be the old or the new one whole, every time; a copy that says "done" must have made it the new one;
a failed one leaves nothing beside it and keeps the permission bits. Ends with 77 where tracing is not allowed.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
OLD = b"o" * 500_000
NEW = b"n" * 700_000
MODE = 0o640
ERRORS = {
    "openat": ["EMFILE", "EACCES", "ENOSPC", "EINTR"],
    "read": ["EIO", "EINTR"],
    "write": ["ENOSPC", "EDQUOT", "EIO", "EINTR"],
    "fsync": ["EIO", "ENOSPC", "EINTR"],
    "fchmod": ["EPERM", "EINTR"],
    "close": ["EIO"],
    "rename": ["EACCES", "ENOSPC", "EIO"],
}


def trace(program, folder, arguments):
    """Runs the copy under strace; gives its exit code, its words and the trace."""
    log = folder / "trace"
    command = ["strace", "-o", str(log), *arguments, program, str(folder / "new"), str(folder / "user" / "file")]
    # The leak check of a sanitized build does not work under a tracer.
    environment = {"LC_ALL": "C", "PATH": os.environ["PATH"], "ASAN_OPTIONS": "detect_leaks=0"}
    run = subprocess.run(command, capture_output=True, text=True, env=environment)
    return run.returncode, run.stdout.strip(), log.read_text(errors="replace") if log.exists() else ""


def prepare(folder):
    user = folder / "user"
    shutil.rmtree(user, ignore_errors=True)
    user.mkdir()
    (user / "file").write_bytes(OLD)
    (user / "file").chmod(MODE)


def ordinals(log, folder):
    """The copy's own calls, from its first look at the new file on: (name, how manieth of its kind)."""
    counts, found, begun = {}, [], False
    for line in log.splitlines():
        name = re.match(r"(\w+)\(", line)
        if not name:
            continue
        call = name.group(1)
        counts[call] = counts.get(call, 0) + 1
        begun = begun or str(folder / "new") in line and not call.startswith("exec")
        if begun and call in ERRORS:
            found.append((call, counts[call]))
    return found


def faults(folder, what, code, words):
    content = (folder / "user" / "file").read_bytes()
    killed = code not in (0, 1)
    if content not in (OLD, NEW):
        yield f"{what}: the user's file is neither the old nor the new one"
    if code == 0 and content != NEW:
        yield f"{what}: said '{words}', and the user's file is the old one"
    if code == 1 and content != OLD and "folder" not in words:
        yield f"{what}: said '{words}', and the user's file is the new one"
    if (folder / "user" / "file").stat().st_mode & 0o7777 != MODE:
        yield f"{what}: the permission bits are changed"
    if not killed and os.listdir(folder / "user") != ["file"]:
        yield f"{what}: left behind {sorted(os.listdir(folder / 'user'))}"


def injections(calls):
    for call, count in calls:
        for error in ERRORS[call]:
            yield f"{call}:error={error}:when={count}"
            if error != "EINTR":
                yield f"{call}:error={error}:when={count}+"
        yield f"{call}:signal=KILL:when={count}"


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "new").write_bytes(NEW)
        prepare(folder)
        if not shutil.which("strace"):
            return SKIPPED
        code, words, log = trace(sys.argv[1], folder, [])
        if not log:
            print("tracing is not allowed here")
            return SKIPPED
        calls = ordinals(log, folder)
        found = list(faults(folder, "no fault", code, words))
        missing = set(ERRORS) - {call for call, _ in calls}
        if code != 0 or missing:
            found.append(f"the plain copy ended with {code}, '{words}', without {sorted(missing)}")
        total = 0
        for what in injections(calls):
            prepare(folder)
            code, words, _ = trace(sys.argv[1], folder, ["-e", f"inject={what}"])
            found += faults(folder, what, code, words)
            total += 1
    print(f"{total} faults over {len(calls)} calls; {len(found)} findings")
    for finding in found:
        print(finding)
    return 1 if found else 0


sys.exit(main())
