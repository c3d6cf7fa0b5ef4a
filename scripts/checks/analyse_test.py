#!/usr/bin/env python3
"""That scripts/checks/analyse.py leaves out only what was found clean as it is now."""

import json
import os
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import analyse
from remembered import UNUSED_SECONDS, Remembered


class InAFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder_ = Path(folder.name)

    def checkout(self, name):
        root = self.folder_ / name
        root.mkdir()
        (root / "source.cpp").write_text('#include "first.h"\n')
        (root / "first.h").write_text("\n")
        (root / "second.h").write_text("\n")
        return root


class Memory(InAFolder):
    def mark(self, root, rules=b"", *arguments):
        return Remembered(root, rules, self.folder_ / "cache").mark(
            [f"-I{root}", *arguments], f"{root}/source.cpp", f"{root}")

    def test_a_clean_source_is_known_again_in_another_checkout(self):
        self.mark(self.checkout("here")).touch()
        self.assertTrue(self.mark(self.checkout("there")).exists())

    def test_what_was_not_found_clean_is_not_known(self):
        self.assertFalse(self.mark(self.checkout("here")).exists())

    def test_another_source_header_rule_or_argument_is_something_else(self):
        root = self.checkout("here")
        self.mark(root).touch()
        self.assertFalse(self.mark(root, b"other rules").exists())
        self.assertFalse(self.mark(root, b"", "-DNAME").exists())
        for name in ("source.cpp", "first.h"):
            before = (root / name).read_text()
            (root / name).write_text(before + "// more\n")
            self.assertFalse(self.mark(root).exists(), name)
            (root / name).write_text(before)
            self.assertTrue(self.mark(root).exists(), name)

    def test_a_header_that_a_header_came_to_need_counts(self):
        root = self.checkout("here")
        self.mark(root).touch()
        (root / "first.h").write_text('#include "second.h"\n')
        self.mark(root).touch()
        (root / "second.h").write_text("// more\n")
        self.assertFalse(self.mark(root).exists())

    def test_what_is_not_used_for_long_is_forgotten(self):
        root = self.checkout("here")
        self.mark(root).touch()
        old = time.time() - UNUSED_SECONDS - 60
        os.utime(self.mark(root), (old, old))
        Remembered(root, b"", self.folder_ / "cache").forget_unused()
        self.assertFalse(self.mark(root).exists())


class Built(InAFolder):
    def setUp(self):
        super().setUp()
        self.root_ = self.checkout("here")
        (self.root_ / "build.ninja").write_text(
            "rule compile\n  command = cp $in $out\nbuild source.o: compile source.cpp | first.h\n")
        self.describe("-Werror")

    def describe(self, *flags):
        words = ["clang++", *flags, "-o", "source.o", "-c", f"{self.root_}/source.cpp"]
        (self.root_ / "compile_commands.json").write_text(json.dumps(
            [{"directory": f"{self.root_}", "command": " ".join(words), "file": words[-1]}]))

    def build(self):
        subprocess.run(["ninja", "-C", self.root_], check=True, capture_output=True)

    def test_what_is_compiled_as_it_is_now_is_left_out(self):
        self.build()
        self.assertEqual(analyse.built_by_clang(self.root_), {f"{self.root_}/source.cpp"})

    def test_what_is_not_compiled_is_not(self):
        self.assertEqual(analyse.built_by_clang(self.root_), set())

    def test_what_has_changed_since_is_not(self):
        self.build()
        later = time.time() + 60
        os.utime(self.root_ / "first.h", (later, later))
        self.assertEqual(analyse.built_by_clang(self.root_), set())

    def test_what_was_compiled_with_warnings_is_not(self):
        self.describe()
        self.build()
        self.assertEqual(analyse.built_by_clang(self.root_), set())


if __name__ == "__main__":
    unittest.main()
