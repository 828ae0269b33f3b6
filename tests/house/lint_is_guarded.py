"""The linter's test fails where it is to fail. usage: lint_is_guarded.py CHECK RULES"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

CHECK, RULES = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
CLEAN = "int twice(int number) { return 2 * number; }\n"
FINDING = "int *nowhere() { return 0; }\n"


class Lint(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.source = self.folder / "a source"
        self.build = self.source / "build"
        (self.source / "src/store").mkdir(parents=True)
        shutil.copy(RULES, self.source / ".clang-tidy")
        subprocess.run(["git", "init", "-q", self.source], check=True)

    def ended(self, first, second, **environment):
        """Exit code and words for two sources of one folder."""
        self.build.mkdir(exist_ok=True)
        commands = []
        for name, text in (("first.cpp", first), ("second.cpp", second)):
            file = self.source / "src/store" / name
            file.write_text(text)
            commands.append({"directory": str(self.build), "file": str(file),
                             "command": f"c++ -std=c++20 -c '{file}' -o {name}.o"})
        (self.build / "compile_commands.json").write_text(json.dumps(commands))
        subprocess.run(["git", "-C", self.source, "add", "src"], check=True)
        ran = subprocess.run([sys.executable, CHECK, self.source, self.build], capture_output=True, text=True,
                             check=False, env={**os.environ, **environment})
        return ran.returncode, ran.stdout + ran.stderr

    def fails_for(self, words, *sources, **environment):
        code, said = self.ended(*sources, **environment)
        self.assertEqual(code, 1, said)
        self.assertIn(words, said)
        return said

    def test_clean_sources_pass(self):
        self.assertEqual(self.ended(CLEAN, "int half(int number) { return number / 2; }\n"),
                         (0, "2 sources in 1 units, 0 with findings\n"))

    def test_a_finding_in_a_source_that_is_read_with_others(self):
        self.fails_for("second.cpp:1:25: error: use nullptr [modernize-use-nullptr", CLEAN, FINDING)

    def test_a_short_name_that_nobody_uses(self):
        self.fails_for("[misc-unused-alias-decls", CLEAN, "namespace std {}\nnamespace unused = std;\n")

    def test_a_finding_in_sources_whose_names_collide(self):
        said = self.fails_for("2 sources can't be read as one:", CLEAN, CLEAN + FINDING)
        self.assertIn("second.cpp:2:25: error: use nullptr", said)

    def test_sources_whose_names_collide_and_that_are_clean_pass(self):
        self.assertEqual(self.ended(CLEAN, CLEAN)[0], 0)

    def test_a_source_that_does_not_compile(self):
        self.fails_for("error: unknown type name 'number'", CLEAN, "number one;\n")

    def test_a_build_that_lies_elsewhere(self):
        self.build = self.folder / "elsewhere"
        self.fails_for("error: use nullptr", CLEAN, FINDING)

    def test_a_linter_that_ends_without_a_word(self):
        twin = self.folder / "twins/clang-tidy"
        twin.parent.mkdir()
        twin.write_text("#!/bin/sh\nkill -9 $$\n")
        twin.chmod(0o755)
        self.fails_for("clang-tidy ended with -9", CLEAN, "", PATH=f"{twin.parent}:{os.environ['PATH']}")

    def test_a_build_that_compiles_none_of_them(self):
        self.build.mkdir()
        (self.build / "compile_commands.json").write_text("[]")
        ran = subprocess.run([sys.executable, CHECK, self.source, self.build], capture_output=True, text=True, check=False)
        self.assertEqual((ran.returncode, ran.stdout), (1, ""))
        self.assertIn("no source of ", ran.stderr)


unittest.main(argv=sys.argv[:1])
