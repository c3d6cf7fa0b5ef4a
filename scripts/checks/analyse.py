#!/usr/bin/env python3
"""clang-tidy over src/, and clang's own warnings over tests/ and bench/, two files at a time.

Usage: analyse.py BUILD_DIRECTORY [FILE...]

Reads BUILD_DIRECTORY/compile_commands.json. A file that was clean before, with the same command, the
same contents of it and of every header of this project behind it, and the same rules, is skipped: that
is remembered in the user's cache, for all checkouts. So are tests that build/asan has compiled with
clang, warnings as errors, as they are now. With FILEs, only those. The adapters of macOS, which no
build here compiles, are read as scripts/check-macos reads them.
"""

import json
import os
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/macos_interface"))
import typecheck  # noqa: E402
from remembered import Remembered  # noqa: E402

# What g++ understands and clang does not.
WITHOUT = {"-fno-canonical-system-headers", "-Wno-maybe-uninitialized", "-mno-direct-extern-access"}


def clang_arguments(entry):
    """The compile command as arguments for clang, without launcher, compiler, input and output."""
    if "arguments" in entry:
        return entry["arguments"]
    words = shlex.split(entry["command"])
    while words and not words[0].startswith("-"):
        words.pop(0)
    arguments = []
    skip = False
    for word in words:
        if skip or word in ("-c", entry["file"]) or word in WITHOUT:
            skip = False
        elif word == "-o":
            skip = True
        else:
            arguments.append(word)
    return arguments


def built_by_clang(build):
    """The sources that a build with clang, warnings as errors, has compiled as they are now."""
    database = build / "compile_commands.json"
    if not database.exists():
        return set()
    commands = [shlex.split(entry["command"]) for entry in json.loads(database.read_text())]
    # Each ends with: -o OBJECT -c SOURCE.
    built = {words[-3]: words[-1] for words in commands if "-Werror" in words and (build / words[-3]).exists()}
    # What ninja would do now.
    due = subprocess.run(["ninja", "-C", build, "-n", "-v", *built], capture_output=True, text=True, check=False)
    if due.returncode or "--regenerate-during-build" in due.stdout:
        return set()
    return set(built.values()) - {built.get(word) for word in due.stdout.split()}


def due_entries(build, wanted):
    compiled = json.loads((build / "compile_commands.json").read_text())
    ours = [entry for entry in compiled + macos_entries()
            if entry["file"].startswith((f"{ROOT}/src/", f"{ROOT}/tests/", f"{ROOT}/bench/"))]
    if wanted:
        return [entry for entry in ours if entry["file"] in wanted]
    built = built_by_clang(ROOT / "build/asan")
    return [entry for entry in ours if entry["file"] not in built or entry["file"].startswith(f"{ROOT}/src/")]


def analyse(entry, remembered):
    """Returns what was found, an empty text when the file is clean."""
    file, directory = entry["file"], entry["directory"]
    arguments = clang_arguments(entry)
    mark = remembered.mark(arguments, file, directory)
    if mark.exists():
        return ""
    if file.startswith(f"{ROOT}/src/"):
        command = ["clang-tidy", "--quiet", file, "--", *arguments]
    else:
        command = ["clang++", "-fsyntax-only", "-Werror", *arguments, file]
    result = subprocess.run(command, cwd=directory, capture_output=True, text=True, check=False)
    if result.returncode == 0:
        mark.touch()
        return ""
    return result.stdout.strip() or result.stderr.strip() or f"{file}: {command[0]} failed"


def macos_entries():
    target = typecheck.TARGETS[-1]
    return [{"file": str(path), "directory": str(ROOT), "arguments": typecheck.flags(target)}
            for path in sorted((ROOT / "src/platform/macos").glob("*.mm"))]


def main():
    build = Path(sys.argv[1]).resolve()
    wanted = {str(Path(name).resolve()) for name in sys.argv[2:]}
    rules = (ROOT / ".clang-tidy").read_bytes() + subprocess.run(
        ["clang-tidy", "--version"], capture_output=True, check=True).stdout
    remembered = Remembered(ROOT, rules)
    found = []
    with ThreadPoolExecutor(max(2, os.cpu_count() or 2)) as pool:
        for text in pool.map(lambda entry: analyse(entry, remembered), due_entries(build, wanted)):
            if text:
                print(text, flush=True)
                found.append(text)
    remembered.forget_unused()
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
