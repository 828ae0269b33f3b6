#!/usr/bin/env python3
"""Runs whole sessions (New, Save, Save As) while each system call fails in turn, or the program is killed at it, and on
file systems that are full or can't be written.

usage: save_faults.py SAVE_PROBE [--all]

After every run the user's file must be the old or the new one whole, its link and permission bits as they were; work
that was told saved, or that nobody was told about, must stand in the user's file, among the copies of unsaved work or in
the work file; and nothing else may be left behind. A kill may leave a work file and a temporary beside the file that was
being written. There are more faults than time: some hundreds are drawn by a printed seed (QRV_TEST_SEED repeats it);
--all takes every one. Where neither tracing nor mounting is allowed, limits of file size and descriptors still are.
"""
import concurrent.futures
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

MOST_FAULTS = 1200
MODE = 0o640
DONE, OPENING, EDITING, SAVING, AFTERWARDS = 0, 3, 4, 5, 6  # the probe's exit codes
ERRORS = {
    "openat": ["EMFILE", "EACCES", "ENOSPC", "EINTR"],
    "read": ["EIO", "EINTR"],
    "pread64": ["EIO", "EINTR"],
    "write": ["ENOSPC", "EDQUOT", "EIO", "EINTR"],
    "pwrite64": ["ENOSPC", "EDQUOT", "EIO", "EINTR"],
    "fsync": ["EIO", "ENOSPC", "EINTR"],
    "fdatasync": ["EIO", "ENOSPC"],
    "ftruncate": ["EIO"],
    "fchmod": ["EPERM", "EINTR"],
    "chmod": ["EPERM"],
    "fcntl": ["EACCES", "EINTR"],
    "close": ["EIO"],
    "rename": ["EACCES", "ENOSPC", "EIO"],
    "unlink": ["EACCES", "EIO"],
    "mkdir": ["EACCES", "ENOSPC"],
    "readlink": ["EIO"],
    "newfstatat": ["EACCES", "EIO"],
}


class Scenario:
    """One kind of session on a folder: what stands there before, and what the user's file is to be afterwards."""

    def __init__(self, probe, mode, sound, old):
        self.probe, self.mode, self.sound, self.old, self.new = probe, mode, sound, old, None

    def prepare(self, folder):
        for name in ("real", "user", "work", "kept"):
            (folder / name).mkdir(exist_ok=True)
            for entry in (folder / name).iterdir():
                entry.unlink()
        self.put(folder / "real" / "plant.qrv", self.sound if self.mode == "saveas" else self.old)
        (folder / "user" / "plant.qrv").symlink_to("../real/plant.qrv")
        self.put(self.target(folder), self.old)

    @staticmethod
    def put(path, content):
        if content is not None:
            path.write_bytes(content)
            path.chmod(MODE)

    def target(self, folder):
        return folder / "real" / ("other.qrv" if self.mode == "saveas" else "plant.qrv")

    def command(self, folder):
        arguments = [self.probe, self.mode, str(folder), str(folder / "user" / "plant.qrv")]
        if self.mode == "save":
            arguments.append("a title")
        if self.mode == "saveas":
            arguments.append(str(self.target(folder)))
        return arguments

    def run(self, folder, prefix=(), **options):
        # The leak check of a sanitized build does not work under a tracer.
        environment = {"LC_ALL": "C", "PATH": os.environ["PATH"], "ASAN_OPTIONS": "detect_leaks=0"}
        run = subprocess.run([*prefix, *self.command(folder)], capture_output=True, env=environment, **options)
        return run.returncode, (run.stdout + run.stderr).decode(errors="replace").strip()

    def learn(self, folder):
        """The new file, from a session that nothing troubles."""
        self.prepare(folder)
        code, words = self.run(folder)
        self.new = self.target(folder).read_bytes() if code == DONE else None
        if self.new in (None, self.old):
            raise SystemExit(f"{self.mode}: the plain session ended with {code}: {words}")
        return list(Outcome(self, folder, "no fault", "", code, words).faults())


