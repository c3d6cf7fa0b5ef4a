#!/usr/bin/env python3
"""clang-tidy over src/, and clang's own warnings over tests/ and bench/, two files at a time.

Usage: analyse.py BUILD_DIRECTORY [FILE...]

Reads BUILD_DIRECTORY/compile_commands.json. A file that was clean before, with the same command, the
same contents of it and of every header of this project behind it, and the same rules, is skipped: what
was found clean is remembered in BUILD_DIRECTORY/analysed. With FILEs, only those. The
adapters of macOS, which no build here compiles, are read as scripts/check-macos reads them.
"""

import hashlib
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


def headers_behind(arguments, file, directory):
    result = subprocess.run(["clang++", *arguments, "-MM", file], cwd=directory,
                            capture_output=True, text=True, check=False)
    names = result.stdout.partition(":")[2].replace("\\\n", " ").split()
    return [Path(directory, name) for name in names]


def fingerprint(arguments, file, directory, rules):
    digest = hashlib.sha256(rules)
    digest.update("\0".join(arguments).encode())
    for path in headers_behind(arguments, file, directory) or [Path(file)]:
        digest.update(str(path).encode() + b"\0" + path.read_bytes())
    return digest.hexdigest()


def analyse(entry, rules, remembered):
    """Returns what was found, an empty text when the file is clean."""
    file, directory = entry["file"], entry["directory"]
    arguments = clang_arguments(entry)
    mark = remembered / fingerprint(arguments, file, directory, rules)
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
    remembered = build / "analysed"
    remembered.mkdir(exist_ok=True)
    rules = (ROOT / ".clang-tidy").read_bytes() + subprocess.run(
        ["clang-tidy", "--version"], capture_output=True, check=True).stdout
    compiled = json.loads((build / "compile_commands.json").read_text())
    entries = [entry for entry in compiled + macos_entries()
               if entry["file"].startswith((f"{ROOT}/src/", f"{ROOT}/tests/", f"{ROOT}/bench/"))
               and (not wanted or entry["file"] in wanted)]
    found = []
    with ThreadPoolExecutor(max(2, os.cpu_count() or 2)) as pool:
        for text in pool.map(lambda entry: analyse(entry, rules, remembered), entries):
            if text:
                print(text, flush=True)
                found.append(text)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
