#!/usr/bin/env python3
"""What a newcomer starts first, ./run, takes its road with the built programs, and leaves everything else alone.

usage: run_test.py PROJECT BUILD

Nothing is installed or built: of cmake, which says what it is told to, and of the list of what is installed there are
twins, and so there is of the editor, which writes down how it was started.
"""
import fcntl
import os
import pathlib
import pty
import re
import shutil
import stat
import subprocess
import sys
import tempfile
import termios
import unittest

import locales_of_others

PROJECT, BUILD = (pathlib.Path(name).resolve() for name in sys.argv[1:3])
LONGEST = 300  # seconds until the test gives a run up

TWINS = {
    "cmake": "#!/bin/bash\nprintf %s \"$BUILD_SAYS\"\nexit \"${BUILD_ENDS:-0}\"\n",
    "dpkg-query": "#!/bin/bash\nshift 2\nprintf '%s installed\\n' \"$@\" | grep -v \"^${LACKS:-none} \"\n",
}
EDITOR = """#!/bin/bash
printf '%s\\n' "$@" >arguments
env -0 >environment
until grep -q "^COM9=/" "$QRV_SETTINGS"; do sleep 0.1; done
exit "${EDITOR_ENDS:-7}"
"""


def without_times(text):
    """What the road tells, but for how long it took and for the outputs, which move. Their numbers must be such."""
    text = re.sub(r"^ *\d+ %  .*\n", "", text, flags=re.M)
    text = re.sub(r" in \d+\.\d s,", " in N s,", text)
    return re.sub(r"^20\d\d-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z(,\d+\.\d\d){5}$", "ROW", text, flags=re.M)


def owns_terminal():
    fcntl.ioctl(0, termios.TIOCSCTTY, 0)


def read_from(terminal):
    try:
        return os.read(terminal, 4096)
    except OSError:  # nobody is at its other end any more
        return b""


