#!/usr/bin/env python3
"""What stands on a user's machine works from where it stands.

usage: packaging_test.py CMAKE BUILD VERSION Installation|Package

Installation: the build, installed into a prefix whose path has a blank. Package: the Debian package, unpacked into an
empty root.
"""
import configparser
import gzip
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree

import locales_of_others

CMAKE, BUILD, VERSION, PART = sys.argv[1:5]
MIME_TYPE = "application/x-qrv-configuration"
UNREACHED = "qrv_edit: no window can be shown; qrv does its work in a terminal. The toolkit says:\n"
LONGEST_START = 120  # seconds until the test gives the editor up

FILES = {
    "bin/qrv",
    "bin/qrv_controller",
    "bin/qrv_edit",
    "share/applications/qrv_edit.desktop",
    "share/bash-completion/completions/qrv",
    "share/doc/qrv-edit/changelog.gz",
    "share/doc/qrv-edit/copyright",
    "share/doc/qrv-edit/examples/boiler_house.txt",
    "share/doc/qrv-edit/functions.md",
    "share/icons/hicolor/scalable/apps/qrv_edit.svg",
    "share/icons/hicolor/scalable/mimetypes/application-x-qrv-configuration.svg",
    "share/man/man1/qrv.1.gz",
    "share/man/man1/qrv_controller.1.gz",
    "share/man/man1/qrv_edit.1.gz",
    "share/mime/packages/qrv_edit.xml",
    "share/qrv_edit/FUNCTIONS.TXT",
    "share/qrv_edit/QRVDATA.DAT",
    "share/qrv_edit/ts-logosm.jpg",
}


def done(*command, **options):
    run = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)
    if run.returncode != 0:
        raise AssertionError(f"{command} ended with {run.returncode}\n{run.stdout}{run.stderr}")
    return run


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir()}


class Place(unittest.TestCase):
    """A folder for the class, with the programs in `prefix`, and a home of its own."""
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.home = cls.folder / "home"
        cls.home.mkdir()
        cls.environment = {"PATH": os.environ["PATH"], "HOME": str(cls.home), "TMPDIR": folder.name,
                           "QRV_SETTINGS": str(cls.home / "settings.ini"), "QT_QPA_PLATFORM": "offscreen"}
        cls.prefix = cls.installed()

    def qrv(self, *arguments):
        return done(self.prefix / "bin/qrv", *arguments, env=self.environment, cwd=self.home).stdout

    def new_configuration(self):
        path = self.home / f"{self.id().rsplit('.', 1)[-1]}.qrv"
        self.qrv("new", path)
        return path

    def check_programs(self):
        self.assertEqual(self.qrv("--version").splitlines()[0], f"qrv {VERSION}")
        path = self.new_configuration()
        self.assertIn("Blocks used             4 of 705\n", self.qrv("info", path))
        self.assertIn("PROCESS VARIABLE INPUT", self.qrv("function", "PID"))
        self.assertIn("Usage: qrv_controller", done(self.prefix / "bin/qrv_controller", "--help").stdout)
        self.assertEqual(done(self.prefix / "bin/qrv_controller", "--version").stdout, f"qrv_controller {VERSION}\n")

    def check_editors_answers(self):
        """Where there is no display, and none is asked for."""
        environment = {name: value for name, value in self.environment.items() if name != "QT_QPA_PLATFORM"}
        editor = self.prefix / "bin/qrv_edit"
        self.assertIn("\nUsage: qrv_edit [OPTIONS] [FILE]\n", done(editor, "--help", env=environment).stdout)
        told = done(editor, "--version", env=environment).stdout.splitlines()
        self.assertEqual([line.rsplit(" ", 1)[0] for line in told], ["qrv_edit", "Function catalogue", "SQLite", "Qt"])
        self.assertEqual(told[:2], [f"qrv_edit {VERSION}", self.qrv("--version").splitlines()[1]])
        for words, display, *told in [
            ([], {}, "qrv_edit: there is no display (DISPLAY is not set); qrv does its work in a terminal.\n"),
            # The toolkit by itself would abort in each of these.
            ([], {"DISPLAY": ":54321"}, UNREACHED, "  could not connect to display :54321\n"),
            ([], {"QT_QPA_PLATFORM": "none"}, UNREACHED, '  Could not find the Qt platform plugin "none" in ""\n'),
            (["-platform", "none"], {}, UNREACHED, '  Could not find the Qt platform plugin "none" in ""\n'),
        ]:
            run = subprocess.run([editor, *words, "plant.qrv"], env={**environment, **display}, capture_output=True,
                                 text=True, check=False)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (2, "", "".join(told)))

    def check_editor(self):
        """The editor remembers a file among the recent ones once it has opened it. The user has never run it."""
        path = self.new_configuration()
        user = self.folder / "user"
        user.mkdir(mode=0o700)
        settings_file = user / ".config/QRV_Edit/settings.ini"
        environment = {**self.environment, "HOME": str(user), "XDG_RUNTIME_DIR": str(user)}
        del environment["QRV_SETTINGS"]
        editor = subprocess.Popen([self.prefix / "bin/qrv_edit", path], env=environment, cwd=user)
        try:
            recent = ""
            gives_up = time.monotonic() + LONGEST_START
            while str(path) not in recent and editor.poll() is None and time.monotonic() < gives_up:
                time.sleep(0.1)
                settings = configparser.ConfigParser(interpolation=None)
                settings.read(settings_file)
                recent = settings.get("Recent Files", "RecentFile1", fallback="")
            self.assertIn(str(path), recent, f"the editor's exit code: {editor.poll()}")
            # Work files are the user's, whoever the user is; nothing comes to stand beside the programs.
            state = user / ".local/state/QRV_Edit"
            self.assertEqual(len(list(state.glob("QRM*"))), 1)
            self.assertEqual(files_below(self.prefix), FILES)
            # At a logout or Ctrl+C nothing is asked, and no work file stays: what wasn't saved is a backup.
            editor.terminate()
            self.assertEqual(editor.wait(LONGEST_START), 128 + signal.SIGTERM)
            self.assertEqual(list(state.glob("QRM*")), [])
        finally:
            editor.kill()
            editor.wait()