class Outcome:
    """What a session has left of its folder."""

    def __init__(self, scenario, folder, what, call, code, words):
        self.scenario, self.folder, self.what, self.call, self.code, self.words = scenario, folder, what, call, code, words
        self.killed = code not in (DONE, OPENING, EDITING, SAVING, AFTERWARDS)
        target = scenario.target(folder)
        self.content = target.read_bytes() if target.exists() else None

    def bytes_in(self, name):
        files = [entry for entry in (self.folder / name).iterdir() if not entry.name.startswith(".qrv")]
        return [entry.read_bytes() for entry in files]

    def faults(self):
        for finding in (*self.of_users_file(), *self.of_lost_work(), *self.of_left_overs()):
            yield f"{self.scenario.mode}, {self.what}: {finding} (ended with {self.code}: {self.words[:300]})"

    def of_users_file(self):
        folder, scenario = self.folder, self.scenario
        if "Sanitizer" in self.words or "runtime error" in self.words:
            yield "a sanitizer's report"
        if self.content not in (scenario.old, scenario.new):
            yield "the user's file is neither the old nor the new one"
        if scenario.mode != "save" and self.code == DONE and self.content != scenario.new:
            yield "told done, and the new file is not there"
        if os.readlink(folder / "user" / "plant.qrv") != "../real/plant.qrv":
            yield "the link points elsewhere"
        plant = folder / "real" / "plant.qrv"
        if not plant.exists():
            yield "the file that was there is gone"
            return
        if plant.stat().st_mode & 0o7777 != MODE:
            yield "the permission bits are changed"
        if scenario.mode == "saveas" and plant.read_bytes() != scenario.sound:
            yield "the file that was not saved to is changed"

    def of_lost_work(self):
        if self.killed or self.code == OPENING or self.scenario.mode == "new":
            return
        kept = self.scenario.new in (self.content, *self.bytes_in("kept"), *self.bytes_in("work"))
        # Who was told that the work file takes no more still has that file.
        told = self.code in (EDITING, SAVING) and self.bytes_in("work")
        if not kept and not told:
            yield "the work is lost"

    def of_left_overs(self):
        unseen = self.call in ("unlink", "newfstatat")  # what can't be deleted or seen stays
        for name in ("real", "user", "work", "kept"):
            for entry in (self.folder / name).iterdir():
                if entry.name.startswith(".qrv") and not self.killed and not unseen:
                    yield f"left {name}/{entry.name}"
        if {entry.name for entry in (self.folder / "user").iterdir()} != {"plant.qrv"}:
            yield "something is left in the user's folder"
        if self.bytes_in("work") and not self.killed and not unseen and not self.may_leave_work():
            yield "a work file is left"
        source = self.folder / ("real" if self.scenario.mode == "saveas" else "user")
        notes = [str(source / self.scenario.target(self.folder).name).encode()]
        if any(content not in (self.scenario.new, *notes) for content in self.bytes_in("kept")):
            yield "a copy of unsaved work is not whole"

    def may_leave_work(self):
        # The user's file that could not be flushed is in place, but not known to outlive a power cut.
        if self.code in (EDITING, SAVING) or self.call in ("openat", "fsync"):
            return True
        return self.content != self.scenario.new and self.scenario.new not in self.bytes_in("kept")


# --- under a tracer ---


def can_trace(folder):
    log = folder / "can_trace"
    run = subprocess.run(["strace", "-o", str(log), "true"], capture_output=True, check=False)
    return run.returncode == 0 and log.exists()


def points(scenario, folder):
    """The session's own calls, from its first look at the folder on: (name, how manieth of its kind)."""
    scenario.prepare(folder)
    log = folder / "trace"
    scenario.run(folder, ["strace", "-f", "-o", str(log)])
    counts, found, begun = {}, [], False
    for line in log.read_text(errors="replace").splitlines():
        name = re.match(r"\d+\s+(\w+)\(", line)
        if not name or name.group(1) == "execve":
            continue
        call = name.group(1)
        counts[call] = counts.get(call, 0) + 1
        begun = begun or str(folder) in line
        if begun and call in ERRORS:
            found.append((call, counts[call]))
    return found


def injections(scenario, folder):
    for call, count in points(scenario, folder):
        for error in ERRORS[call]:
            yield scenario, call, f"{call}:error={error}:when={count}"
            if error != "EINTR":
                yield scenario, call, f"{call}:error={error}:when={count}+"
        yield scenario, call, f"{call}:signal=KILL:when={count}"


def traced(folder, scenario, call, what):
    scenario.prepare(folder)
    tracer = ["strace", "-f", "--seccomp-bpf", "-o", "/dev/null", "-e", f"trace={call}", "-e", f"inject={what}"]
    code, words = scenario.run(folder, tracer, timeout=120)
    return list(Outcome(scenario, folder, what, call, code, words).faults())


def trace_all(scenarios, folder, everything):
    seed = int(os.environ.get("QRV_TEST_SEED") or random.randrange(1 << 31))
    faults = [fault for scenario in scenarios for fault in injections(scenario, folder)]
    drawn = faults if everything or len(faults) <= MOST_FAULTS else random.Random(seed).sample(faults, MOST_FAULTS)
    print(f"{len(drawn)} of {len(faults)} faults and kills, seed {seed}", flush=True)
    workers = [folder / f"worker{i}" for i in range(2)]

    def share(i):
        workers[i].mkdir()
        return [finding for fault in drawn[i :: len(workers)] for finding in traced(workers[i], *fault)]

    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        return [finding for found in pool.map(share, range(len(workers))) for finding in found]


# --- within limits ---


