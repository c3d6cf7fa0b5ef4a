#!/usr/bin/env python3
"""That scripts/check-hardening misses nothing: a program built without one of the things is refused."""

import platform
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent.parent / "check-hardening"
SOURCE = """
#include <cstdio>
#include <cstring>
int main(int count, char** words) {
    char copy[64] = "";
    if (count > 1) std::strcpy(copy, words[1]);
    std::printf("%s", copy);
}
"""
FLAGS = {
    "optimisation": "-O2",
    "position": "-fPIE",
    "executable": "-pie",
    "stack": "-fstack-protector-strong",
    "marks": "-fcf-protection=full",
    "fortify": "-D_FORTIFY_SOURCE=3",
    "relro": "-Wl,-z,relro",
    "now": "-Wl,-z,now",
    "heap": "-Wl,-z,noexecstack",
}


def complaints(replaced, commands=None):
    """What the script says of a program built with the flags, some of them replaced, beside `commands`."""
    with tempfile.TemporaryDirectory() as folder:
        program = Path(folder) / "program"
        flags = ["-U_FORTIFY_SOURCE", *(FLAGS | replaced).values()]
        subprocess.run(["g++", "-x", "c++", "-", "-o", program, *flags], input=SOURCE, text=True, check=True)
        if commands is not None:
            (Path(folder) / "compile_commands.json").write_text(commands)
        result = subprocess.run([SCRIPT, program], capture_output=True, text=True)
        lines = result.stderr.splitlines()
        assert (result.returncode == 0) == (not lines), result
        return lines


class Hardening(unittest.TestCase):
    def refuses(self, word, replaced):
        lines = complaints(replaced)
        self.assertEqual(len(lines), 1, lines)
        self.assertIn(word, lines[0])

    def test_a_hardened_program_passes(self):
        self.assertEqual(complaints({}), [])

    def test_a_program_at_a_fixed_place_is_refused(self):
        self.refuses("position-independent", {"position": "-fno-pie", "executable": "-no-pie"})

    def test_late_binding_is_refused(self):
        self.refuses("binding", {"now": "-Wl,-z,lazy"})

    def test_writable_relocations_are_refused(self):
        self.refuses("relocation", {"relro": "-Wl,-z,norelro"})

    def test_an_executable_stack_is_refused(self):
        self.refuses("stack's own", {"heap": "-Wl,-z,execstack"})

    def test_a_search_path_is_refused(self):
        self.refuses("search path", {"heap": "-Wl,-rpath,/somewhere"})

    def test_a_missing_stack_protector_is_refused(self):
        self.refuses("stack protector", {"stack": "-fno-stack-protector"})

    def test_missing_fortification_is_refused(self):
        self.refuses("fortified", {"fortify": "-DPLAIN"})

    def test_a_source_compiled_without_fortification_is_refused(self):
        self.assertEqual(complaints({}, '"command": "g++ -D_FORTIFY_SOURCE=3 a.cpp"\n'), [])
        lines = complaints({}, '"command": "g++ -D_FORTIFY_SOURCE=3 a.cpp"\n"command": "g++ b.cpp"\n')
        self.assertIn("fortification", "".join(lines))

    @unittest.skipUnless(platform.machine() == "x86_64", "landing marks are looked for on x86-64 only")
    def test_missing_landing_marks_are_refused(self):
        self.refuses("landing mark", {"marks": "-fcf-protection=none"})


if __name__ == "__main__":
    unittest.main()
