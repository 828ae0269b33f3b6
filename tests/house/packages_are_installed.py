#!/usr/bin/env python3
"""What ./run and ./check install: exactly what the list names and the machine lacks, and who can't is told how.

usage: packages_are_installed.py cmake/install_packages.sh packages.txt

The machine is played by programs of the same names in a folder of their own: dpkg-query knows what INSTALLED names, id
says who asks; apt-get, dpkg and sudo write down what they were asked for. What apt-get or dpkg has to say at its first,
second ... call stands in files; a fault ends the call, a warning does not.
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPT, LIST = (pathlib.Path(name).resolve() for name in sys.argv[1:3])

DPKG_QUERY = """#!/bin/bash
shift 2
[ $# -gt 0 ] || printf 'installed\\n%s\\n' "$HALF_DONE"
for name in "$@"; do
  case " $INSTALLED $(cat "$SAYS/added" 2>/dev/null) " in
    *" $name "*) echo "$name installed" ;;
    *" $name-removed "*) echo "$name config-files" ;;
    *) echo "dpkg-query: no packages found matching $name" >&2; fault=1 ;;
  esac
done
exit "${fault:-0}"
"""
ASKED_FOR = """#!/bin/bash
name=${0##*/} call=1
[ "$name" != sleep ] || { echo "$name" >>"$ASKED"; exit; }
echo "$name $*" >>"$ASKED"
while [ -e "$SAYS/$1.$call.done" ]; do call=$((call + 1)); done
>"$SAYS/$1.$call.done"
[ -e "$SAYS/$1.$call" ] || exit 0
[ "$1" != install ] || echo "$ADDS" >"$SAYS/added"
cat "$SAYS/$1.$call" >&2
[[ $(<"$SAYS/$1.$call") == W:* ]] || exit 100
"""
SUDO = """#!/bin/bash
echo "sudo" >>"$ASKED"
exec "$@"
"""
ID = """#!/bin/bash
echo "$USER_NUMBER"
"""
TEXT = "# to build\ncmake\ng++  # the compiler\n\n# for ./check alone\nstrace\n"
UPDATE = "apt-get update -qq"
INSTALL = "apt-get install -y -qq --no-install-recommends"
CONFIGURE = "dpkg --configure -a --force-confdef --force-confold"
# What apt-get says, in its own words.
INTERRUPTED = "E: dpkg was interrupted, you must manually run 'dpkg --configure -a' to correct the problem.\n"
LOCKED = "E: Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 42 (apt-get)\n"
DPKG_LOCKED = "dpkg: error: dpkg frontend lock was locked by another process with pid 42\n"
ERROR_CODE = "E: Sub-process /usr/bin/dpkg returned an error code (1)\n"
UNREACHED = "W: Failed to fetch http://x/InRelease  Temporary failure resolving 'x'\n"
# What is said here.
COULD_NOT = "The packages could not be installed; apt-get's reason stands above."
WAITING = "Another installation is at work on this machine: waiting for its end"


class Machine:
    def __init__(self, place, installed, user=0, programs=("dpkg-query", "apt-get", "dpkg"), says=None,
                 adds="", half_done=""):
        self.place = place
        (self.place / "bin").mkdir()
        (self.place / "says").mkdir()
        for command, texts in (says or {}).items():
            for call, text in enumerate(texts, 1):
                if text:
                    (self.place / "says" / f"{command}.{call}").write_text(text)
        (self.place / "packages.txt").write_text(TEXT)
        (self.place / "asked").touch()
        fakes = {"dpkg-query": DPKG_QUERY, "sudo": SUDO, "id": ID,
                 **dict.fromkeys(("apt-get", "dpkg", "sleep"), ASKED_FOR)}
        for name, text in fakes.items():
            if name in (*programs, "id", "sleep"):
                self.program(name, text)
        for name in ("bash", "sed", "cat", "grep", "env"):
            (self.place / "bin" / name).symlink_to(shutil.which(name))
        self.environment = {"PATH": str(self.place / "bin"), "ASKED": str(self.place / "asked"),
                            "SAYS": str(self.place / "says"), "INSTALLED": installed, "USER_NUMBER": str(user),
                            "ADDS": adds, "HALF_DONE": half_done}

    def program(self, name, text):
        path = self.place / "bin" / name
        path.write_text(text)
        path.chmod(0o755)

    def install(self, purpose=""):
        script = f'. "{SCRIPT}"; installPackages "{self.place}/packages.txt" {purpose}'
        return subprocess.run(["/bin/bash", "-c", script], env=self.environment, capture_output=True, text=True,
                              check=False)

    def asked(self):
        return (self.place / "asked").read_text().splitlines()


class Packages(unittest.TestCase):
    def machine(self, *arguments, **options):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return Machine(pathlib.Path(folder.name), *arguments, **options)

    def test_nothing_is_asked_for_where_all_is_there(self):
        machine = self.machine("cmake g++ strace", user=1000)
        run = machine.install()
        self.assertEqual((run.returncode, run.stdout, run.stderr, machine.asked()), (0, "", "", []))

    def test_only_what_lacks_is_installed(self):
        machine = self.machine("cmake strace-removed")
        run = machine.install()
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(run.stdout, "Installing: g++ strace\n")
        self.assertEqual(machine.asked(), [UPDATE, f"{INSTALL} g++ strace"])

    def test_a_run_needs_nothing_of_the_checks(self):
        machine = self.machine("cmake g++")
        self.assertEqual(machine.install("run").returncode, 0)
        self.assertEqual(machine.asked(), [])

    def test_a_user_installs_through_sudo(self):
        machine = self.machine("cmake g++", user=1000, programs=("dpkg-query", "apt-get", "dpkg", "sudo"))
        self.assertEqual(machine.install().returncode, 0)
        self.assertEqual(machine.asked(), ["sudo", UPDATE, "sudo", f"{INSTALL} strace"])

    def test_a_user_without_sudo_is_told_what_to_install(self):
        machine = self.machine("cmake", user=1000)
        run = machine.install()
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr, "Packages are missing, and only root may install them. "
                                     "As root: apt-get install g++ strace\n")
        self.assertEqual(machine.asked(), [])

    def refused(self, **options):
        """The end of what is said where the installation does not come about, and what was asked for."""
        machine = self.machine("cmake g++", **options)
        run = machine.install()
        self.assertEqual(run.returncode, 1)
        self.assertTrue(run.stderr.endswith("\nBy hand, as root: apt-get install strace\n"), run.stderr)
        return run.stderr.splitlines()[:-1], machine.asked()

    def test_a_failed_installation_ends_it(self):
        told, asked = self.refused(says={"install": ["E: Strange\n"]})
        self.assertEqual(told, ["E: Strange", COULD_NOT])
        self.assertEqual(asked, [UPDATE, f"{INSTALL} strace"])

    def test_what_was_broken_off_is_finished_first(self):
        machine = self.machine("cmake g++", says={"install": [INTERRUPTED]})
        run = machine.install()
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(run.stdout, "Installing: strace\nAn earlier installation of packages was broken off. "
                                     "Finishing it: dpkg --configure -a\n")
        self.assertEqual(machine.asked(), [UPDATE, f"{INSTALL} strace", CONFIGURE, f"{INSTALL} strace"])

    def test_a_user_finishes_through_sudo(self):
        machine = self.machine("cmake g++", user=1000, programs=("dpkg-query", "apt-get", "dpkg", "sudo"),
                               says={"install": [INTERRUPTED]})
        self.assertEqual(machine.install().returncode, 0)
        self.assertEqual(machine.asked()[4:6], ["sudo", CONFIGURE])

    def test_what_cannot_be_finished_is_told_with_its_reason(self):
        told, asked = self.refused(says={"install": [INTERRUPTED], "--configure": ["dpkg: error processing sl\n"]})
        self.assertEqual(told, [INTERRUPTED.strip(), "dpkg: error processing sl", COULD_NOT,
                                "As root: dpkg --configure -a, and mend what it names; then run this again"])
        self.assertEqual(asked, [UPDATE, f"{INSTALL} strace", CONFIGURE])

    def test_once_finished_a_second_fault_has_its_own_advice(self):
        told, _ = self.refused(says={"install": [INTERRUPTED, "E: You don't have enough free space in /var.\n"]})
        self.assertEqual(told[1:], [COULD_NOT, "The disk is full. Make room; then run this again"])

    def test_without_sudo_the_advice_begins_with_what_was_broken_off(self):
        machine = self.machine("cmake g++", user=1000, half_done="unpacked")
        run = machine.install()
        self.assertEqual(run.returncode, 1)
        self.assertTrue(run.stderr.endswith("As root: dpkg --configure -a && apt-get install strace\n"), run.stderr)

    def test_another_installation_is_waited_for(self):
        machine = self.machine("cmake g++", says={"update": [LOCKED] * 2, "install": [LOCKED]})
        run = machine.install()
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(run.stdout, "Installing: strace\n" + f"{WAITING}\n" * 2)
        self.assertEqual(machine.asked(), [UPDATE, "sleep", UPDATE, "sleep", UPDATE,
                                           f"{INSTALL} strace", "sleep", f"{INSTALL} strace"])

    def test_it_is_not_waited_for_without_end(self):
        told, asked = self.refused(says={"install": [LOCKED] * 100})
        self.assertEqual(told[1:], [COULD_NOT, "Another installation is still at work. Let it end; "
                                               "then run this again"])
        self.assertEqual(asked.count("sleep"), 60)

    def test_it_is_waited_for_before_what_was_broken_off_is_finished(self):
        machine = self.machine("cmake g++", says={"install": [INTERRUPTED], "--configure": [DPKG_LOCKED]})
        run = machine.install()
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(machine.asked(), [UPDATE, f"{INSTALL} strace", CONFIGURE, "sleep", CONFIGURE,
                                           f"{INSTALL} strace"])

    def test_what_another_one_keeps_from_being_finished_is_left_to_it(self):
        told, asked = self.refused(says={"install": [INTERRUPTED], "--configure": [DPKG_LOCKED] * 100})
        self.assertEqual(told, [INTERRUPTED.strip(), DPKG_LOCKED.strip(), COULD_NOT,
                                "Another installation is still at work. Let it end; then run this again"])
        self.assertEqual((asked.count("sleep"), asked.count(CONFIGURE)), (60, 61))

    def test_lists_that_could_not_be_read_anew_may_do(self):
        for said in (UNREACHED, "E: The repository 'http://x' is not signed.\n"):
            machine = self.machine("cmake g++", says={"update": [said]})
            run = machine.install()
            self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_a_network_that_is_down_is_told(self):
        told, _ = self.refused(says={"update": [UNREACHED], "install": ["E: Unable to locate package strace\n"]})
        self.assertEqual(told, [UNREACHED.strip(), "E: Unable to locate package strace", COULD_NOT,
                                "Servers of packages can't be reached. See to the network, or to apt's proxy; "
                                "then run this again"])

    def test_packages_that_the_release_lacks_are_named(self):
        told, _ = self.refused(says={"install": ["E: Unable to locate package strace\n"
                                                 "E: Package 'cmake' has no installation candidate\n"]})
        self.assertEqual(told[-1], "This system has no package strace, cmake. The names are those of Debian 12")

    def test_a_foreign_package_that_fails_stops_nothing(self):
        said = "dpkg: error processing package sl (--configure):\n" + ERROR_CODE
        machine = self.machine("cmake g++", says={"install": [said]}, adds="strace")
        run = machine.install()
        self.assertEqual(run.returncode, 0)
        self.assertEqual(run.stderr, f"{said}Another package of this machine has a fault; what is needed here is "
                                     "installed.\n")

    def test_a_package_that_fails_is_left_to_the_user(self):
        told, asked = self.refused(says={"install": [ERROR_CODE]})
        self.assertEqual(told, [ERROR_CODE.strip(), COULD_NOT,
                                "As root: dpkg --configure -a, and mend what it names; then run this again"])
        self.assertNotIn(CONFIGURE, asked)

    def test_packages_that_lack_others_are_left_to_the_user(self):
        told, asked = self.refused(says={"install": ["E: Unmet dependencies. Try 'apt --fix-broken install'.\n"]})
        self.assertEqual(told[-1], "Packages on this machine lack others. As root: apt-get --fix-broken install; "
                                   "then run this again")
        self.assertEqual(asked, [UPDATE, f"{INSTALL} strace"])

    def test_another_system_is_told_the_names_and_goes_on(self):
        run = self.machine("", programs=()).install()
        self.assertEqual(run.returncode, 0)
        self.assertIn("cmake g++ strace", run.stderr)

    def test_the_list_has_names_of_packages_and_no_twice(self):
        run = subprocess.run(["/bin/bash", "-c", f'. "{SCRIPT}"; packagesWanted "{LIST}"'],
                             capture_output=True, text=True, check=True)
        names = run.stdout.split("\n")[:-1]
        self.assertEqual(len(names), len(set(names)))
        for name in names:
            self.assertRegex(name, r"^[a-z0-9][a-z0-9+.-]+$")
        self.assertIn("cmake", names)
        self.assertIn("clang-tidy", names)


unittest.main(argv=sys.argv[:1])