def limited(folder, scenario, what, limit, value, on_excess):
    def starve():
        signal.signal(signal.SIGXFSZ, on_excess)
        resource.setrlimit(limit, (value, value))

    scenario.prepare(folder)
    code, words = scenario.run(folder, preexec_fn=starve, timeout=120, restore_signals=False)
    return list(Outcome(scenario, folder, f"{what} {value}", "", code, words).faults())


def limit_all(scenarios, folder):
    found = []
    for scenario in scenarios:
        for part in (0, 3, 7, 8, 9, 10, 12, 15):
            size = len(scenario.sound) * part // 8
            for on_excess in (signal.SIG_IGN, signal.SIG_DFL):
                found += limited(folder, scenario, "files of at most", resource.RLIMIT_FSIZE, size, on_excess)
        for count in range(3, 9):
            found += limited(folder, scenario, "descriptors", resource.RLIMIT_NOFILE, count, signal.SIG_IGN)
    return found


# --- on file systems of their own ---

PRIVATE_MOUNTS = ["unshare", "--user", "--map-root-user", "--mount"]


def can_mount(folder):
    attempt = f"mount -t tmpfs -o size=64k tmpfs {folder}"
    return subprocess.run([*PRIVATE_MOUNTS, "sh", "-c", attempt], capture_output=True, check=False).returncode == 0


class Mounted:
    """A folder of the session's on a small file system, or on one that becomes read-only."""

    def __init__(self, path, size, is_read_only):
        self.path, self.size, self.is_read_only = path, size, is_read_only

    def __enter__(self):
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={self.size}", "tmpfs", str(self.path)], check=True)
        return self

    def freeze(self):
        if self.is_read_only:
            subprocess.run(["mount", "-o", "remount,ro", str(self.path)], check=True)

    def __exit__(self, *_):
        subprocess.run(["mount", "-o", "remount,rw", str(self.path)], check=True)
        subprocess.run(["umount", str(self.path)], check=True)


def on_mount(folder, scenario, name, size, is_read_only=False):
    (folder / name).mkdir(exist_ok=True)
    with Mounted(folder / name, size, is_read_only) as mount:
        scenario.prepare(folder)
        mount.freeze()
        code, words = scenario.run(folder, timeout=120)
        what = f"{name} on " + ("a read-only mount" if is_read_only else f"a file system of {size} bytes")
        return list(Outcome(scenario, folder, what, "", code, words).faults())


def mount_all(scenarios, folder):
    found = []
    for scenario in scenarios:
        page = resource.getpagesize()
        standing = len(scenario.sound) + len(scenario.old or b"") * (scenario.mode == "saveas")
        room = standing + len(scenario.new)
        sizes = sorted({standing + 4 * page, (standing + room) // 2, room - page, room + 8 * page, 2 * room})
        for size in sizes:
            found += on_mount(folder, scenario, "real", size)
            found += on_mount(folder, scenario, "work", size)
        for size in (page, len(scenario.new) // 2):
            found += on_mount(folder, scenario, "work", size)
        found += on_mount(folder, scenario, "real", 4 * room, is_read_only=True)
        found += on_mount(folder, scenario, "work", 4 * room, is_read_only=True)
        # Neither the user's folder nor the one for copies takes the work.
        (folder / "kept").mkdir(exist_ok=True)
        with Mounted(folder / "kept", page, False):
            found += on_mount(folder, scenario, "real", standing + 4 * page)
    return found


# --- all of it ---


def scenarios_of(probe, folder):
    make = Scenario(probe, "new", None, b"an older file of another program\n" * 1000)
    found = make.learn(folder)
    make.sound = make.new
    save = Scenario(probe, "save", make.new, make.new)
    save_as = Scenario(probe, "saveas", make.new, None)
    save_over = Scenario(probe, "saveas", make.new, b"the file that is replaced\n" * 1000)
    scenarios = [make, save, save_as, save_over]
    for scenario in scenarios[1:]:
        found += scenario.learn(folder)
    return scenarios, found


def main():
    probe, everything, is_mounting = sys.argv[1], "--all" in sys.argv, "--mounting" in sys.argv
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        scenarios, found = scenarios_of(probe, folder)
        if is_mounting:
            found += mount_all(scenarios, folder)
        else:
            found += limit_all(scenarios, folder)
            if can_mount(folder):
                mounting = subprocess.run([*PRIVATE_MOUNTS, sys.executable, __file__, probe, "--mounting"], check=False)
                found += ["on a file system of its own, see above"] if mounting.returncode else []
            else:
                print("no file systems of one's own are allowed here: the rest is tried without")
            if shutil.which("strace") and can_trace(folder):
                found += trace_all(scenarios, folder, everything)
            else:
                print("tracing is not allowed here: the rest is tried without")
    print(f"{'file systems' if is_mounting else 'all'}: {len(found)} findings")
    for finding in found:
        print(finding)
    return 1 if found else 0


sys.exit(main())