class Installation(Place):
    @classmethod
    def installed(cls):
        prefix = cls.folder / "a prefix"
        done(CMAKE, "--install", BUILD, "--prefix", prefix)
        return prefix

    def test_every_file_is_there_and_no_other(self):
        self.assertEqual(files_below(self.prefix), FILES)

    def test_the_programs_work_from_there(self):
        self.check_programs()

    def test_the_editor_answers_without_a_display(self):
        self.check_editors_answers()

    def test_the_editor_opens_a_file(self):
        self.check_editor()

    def test_the_prefix_may_be_moved(self):
        moved = self.prefix.rename(self.folder / "moved")
        self.addCleanup(moved.rename, self.prefix)
        for program in ("qrv", "qrv_edit"):
            told = done(moved / "bin" / program, "--version", env=self.environment).stdout
            self.assertRegex(told, r"\nFunction catalogue \d", program)

    def test_no_locale_changes_a_word_or_a_number(self):
        told = {}
        others = locales_of_others.made_in(self.folder / "locales")
        for locale in ("C.UTF-8", *locales_of_others.NAMES):
            folder = self.folder / locale
            folder.mkdir()
            self.environment = {**self.environment, "LC_ALL": locale, **others}
            text = folder / "sample.txt"
            configuration = folder / "sample.qrv"
            self.qrv("load", self.prefix / "share/doc/qrv-edit/examples/boiler_house.txt", configuration)
            text.write_text(self.qrv("dump", configuration))
            again = folder / "again.qrv"
            self.qrv("load", text, again)
            info = self.qrv("info", again).replace(locale, "")
            told[locale] = (text.read_text(), info, self.qrv("function", "limit"), self.qrv("function"),
                            self.completed("function", "li"))
        # The German locale is in force: the shell's own numbers follow it.
        number = done("bash", "-c", "printf %.1f 0,5", env={**self.environment, "LC_ALL": "de_DE.UTF-8"}).stdout
        self.assertEqual(number, "0,5")
        self.assertEqual(told["de_DE.UTF-8"], told["C.UTF-8"])
        self.assertEqual(told["tr_TR.UTF-8"], told["C.UTF-8"])
        self.assertGreater(len(told["C.UTF-8"][0]), 100000)
        self.assertIn("LIMIT", told["C.UTF-8"][-1])

    def test_the_desktop_entry_names_what_is_there(self):
        path = self.prefix / "share/applications/qrv_edit.desktop"
        self.assertEqual(done("desktop-file-validate", path).stdout, "")
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(path)
        words = entry["Desktop Entry"]
        self.assertTrue((self.prefix / "bin" / words["Exec"].split()[0]).is_file())
        self.assertTrue((self.prefix / f"share/icons/hicolor/scalable/apps/{words['Icon']}.svg").is_file())
        self.assertEqual(words["MimeType"], MIME_TYPE + ";")

    def test_a_configuration_is_known_by_its_name_and_by_its_bytes(self):
        data = self.folder / "data"
        shutil.copytree(self.prefix / "share/mime", data / "mime")
        done("update-mime-database", data / "mime")
        configuration = self.new_configuration()
        without_name = self.home / "no name"
        shutil.copy(configuration, without_name)
        other = self.home / "another"
        done("sqlite3", other, "CREATE TABLE t(c)")
        catalogue = self.prefix / "share/qrv_edit/QRVDATA.DAT"
        self.assertIn(f"{MIME_TYPE}:*.qrv\n", (data / "mime/globs2").read_text())
        for path in (configuration, without_name):
            self.assertEqual(self.type_of(path, data), MIME_TYPE, path)
        for path in (other, catalogue):
            self.assertEqual(self.type_of(path, data), "application/vnd.sqlite3", path)

    def type_of(self, path, data):
        environment = {**self.environment, "XDG_DATA_DIRS": f"{data}:/usr/share", "LC_ALL": "C"}
        told = done("gio", "info", "-a", "standard::content-type", path, env=environment).stdout
        return told.split("standard::content-type:")[1].strip()

    def test_the_number_of_a_configuration_stands_at_the_place_that_the_magic_names(self):
        names = {"m": "http://www.freedesktop.org/standards/shared-mime-info"}
        tree = xml.etree.ElementTree.parse(self.prefix / "share/mime/packages/qrv_edit.xml")
        number = tree.find(".//m:match/m:match", names)
        header = self.new_configuration().read_bytes()[:100]
        self.assertEqual((number.get("type"), number.get("offset")), ("big32", "68"))
        self.assertEqual(header[68:72], bytes.fromhex(number.get("value")[2:]))
        self.assertEqual(header[68:72], b"QRVc")

    def test_the_manual_pages_render_and_name_every_command(self):
        for name, others in {"qrv": "qrv_controller(1), qrv_edit(1)", "qrv_controller": "qrv(1), qrv_edit(1)",
                             "qrv_edit": "qrv(1), qrv_controller(1)"}.items():
            page = gzip.decompress((self.prefix / f"share/man/man1/{name}.1.gz").read_bytes())
            renderer = ["groff", "-man", "-ww", "-Tascii", "-P-c", "-P-b", "-P-u"]
            run = subprocess.run(renderer, input=page, capture_output=True, check=True)
            self.assertEqual(run.stderr, b"")
            shown = run.stdout.decode()
            self.assertIn(f"QRV_Edit {VERSION}", shown)
            for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS", "ENVIRONMENT", "FILES",
                            "SEE ALSO"):
                self.assertIn(f"\n{heading}\n", shown, name)
            self.assertIn("\n       QRV_SETTINGS\n", shown)
            self.assertIn("\n       ~/.config/QRV_Edit/settings.ini\n", shown)
            self.assertIn(f"\nSEE ALSO\n       {others}\n", shown)
            if name == "qrv":
                for command in self.commands():
                    self.assertIn(f"\n   qrv {command} ", shown)
                self.assertIn("--baud 38400|19200|9600|4800|2400|1200|300\n", shown)
                self.assertIn("4      the controller can't be reached or gave a bad answer\n", shown)

    def commands(self):
        listed = self.qrv("--help").split("Subcommands:\n")[1].split("\n\n")[0]
        return [line.split()[0] for line in listed.splitlines() if line.startswith("  ") and line[2] != " "]

    def completed(self, *words):
        """What Tab offers behind the words; the shell finds the completion by the program's name."""
        script = """
            . /usr/share/bash-completion/bash_completion
            _completion_loader qrv
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
            _qrv qrv 2>/dev/null
            printf '%s\\n' "${COMPREPLY[@]}"
        """
        environment = {**self.environment, "XDG_DATA_DIRS": str(self.prefix / "share"),
                       "PATH": f"{self.prefix}/bin:{self.environment['PATH']}"}
        return done("bash", "-c", script, "bash", "qrv", *words, env=environment, cwd=self.home).stdout.split()

    def test_the_shell_completes(self):
        self.assertEqual(set(self.completed("")), {*self.commands(), "--help", "--version"})
        self.assertEqual(self.completed("vers"), ["version"])
        self.assertEqual(self.completed("load", "--f"), ["--force"])
        self.assertEqual(self.completed("poll", "--parity", ""), ["O", "E", "N"])
        self.assertEqual(self.completed("function", "hoa"), ["HOASW"])
        self.qrv("ports", "--map", "COM42=/dev/null")
        self.assertEqual(self.completed("poll", "--port", "COM4"), ["COM42"])
        path = self.new_configuration()
        self.assertEqual(self.completed("info", path.name[:-2]), [path.name])


