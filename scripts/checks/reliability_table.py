#!/usr/bin/env python3
"""Whether every row of the table of faults in docs/reliability.md names a test that exists.

Usage: reliability_table.py [ROOT]    prints one line per offence and exits with status 1 when there is one.
"""

import re
import sys
from pathlib import Path

LEAST_ROWS = 30


def known_tests(root):
    """"Suite.name" of every GoogleTest test under tests/."""
    found = set()
    for path in (root / "tests").rglob("*.cpp"):
        text = path.read_text(encoding="utf-8")
        for suite, name in re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)", text, re.MULTILINE):
            found.add(f"{suite}.{name}")
    return found


def offences(text, tests):
    rows = re.findall(r"^\|.*\| `([\w.]+)` \|$", text, re.MULTILINE)
    if len(rows) < LEAST_ROWS:
        yield f"only {len(rows)} faults, of {LEAST_ROWS} at least"
    for test in rows:
        if test not in tests:
            yield f"{test} is no test"


def main(arguments):
    root = Path(arguments[0]) if arguments else Path(__file__).resolve().parents[2]
    text = (root / "docs" / "reliability.md").read_text(encoding="utf-8")
    found = list(offences(text, known_tests(root)))
    for offence in found:
        print(f"docs/reliability.md: {offence}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