class Road(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.clone = self.folder / "a clone"
        self.place = self.clone / "build/run"
        self.road = self.place / "road"
        self.home = self.folder / "home"
        self.home.mkdir()
        programs = self.clone / "build/release/bin"
        programs.mkdir(parents=True)
        (programs.parent / "build.ninja").touch()
        for name in ("qrv", "qrv_controller"):
            (programs / name).symlink_to(BUILD / "bin" / name)
        for name in ("run", "packages.txt", "cmake/install_packages.sh", "samples/boiler_house.txt"):
            (self.clone / name).parent.mkdir(exist_ok=True)
            shutil.copy(PROJECT / name, self.clone / name)
        twins = self.folder / "twins"
        twins.mkdir()
        for path, text in [*((twins / name, text) for name, text in TWINS.items()), (programs / "qrv_edit", EDITOR)]:
            path.write_text(text)
            path.chmod(0o755)
        self.environment = {"PATH": f"{twins}:{os.environ['PATH']}", "HOME": str(self.home), "LC_ALL": "C.UTF-8",
                            "TMPDIR": str(self.folder / "nowhere")}

    def run_it(self, *words, **environment):
        return subprocess.run([self.clone / "run", *words], env={**self.environment, **environment}, cwd=self.folder,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, timeout=LONGEST)

    def run_on_terminal(self, *words, pressed_behind=None, **environment):
        """Exit code, and what a user sees. Ctrl+C is pressed once that stands there which it is to be pressed behind."""
        own, terminal = pty.openpty()
        self.addCleanup(os.close, own)
        run = subprocess.Popen([self.clone / "run", *words], env={**self.environment, "TERM": "dumb", **environment},
                               cwd=self.folder, stdin=terminal, stdout=terminal, stderr=terminal,
                               start_new_session=True, preexec_fn=owns_terminal)
        os.close(terminal)
        told = b""
        while chunk := read_from(own):
            told += chunk
            if pressed_behind and pressed_behind in told:
                os.write(own, b"\x03")
                pressed_behind = None
        return run.wait(LONGEST), told

    def qrv(self, *words):
        environment = {**self.environment, "QRV_SETTINGS": str(self.folder / "settings.ini"),
                       "XDG_STATE_HOME": str(self.folder / "state")}
        subprocess.run([BUILD / "bin/qrv", *words], env=environment, cwd=self.folder, capture_output=True, check=True)

    def all_is_taken_down(self):
        self.assertNotIn("COM9=", (self.place / "settings.ini").read_text())
        self.assertEqual(list(self.home.iterdir()), [])

    def test_the_road_in_the_terminal_proves_the_sample(self):
        run = self.run_it()
        self.assertEqual(run.returncode, 0, run.stderr)
        for step in range(1, 10):
            self.assertIn(f"\n{step}. ", run.stdout)
        self.assertIn("Proved: the sample as text and back is equal; the sample is in the controller", run.stdout)
        places = re.findall(r"^(?:The files, in|In) (.*):$", run.stdout, re.M)
        self.assertEqual(places, [str(self.road), str(self.place)])
        files = re.findall(r"^  (\S+\.\S+)  ", run.stdout, re.M)
        self.assertEqual(files, ["sample.txt", "again.qrv", "new.qrv", "back.qrv", "controller.memory",
                                 "QRVUploadLog.txt"])
        for name, place in zip(files, [self.road] * 4 + [self.place] * 2):
            self.assertTrue((place / name).is_file(), name)
        self.all_is_taken_down()

    def test_where_nothing_is_to_be_built_nothing_is_said_of_it(self):
        run = self.run_it(DISPLAY=":99", BUILD_SAYS="ninja: no work to do.\n")
        self.assertTrue(run.stdout.startswith("A simulated controller answers on COM9."), run.stdout)

    def test_a_log_shows_each_tenth_of_a_build(self):
        steps = "".join(f"[{step}/40] Building CXX object {step}.o\n" for step in range(1, 41))
        run = self.run_it(DISPLAY=":99", BUILD_SAYS=f"[0/1] Re-running CMake...\n-- Configuring done\n{steps}")
        tenths = "".join(f"Building: step {step} of 40\n" for step in range(4, 41, 4))
        self.assertTrue(run.stdout.startswith(f"{tenths}A simulated controller answers on COM9."), run.stdout)

    def test_a_terminal_shows_each_step_in_one_line(self):
        says = "[1/2] Building CXX object a.o\n[2/2] Linking CXX executable a\n"
        code, told = self.run_on_terminal(DISPLAY=":99", BUILD_SAYS=says)
        self.assertEqual(code, 7)
        self.assertTrue(told.startswith(b"\rBuilding: step 1 of 2\rBuilding: step 2 of 2\r\n/"), told)

    FAULT = "FAILED: a.o \nc++ -c a.cpp\na.cpp:1:1: error: 'a' does not name a type\nninja: build stopped"

    def test_a_build_that_fails_shows_its_whole_error_and_ends_with_its_exit_code(self):
        run = self.run_it(DISPLAY=":99", BUILD_SAYS=f"[1/2] Building CXX object a.o\n{self.FAULT}", BUILD_ENDS="9")
        self.assertEqual((run.returncode, run.stdout), (9, f"Building: step 1 of 2\n{self.FAULT}\n"))
        self.assertFalse((self.place / "arguments").exists())

    def test_so_it_does_on_a_terminal(self):
        says = f"[1/2] Building CXX object a.o\n{self.FAULT}"
        code, told = self.run_on_terminal(DISPLAY=":99", BUILD_SAYS=says, BUILD_ENDS="9")
        seen = f"\rBuilding: step 1 of 2\n{self.FAULT}\n".replace("\n", "\r\n")
        self.assertEqual((code, told.decode()), (9, seen))

    def test_no_locale_changes_a_word_or_a_number_of_the_road(self):
        others = locales_of_others.made_in(self.folder / "locales")
        told = {}
        for locale in ("C.UTF-8", *locales_of_others.NAMES):
            shutil.rmtree(self.place, ignore_errors=True)
            run = self.run_it(**others, LC_ALL=locale)
            self.assertEqual(run.returncode, 0, run.stderr)
            told[locale] = (without_times(run.stdout), without_times(run.stderr),
                            (self.road / "sample.txt").read_bytes())
        self.assertEqual(told["de_DE.UTF-8"], told["C.UTF-8"])
        self.assertEqual(told["tr_TR.UTF-8"], told["C.UTF-8"])

    def test_a_file_with_findings_is_taken_to_the_end(self):
        self.qrv("load", PROJECT / "samples/boiler_house.txt", "plant.qrv")
        text = self.folder / "odd.txt"
        sample = (PROJECT / "samples/boiler_house.txt").read_text(encoding="utf-8")
        # No parameter of the block is a text, so a download leaves this one out.
        text.write_text(sample.replace("[ParmString]\n", '[ParmString]\nBlockNumber=41 Offset=900 Pstring="LOST"\n'))
        self.qrv("load", text, "odd one.qrv")
        run = self.run_it("--terminal", "odd one.qrv")
        self.assertEqual(run.returncode, 1, run.stderr)
        self.assertIn("qrv download ended with 1: what it found stands above\n", run.stderr)
        self.assertIn("\n9. ", run.stdout)
        self.assertNotIn("Proved:", run.stdout)
        self.assertNotIn("The blocks 600", run.stdout)
        self.assertRegex(run.stdout, r"Not proved.*\n  qrv download .*odd\\ one\.qrv --port COM9 --yes\n")
        self.all_is_taken_down()

    def test_what_is_no_configuration_ends_the_road_with_its_exit_code(self):
        run = self.run_it("--terminal", PROJECT / "LICENSE")
        self.assertEqual(run.returncode, 3)
        self.assertIn("run: qrv info ended with 3, so the road ends here; the reason stands above\n", run.stderr)
        self.all_is_taken_down()

    def test_a_file_that_is_not_there_is_told_at_once(self):
        run = self.run_it("--terminal", "none.qrv")
        self.assertEqual((run.returncode, run.stdout, run.stderr), (2, "", "run: none.qrv: no such file\n"))

    def test_an_option_that_is_none_is_named(self):
        run = self.run_it("--bogus")
        self.assertEqual((run.returncode, run.stdout), (2, ""))
        self.assertTrue(run.stderr.startswith("run: --bogus: no such option\nusage: ./run "), run.stderr)

    def test_why_the_road_leads_through_the_terminal_is_told_where_nobody_chose_it(self):
        words = "run: there is no display (DISPLAY is not set), so the road leads through the terminal\n"
        self.assertIn(words, self.run_it().stderr)
        self.assertNotIn("display", self.run_it("--terminal").stderr)

    def test_copies_of_work_that_was_not_saved_are_told_at_the_next_start(self):
        words = "Copies of work that was not saved:\n"
        self.assertNotIn(words, self.run_it("--terminal").stdout)
        copy = self.place / "state/QRV_Edit/backups/plant 2026-11-20 10-00-00.qrv"
        copy.parent.mkdir(parents=True)
        copy.write_text("what was typed")
        told = self.run_it("--terminal").stdout
        self.assertIn(words, told)
        self.assertIn(str(copy), told)

    def file_on_the_road(self):
        self.road.mkdir(parents=True)
        kept = self.road / "back.qrv"
        self.qrv("new", kept)
        before = kept.read_bytes()
        run = self.run_it("--terminal", kept)
        self.assertEqual(run.returncode, 2, run.stderr)
        self.assertIn(" is made anew: give a copy of ", run.stderr)
        self.assertEqual(kept.read_bytes(), before)

    def test_a_file_that_it_would_make_anew_is_not_taken(self):
        self.file_on_the_road()

    def test_nor_is_it_where_the_build_lies_elsewhere(self):
        elsewhere = self.folder / "elsewhere"
        (self.clone / "build").rename(elsewhere)
        (self.clone / "build").symlink_to(elsewhere)
        self.file_on_the_road()

    def test_what_the_user_made_beside_the_sample_stays(self):
        self.place.mkdir(parents=True)
        made = [self.place / name for name in ("back.qrv", "new.qrv", "again.qrv", "sample.txt")]
        for path in made:
            path.write_text("the user's")
        run = self.run_it("--terminal")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual({path.read_text() for path in made}, {"the user's"})

    def test_the_first_blocks_that_a_file_has_used_are_watched(self):
        sample = (PROJECT / "samples/boiler_house.txt").read_text(encoding="utf-8")
        empty = "".join(f'BlockNumber={number} FunctionNumber=127 Constants=0 TempRam=0 VolRam=0 Comment="" '
                        'VisioComment=""\n' for number in range(4))
        text = self.folder / "plant.txt"
        text.write_text(sample.replace("[Block List]\n", f"[Block List]\n{empty}"), encoding="utf-8")
        self.qrv("load", text, "plant.qrv")
        run = self.run_it("--terminal", "plant.qrv")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertRegex(run.stdout, r"\$ qrv watch \S+/plant\.qrv 4 5 6 7 --port COM9 --interval 200 --count 2\n"
                                     r"time,block 4 ")
        self.assertIn("Proved: plant.qrv as text and back is equal", run.stdout)

    def test_where_none_is_used_none_is_watched(self):
        self.qrv("new", "plant.qrv")
        run = self.run_it("--terminal", "plant.qrv")
        self.assertIn("two rows\nplant.qrv has no blocks of its own\n\n7. ", run.stdout)
        self.assertIn("\n9. ", run.stdout)

    def test_what_only_an_opening_fills_is_no_fault_of_the_line_and_not_proved_either(self):
        self.qrv("new", "plant.qrv")
        run = self.run_it("--terminal", "plant.qrv")
        self.assertEqual(run.returncode, 1, run.stderr)
        told = run.stdout.split("compare --held")[1].split("\n8. ")[0]
        self.assertIn("\nThe blocks 600, 601 and 602 are the CPU's own inputs and output. The editor gives them", told)
        self.assertIn("\nOpened in the editor and saved, plant.qrv has them, too.\n", told)
        # Nothing else differs.
        self.assertEqual(set(re.findall(r" BlockNumber=(\d+)[ :]", told)), {"600", "601", "602"})
        self.assertNotIn("Proved:", run.stdout)
        self.assertRegex(run.stdout, r"Not proved.*\n  qrv compare --held .*  # step 7 tells of the blocks 600 to 602\n")

    def test_ctrl_c_ends_the_road_whatever_the_step_makes_of_it(self):
        # A watch takes it for its end and is content. Comes it later on a slow machine, the next step has it.
        code, told = self.run_on_terminal("--terminal", pressed_behind=b"time,block")
        self.assertEqual(code, 130)
        self.assertTrue(told.endswith(b"run: ended by Ctrl+C\r\n"), told[-200:])
        self.all_is_taken_down()

    def test_the_editor_is_started_on_the_sample_and_the_port(self):
        run = self.run_it(DISPLAY=":99")
        sample = self.place / "boiler_house.qrv"
        self.assertEqual((run.returncode, run.stderr), (7, f"{sample} made.\n"))
        self.assertEqual((self.place / "arguments").read_text(), f"{sample}\n")
        line = next(line for line in run.stdout.splitlines() if line.startswith("  . "))
        names = ("QRV_SETTINGS", "TEMP", "XDG_STATE_HOME")
        beside = subprocess.run(["bash", "-c", f"{line}; printenv {' '.join(names)}; command -v qrv"], text=True,
                                check=True, capture_output=True, env={"PATH": os.environ["PATH"]})
        self.assertEqual(beside.stdout.splitlines(),
                         [f"{self.place}/settings.ini", f"{self.place}", f"{self.place}/state",
                          str(self.clone / "build/release/bin/qrv")])
        self.assertIn("CommPort=9\n", (self.place / "settings.ini").read_text())
        self.assertTrue(sample.is_file())
        self.all_is_taken_down()

    def test_where_the_display_is_not_reached_the_terminal_is_offered(self):
        run = self.run_it(DISPLAY=":99", EDITOR_ENDS="2")
        self.assertEqual(run.returncode, 2)
        self.assertTrue(run.stderr.endswith("\nrun: ./run --terminal needs no display\n"), run.stderr)
        self.all_is_taken_down()

    def test_no_other_end_of_the_editor_speaks_of_a_display(self):
        self.assertNotIn("display", self.run_it(DISPLAY=":99", EDITOR_ENDS="1").stderr)

    def test_a_wayland_session_shows_the_editor_where_its_package_is_installed(self):
        run = self.run_it(WAYLAND_DISPLAY="wayland-0")
        self.assertEqual(run.returncode, 7, run.stderr)
        self.assertEqual(self.editors_environment()["WAYLAND_DISPLAY"], "wayland-0")

    def test_without_that_package_the_road_is_travelled_and_the_package_named(self):
        run = self.run_it(WAYLAND_DISPLAY="wayland-0", LACKS="qt6-wayland")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("run: to show windows in this Wayland session the toolkit needs Debian's qt6-wayland\n", run.stderr)
        self.assertIn("\n9. ", run.stdout)

    def test_nobody_who_chose_the_terminal_hears_of_that_package(self):
        run = self.run_it("--terminal", WAYLAND_DISPLAY="wayland-0", LACKS="qt6-wayland")
        self.assertNotIn("Wayland", run.stderr)

    def editors_environment(self):
        entries = (self.place / "environment").read_text().split("\0")[:-1]
        return dict(entry.split("=", 1) for entry in entries)

    def test_what_the_editor_keeps_stays_in_its_place(self):
        self.run_it(DISPLAY=":99")
        found = self.editors_environment()
        for name in ("QRV_SETTINGS", "XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TEMP"):
            self.assertTrue(f"{found[name]}/".startswith(f"{self.place}/"), name)
        # The toolkit takes no folder that others may look into.
        self.assertEqual(stat.S_IMODE(os.stat(found["XDG_RUNTIME_DIR"]).st_mode), 0o700)

    def test_a_desktop_of_the_user_stays_as_it_is(self):
        self.run_it(DISPLAY=":99", XDG_RUNTIME_DIR=str(self.folder))
        self.assertEqual(self.editors_environment()["XDG_RUNTIME_DIR"], str(self.folder))


unittest.main(argv=sys.argv[:1])