class Package(Place):
    @classmethod
    def installed(cls):
        done("cpack", "--config", f"{BUILD}/CPackConfig.cmake", "-G", "DEB", "-B", cls.folder / "package",
             "-D", "CPACK_DEBIAN_COMPRESSION_TYPE=gzip", umask=0o077)
        [cls.package] = (cls.folder / "package").glob("*.deb")
        cls.root = cls.folder / "root"
        done("dpkg-deb", "-x", cls.package, cls.root)
        return cls.root / "usr"

    def field(self, name):
        return done("dpkg-deb", "-f", self.package, name).stdout.strip()

    def test_it_holds_what_is_installed_and_no_more(self):
        self.assertEqual(files_below(self.root), {f"usr/{name}" for name in FILES})

    def test_it_says_what_it_is_and_what_it_needs(self):
        architecture = done("dpkg", "--print-architecture").stdout.strip()
        self.assertEqual(self.package.name, f"qrv-edit_{VERSION}_{architecture}.deb")
        self.assertEqual((self.field("Version"), self.field("Architecture")), (VERSION, architecture))
        maintainer = "The QRV_Edit developers <service@tessaly.example>"
        self.assertEqual((self.field("Section"), self.field("Maintainer")), ("electronics", maintainer))
        needed = {word.split()[0] for word in self.field("Depends").split(", ")}
        # libqt6gui6 brings the platform plugin, libqt6svg6 the reader of the icons.
        self.assertLessEqual({"libc6", "libqt6core6", "libqt6gui6", "libqt6widgets6", "libqt6svg6", "libsqlite3-0",
                              "libstdc++6", "fonts-liberation", "hicolor-icon-theme"}, needed)

    def test_its_changelog_is_of_this_version(self):
        changelog = self.folder / "changelog"
        changelog.write_bytes(gzip.decompress((self.prefix / "share/doc/qrv-edit/changelog.gz").read_bytes()))
        fields = done("dpkg-parsechangelog", "-l", changelog).stdout.splitlines()
        for name in ("Version", "Maintainer"):
            self.assertIn(f"{name}: {self.field(name)}", fields)

    def test_all_belongs_to_root_and_may_be_read_by_all(self):
        for line in done("dpkg-deb", "-c", self.package).stdout.splitlines():
            mode, owner, *_, name = line.split()
            self.assertEqual(owner, "root/root", line)
            is_program = name.startswith("./usr/bin/") or name.endswith("/")
            self.assertEqual(mode[1:], "rwxr-xr-x" if is_program else "rw-r--r--", line)

    def test_the_programs_work_from_there(self):
        self.check_programs()

    def test_the_editor_opens_a_file(self):
        self.check_editor()


unittest.main(argv=[sys.argv[0], PART])
