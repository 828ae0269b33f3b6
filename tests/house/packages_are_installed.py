#!/usr/bin/env python3
"""What ./run and ./check install: exactly what the list names and the machine lacks, and who can't is told how.

usage: packages_are_installed.py cmake/install_packages.sh packages.txt

The machine is played by programs of the same names in a folder of their own: dpkg-query knows what INSTALLED names, id
says who asks, apt-get and sudo write down what they were asked for.
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
for name in "$@"; do
  case " $INSTALLED " in
    *" $name "*) echo "$name installed" ;;
    *" $name-removed "*) echo "$name config-files" ;;
    *) echo "dpkg-query: no packages found matching $name" >&2; fault=1 ;;
  esac
done
exit "${fault:-0}"
"""
APT_GET = """#!/bin/bash
echo "apt-get $*" >>"$ASKED"
exit "${APT_ENDS_WITH:-0}"
"""
SUDO = """#!/bin/bash
echo "sudo" >>"$ASKED"
exec "$@"
"""
ID = """#!/bin/bash
echo "$USER_NUMBER"
"""
TEXT = "# to build\ncmake\ng++  # the compiler\n\n# for ./check alone\nstrace\n"
INSTALL = "apt-get install -y -qq --no-install-recommends"


class Machine:
    def __init__(self, place, installed, user=0, programs=("dpkg-query", "apt-get"), **environment):
        self.place = place
        (self.place / "bin").mkdir()
        (self.place / "packages.txt").write_text(TEXT)
        (self.place / "asked").touch()
        for name, text in {"dpkg-query": DPKG_QUERY, "apt-get": APT_GET, "sudo": SUDO, "id": ID}.items():
            if name in (*programs, "id"):
                self.program(name, text)
        for name in ("bash", "sed", "cat", "grep", "env"):
            (self.place / "bin" / name).symlink_to(shutil.which(name))
        self.environment = {"PATH": str(self.place / "bin"), "ASKED": str(self.place / "asked"),
                            "INSTALLED": installed, "USER_NUMBER": str(user), **environment}

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
        self.assertEqual(machine.asked(), ["apt-get update -qq", f"{INSTALL} g++ strace"])

    def test_a_run_needs_nothing_of_the_checks(self):
        machine = self.machine("cmake g++")
        self.assertEqual(machine.install("run").returncode, 0)
        self.assertEqual(machine.asked(), [])

    def test_a_user_installs_through_sudo(self):
        machine = self.machine("cmake g++", user=1000, programs=("dpkg-query", "apt-get", "sudo"))
        self.assertEqual(machine.install().returncode, 0)
        self.assertEqual(machine.asked(), ["sudo", "apt-get update -qq", "sudo", f"{INSTALL} strace"])

    def test_a_user_without_sudo_is_told_what_to_install(self):
        machine = self.machine("cmake", user=1000)
        run = machine.install()
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr, "Packages are missing, and only root may install them. "
                                     "As root: apt-get install g++ strace\n")
        self.assertEqual(machine.asked(), [])

    def test_a_failed_installation_ends_it(self):
        run = self.machine("", APT_ENDS_WITH="100").install()
        self.assertEqual(run.returncode, 1)
        self.assertIn("As root: apt-get install cmake g++ strace\n", run.stderr)

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
