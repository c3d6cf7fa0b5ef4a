#!/usr/bin/env python3
"""Each structural rule catches the offence it is for, and lets pass what it must not catch."""

import tempfile
import unittest
from pathlib import Path

import structure


class StructureTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)
        for name in ("base/log.h", "app/settings_store.h", "app/windows.h", "app/app_delegate.h",
                     "app/lumaframe_app.h", "capture/screen_capture.h", "capture/pasteboard.h",
                     "overlay/selection_view.h", "shortcuts/shortcut_manager.h", "ui/login_item.h",
                     "platform/platform.h", "platform/select_platform.h"):
            self.write(f"src/{name}", "#pragma once\n")
        self.write("src/platform/x11/connection.h", "#include <xcb/xcb.h>\n")
        self.write("src/platform/qt/qt_main_queue.h", "#include <memory>\n")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def offences_with(self, name, text):
        self.write(name, text)
        return structure.offences(self.root)

    def assert_caught(self, name, text, words):
        found = self.offences_with(name, text)
        self.assertEqual(len(found), 1, found)
        self.assertIn(words, found[0])
        self.assertTrue(found[0].startswith(name + ":"), found[0])

    def assert_passes(self, name, text):
        self.assertEqual(self.offences_with(name, text), [])

    def test_a_clean_tree_has_no_offence(self):
        self.assertEqual(structure.offences(self.root), [])

    def test_every_edge_back_along_the_road_is_caught(self):
        back = [("base/image.cpp", "capture/pasteboard.h"),
                ("base/image.cpp", "app/settings_store.h"),
                ("app/settings_store.cpp", "capture/pasteboard.h"),
                ("app/notification_center.cpp", "app/app_delegate.h"),
                ("app/windows.h", "shortcuts/shortcut_manager.h"),
                ("app/app_delegate.cpp", "overlay/selection_view.h"),
                ("app/app_delegate.cpp", "platform/platform.h"),
                ("capture/image_delivery.cpp", "overlay/selection_view.h"),
                ("capture/image_delivery.cpp", "app/windows.h"),
                ("overlay/selection_window.cpp", "shortcuts/shortcut_manager.h"),
                ("shortcuts/key_codes.cpp", "capture/pasteboard.h"),
                ("shortcuts/key_codes.cpp", "ui/login_item.h"),
                ("ui/content_view.cpp", "overlay/selection_view.h"),
                ("ui/content_view.cpp", "app/app_delegate.h"),
                ("platform/platform.h", "capture/screen_capture.h"),
                ("platform/x11/x11_pasteboard.cpp", "capture/screen_capture.h"),
                ("platform/x11/x11_pasteboard.cpp", "platform/qt/qt_main_queue.h"),
                ("platform/macos/cocoa_pasteboard.mm", "platform/qt/qt_main_queue.h"),
                ("platform/macos/cocoa_pasteboard.mm", "capture/screen_capture.h"),
                ("main.cpp", "capture/screen_capture.h")]
        for name, header in back:
            with self.subTest(name=name, header=header):
                before = self.root / "src" / name
                old = before.read_text(encoding="utf-8") if before.exists() else None
                self.assert_caught(f"src/{name}", f'#include "{header}"\n', "must not include")
                before.write_text(old, encoding="utf-8") if old else before.unlink()

    def test_the_road_itself_passes(self):
        self.assert_passes("src/shortcuts/dispatch.cpp", '#include "overlay/selection_view.h"\n')
        self.assert_passes("src/overlay/finish.cpp", '#include "capture/screen_capture.h"\n')
        self.assert_passes("src/capture/save.cpp", '#include "app/settings_store.h"\n')
        self.assert_passes("src/ui/content_view.cpp", '#include "app/windows.h"\n#include <QLabel>\n')
        self.assert_passes("src/app/lumaframe_app.cpp", '#include "platform/platform.h"\n'
                           '#include "overlay/selection_view.h"\n')
        self.assert_passes("src/platform/x11/pointer.cpp", '#include "platform/x11/connection.h"\n'
                           '#include "capture/pasteboard.h"\n')
        for name in ("x11/x11_platform.cpp", "macos/macos_platform.mm"):
            self.assert_passes(f"src/platform/{name}",
                               '#include "platform/qt/qt_main_queue.h"\n')

    def test_qt_in_a_decision_is_caught(self):
        for header in ("QWidget", "QtCore/QString", "qglobal.h"):
            with self.subTest(header=header):
                self.assert_caught("src/overlay/selection_window.cpp", f"#include <{header}>\n",
                                   "only the visible files may use Qt")

    def test_an_operating_system_header_in_a_decision_is_caught(self):
        self.assert_caught("src/capture/save.cpp", "#include <unistd.h>\n", "standard library")

    def test_a_system_header_that_leaves_its_folder_is_caught(self):
        self.assert_caught("src/platform/select_platform.cpp",
                           '#include "platform/x11/connection.h"\n', "needs <xcb/xcb.h>")

    def test_a_system_header_in_a_shared_header_is_caught_through_other_headers(self):
        self.write("src/platform/x11/x11_entry.h", '#include "platform/x11/connection.h"\n')
        self.assert_caught("src/platform/select_platform.cpp",
                           '#include "platform/x11/x11_entry.h"\n', "needs <xcb/xcb.h>")

    def test_an_include_that_is_not_from_src_is_caught(self):
        self.assert_caught("src/overlay/hole.cpp", '#include "selection_view.h"\n',
                           "not a path from src/")

    def test_a_platform_conditional_outside_platform_is_caught(self):
        for line in ("#ifdef __linux__", "#if defined(Q_OS_MACOS)", "  # elif HAVE_X11",
                     "#ifndef _WIN32"):
            with self.subTest(line=line):
                self.assert_caught("src/base/clock.cpp", line + "\n#endif\n", "conditional on")

    def test_a_platform_conditional_in_platform_and_a_feature_test_pass(self):
        self.assert_passes("src/platform/build.cpp", "#ifdef __linux__\n#endif\n")
        self.assert_passes("src/base/clock.cpp", "#ifdef __cpp_lib_format\n#endif\n")

    def test_a_file_over_400_lines_is_caught(self):
        self.assert_passes("src/base/clock.cpp", "\n" * 400)
        self.assert_caught("src/base/clock.cpp", "\n" * 401, "401 lines")

    def test_a_main_over_60_lines_is_caught(self):
        self.assert_caught("src/main.cpp", "\n" * 61, "61 lines")

    def test_a_long_test_is_caught(self):
        self.assert_caught("tests/base/clock_test.cpp", "\n" * 401, "401 lines")

    def test_a_name_given_twice_is_caught(self):
        self.assert_caught("src/overlay/log.h", "", "the same file name as src/base/log.h")

    def test_a_name_that_is_not_snake_case_is_caught(self):
        self.assert_caught("src/overlay/SelectionHole.cpp", "", "snake_case")


if __name__ == "__main__":
    unittest.main()
