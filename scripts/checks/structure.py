#!/usr/bin/env python3
"""The structural rules of the source tree: who may include whom, sizes, names, conditionals.

Usage: structure.py [ROOT]    prints one line per offence and exits with status 1 when there is one.
"""

import fnmatch
import re
import sys
from pathlib import Path

SOURCE_SUFFIXES = {".h", ".cpp", ".mm"}
MAXIMUM_LINES = 400
MAXIMUM_MAIN_LINES = 60
# Data, not code: files whose length is the length of a table.
TABLES = {"src/platform/x11/key_table.cpp", "src/shortcuts/key_codes.cpp",
          "tests/macos_interface/include/AppKit/AppKit.h",
          "tests/macos_interface/include/Foundation/Foundation.h"}

# The files that a person sees as windows and controls; they alone may use Qt in a subsystem.
VISIBLE_FILES = {
    "content_view", "permissions_window", "first_run_modal",
    "shortcut_recorder", "looping_video_player", "menu_bar_commands",
    # What makes the windows.
    "scenes",
    # The parts of the settings view and of the permissions window, one widget each, and how all of them look.
    "content_header", "mode_column", "general_switches", "appearance", "card", "divider",
    "text_label", "icon_label", "check_box", "bound_check_box", "folder_button", "folder_chooser",
    "focus_ring", "first_run_header", "permission_row", "action_row", "granted_label", "push_button",
    "tool_tip",
}

# The leaves of app/ that every subsystem may use.
LEAVES = ["app/settings_store.h", "app/settings_keys.h", "app/settings_backend.h",
          "app/notification_center.h"]
PORTS = [
    "base/*.h", "app/settings_backend.h", "app/windows.h", "app/application.h",
    "capture/capture_service.h", "capture/pasteboard.h", "capture/image_encoder.h",
    "capture/text_recognizer.h", "capture/sound_player.h", "capture/user_notifications.h",
    "overlay/overlay_surface.h", "overlay/keyboard_tap.h", "overlay/pointer.h",
    "overlay/workspace.h", "shortcuts/hot_key_service.h",
    "shortcuts/key_monitor.h", "ui/login_item_service.h", "ui/video_looper.h",
    "platform/platform.h",
]

# What an adapter may use beside the ports and its own folder: what the session is, how to watch a
# descriptor, what its helper program shares with others, and the centre where the toolkit's
# activation is posted.
ADAPTER_AIDS = ["platform/bus_probe.h", "platform/session.h", "platform/environment.h", "platform/file_descriptor_watch.h",
                "platform/dispatch.h", "platform/running_platform.h", "platform/text_rasterizer.h",
                "platform/helper/*.h", "app/notification_center.h"]

# Which of the project's own headers a file may include: the first row that matches it decides. The
# folders follow the road of one screenshot (shortcuts, overlay, capture), and never look back.
ALLOWED_INCLUDES = [
    ("main.cpp", ["base/*.h", "app/lumaframe_app.h", "app/notification_center.h",
                  "platform/patient_log.h", "platform/running_platform.h", "platform/session.h",
                  "platform/select_platform.h"]),
    ("base/*", ["base/*.h"]),
    ("app/settings_*", ["base/*.h", *LEAVES]),
    ("app/notification_center.*", ["base/*.h", *LEAVES]),
    ("app/windows.h", ["base/*.h"]),
    ("app/application.h", ["base/*.h"]),
    ("app/lumaframe_app.*", ["base/*.h", "app/*.h", "capture/*.h", "overlay/*.h", "shortcuts/*.h",
                             "ui/*.h", "platform/platform.h"]),
    ("app/*", ["base/*.h", "app/*.h", "shortcuts/*.h", "ui/*.h"]),
    ("capture/*", ["base/*.h", "capture/*.h", *LEAVES]),
    ("overlay/*", ["base/*.h", "overlay/*.h", "capture/*.h", *LEAVES]),
    ("shortcuts/*", ["base/*.h", "shortcuts/*.h", "overlay/*.h", *LEAVES]),
    ("ui/*", ["base/*.h", "ui/*.h", "shortcuts/*.h", "app/windows.h", "app/application.h",
             *LEAVES]),
    # What all helper programs have in common: how one is started, and what it gives up.
    ("platform/helper/*", ["base/*.h", "platform/environment.h", "platform/helper/*.h"]),
    # The headers of src/platform itself say nothing about a system; their sources choose one.
    ("platform/*.h", [*PORTS, "app/notification_center.h", "platform/*.h"]),
    ("platform/*.cpp", [*PORTS, "platform/*.h", "platform/*/*.h"]),
    # Each system is put together in one place, from its adapters and those that systems share, and
    # shows the program's windows and its menu.
    *((f"platform/*/*_platform.{suffix}", [*PORTS, "app/menu_bar_commands.h", "app/scenes.h",
                                            "platform/*.h", "platform/*/*.h"])
      for suffix in ("cpp", "mm")),
]

STANDARD_HEADERS = set("""
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfloat charconv chrono cinttypes
climits clocale cmath compare complex concepts condition_variable coroutine csetjmp csignal cstdarg
cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution
filesystem format forward_list fstream functional future initializer_list iomanip ios iosfwd iostream
istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex
source_location span sstream stack stdexcept stop_token streambuf string string_view syncstream
system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
variant vector version
""".split())

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
CONDITIONAL = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b(.*)")
PLATFORM_MACRO = re.compile(
    r"\b(_*linux_*|_*unix_*|__APPLE__|__MACH__|_WIN(?:32|64)|__\w*BSD__|__ANDROID__|__gnu_linux__|"
    r"TARGET_OS_\w+|Q_OS_\w+|Q_WS_\w+|\w*(?:X11|XCB|WAYLAND|MACOS|COCOA|WIN32|WINDOWS)\w*)\b")
