"""Reads Objective-C++ sources with clang against the declarations in include/, without a Mac.

Each source is read twice: for x86-64, where BOOL is `signed char`, and for arm64, where it is `bool`.
Warnings are errors. A target of macOS makes clang check availability and know the object model.
"""

import glob
import os
import re
import subprocess
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
# A block keeps the address behind a reference, not the value; most blocks run after both have gone.
CAPTURED_REFERENCE = re.compile(r"-capture \w+ \S+ '(\w+)' .*&'$", re.M)
DEPLOYMENT_TARGET = "14.0"
TARGETS = (f"x86_64-apple-macosx{DEPLOYMENT_TARGET}", f"arm64-apple-macos{DEPLOYMENT_TARGET}")
CLANG = os.environ.get("CLANGXX", "clang++")

# The project's own warnings, and what clang knows of Objective-C beyond them.
WARNINGS = """-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    -Wunguarded-availability -Wdeprecated-declarations -Wnonnull -Wnullable-to-nonnull-conversion
    -Wobjc-designated-initializers -Wobjc-missing-super-calls -Wobjc-literal-conversion
    -Wincomplete-implementation -Wprotocol -Wundeclared-selector -Wselector-type-mismatch
    -Wmethod-signatures -Woverriding-method-mismatch -Wsuper-class-method-mismatch
    -Wproperty-attribute-mismatch -Warc-retain-cycles -Wcompletion-handler -Wcalled-once-parameter
    -Wreceiver-forward-class -Wobjc-messaging-id -Wenum-conversion -Wformat=2""".split()


def qt_includes():
    """The toolkit's headers, which this system has in its own place."""
    for folder in sorted(glob.glob("/usr/include/*/qt6")) + ["/usr/include/qt6"]:
        if os.path.isdir(folder):
            return [folder, *(f"{folder}/{module}" for module in
                              ("QtCore", "QtGui", "QtWidgets") if os.path.isdir(f"{folder}/{module}"))]
    raise SystemExit("Qt's headers are missing; scripts/install-dependencies installs them.")


def system_includes():
    """The C and C++ headers of this system, after our own declarations of the platform's."""
    libraries = sorted(glob.glob("/usr/include/c++/[0-9]*"), key=lambda name: int(Path(name).name))
    multiarch = [name for name in glob.glob("/usr/include/*-linux-gnu") if os.path.isdir(name)]
    if not libraries:
        raise SystemExit("The C++ standard library's headers are missing; scripts/install-dependencies "
                         "installs them.")
    library = libraries[-1]
    folders = [library, *(f"{name}/c++/{Path(library).name}" for name in multiarch),
               f"{library}/backward", *multiarch, "/usr/include"]
    return [folder for folder in folders if os.path.isdir(folder)]


def flags(target):
    arguments = ["-target", target, "-nostdlibinc", "-nostdinc++", "-isystem", str(HERE / "include")]
    for folder in system_includes() + qt_includes():
        arguments += ["-isystem", folder]
    # glibc and libstdc++ need the first, and have a macro of the others' names, which clang
    # predefines for this target.
    arguments += ["-D_GNU_SOURCE", "-U__nonnull", "-U__nullable", "-U__null_unspecified"]
    if target.startswith("arm64"):
        # The C library's headers here are those of this machine.
        arguments += ["-D__x86_64__", "-D__builtin_ia32_pause()=((void)0)"]
    return [*arguments, "-x", "objective-c++", "-std=c++20", "-fobjc-arc", "-fblocks", "-fPIC",
            *WARNINGS, "-I", str(ROOT / "src"), "-fsyntax-only"]


def check(source, target, extra=()):
    """What clang says about `source`, and whether it is refused: by clang, or for a captured reference."""
    tree = ["-Xclang", "-ast-dump", "-Xclang", "-ast-dump-filter=platform::macos"]
    result = subprocess.run([CLANG, *flags(target), *tree, *extra, str(source)], cwd=ROOT,
                            capture_output=True, text=True, check=False)
    captured = [f"{source}: error: a block captures the reference {name!r}"
                for name in CAPTURED_REFERENCE.findall(result.stdout)]
    return result.returncode == 0 and not captured, "\n".join([result.stderr.strip(), *captured]).strip()