QT_HEADER = re.compile(r"^(?:Qt\w*/.*|Q[A-Z]\w*|q[a-z]\w*\.h)$")


def source_files(root, folder):
    return sorted(path for path in (root / folder).rglob("*")
                  if path.suffix in SOURCE_SUFFIXES and path.is_file())


def includes_of(path):
    """Yields (line number, '<' or '"', name) of every include."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1], match[2]


def matches(name, patterns):
    """As in a shell: a star stays inside one folder."""
    return any(fnmatch.fnmatchcase(name, pattern) and name.count("/") == pattern.count("/")
               for pattern in patterns)


def allowed_for(name):
    """The patterns of own headers that the file `name`, relative to src/, may include."""
    for pattern, allowed in ALLOWED_INCLUDES:
        if matches(name, [pattern]):
            return allowed
    folder = name.rpartition("/")[0]
    if folder.startswith("platform/"):
        return [*PORTS, *ADAPTER_AIDS, f"{folder}/*.h"]
    return []


def is_own(root, header):
    return (root / "src" / header).is_file()


def check_own_includes(root):
    """Every include of a header of this project follows an edge of the table."""
    for path in source_files(root, "src"):
        name = path.relative_to(root / "src").as_posix()
        for line, mark, header in includes_of(path):
            if mark == '"' and not is_own(root, header):
                yield f"src/{name}:{line}: \"{header}\" is not a path from src/"
            elif is_own(root, header) and not matches(header, allowed_for(name)):
                yield f"src/{name}:{line}: must not include {header}"


def check_outside_includes(root):
    """Decisions use the standard library; base/text may use utf8proc; Qt only where it is seen."""
    for path in source_files(root, "src"):
        name = path.relative_to(root / "src").as_posix()
        if name.startswith("platform/") or name == "main.cpp":
            continue
        for line, mark, header in includes_of(path):
            if mark == '"' or is_own(root, header) or header in STANDARD_HEADERS:
                continue
            if name.startswith("base/") and header == "utf8proc.h":
                continue
            if QT_HEADER.match(header):
                if path.stem in VISIBLE_FILES:
                    continue
                yield f"src/{name}:{line}: <{header}>: only the visible files may use Qt here"
            else:
                yield f"src/{name}:{line}: <{header}>: only the standard library here"


def system_headers_behind(root, header, seen):
    """The headers of a system, Qt included, that including `header` drags in."""
    if header in seen:
        return
    seen.add(header)
    for _, _, name in includes_of(root / "src" / header):
        if is_own(root, name):
            yield from system_headers_behind(root, name, seen)
        elif name not in STANDARD_HEADERS:
            yield name


def check_entry_headers(root):
    """A header that crosses the border of its system's folder shows nothing of that system; only the
    source that puts a system together sees all of it."""
    for path in source_files(root, "src"):
        name = path.relative_to(root / "src").as_posix()
        if matches(name, ["platform/*/*_platform.cpp", "platform/*/*_platform.mm"]):
            continue
        for line, _, header in includes_of(path):
            folder = header.rsplit("/", 1)[0]
            crosses = (header.startswith("platform/") and is_own(root, header)
                       and (folder == "platform" or not name.startswith(folder + "/")))
            if not crosses:
                continue
            for system_header in system_headers_behind(root, header, set()):
                yield (f"src/{name}:{line}: {header} is included from outside its folder but "
                       f"needs <{system_header}>")


def check_conditionals(root):
    """The choice of a system is a folder, not a conditional."""
    for folder in ("src", "tests", "bench"):
        for path in source_files(root, folder):
            name = path.relative_to(root).as_posix()
            if name.startswith("src/platform/"):
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                match = CONDITIONAL.match(line)
                macro = match and PLATFORM_MACRO.search(match[1])
                if macro:
                    yield f"{name}:{number}: conditional on {macro[1]} outside src/platform"


def check_sizes(root):
    for folder in ("src", "tests", "bench"):
        for path in source_files(root, folder):
            name = path.relative_to(root).as_posix()
            limit = MAXIMUM_MAIN_LINES if name == "src/main.cpp" else MAXIMUM_LINES
            lines = len(path.read_text(encoding="utf-8").splitlines())
            if lines > limit and name not in TABLES:
                yield f"{name}: {lines} lines, more than {limit}"


def check_names(root):
    """One file name never twice in src: a name alone says which file is meant."""
    first = {}
    for path in source_files(root, "src"):
        name = path.relative_to(root).as_posix()
        if path.name in first:
            yield f"{name}: the same file name as {first[path.name]}"
        first.setdefault(path.name, name)
        if not re.fullmatch(r"[a-z0-9_]+", path.stem):
            yield f"{name}: file names are snake_case"


CHECKS = [check_own_includes, check_outside_includes, check_entry_headers, check_conditionals,
          check_sizes, check_names]


def offences(root):
    return [offence for check in CHECKS for offence in check(root)]


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
    found = offences(root)
    for offence in found:
        print(offence)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
