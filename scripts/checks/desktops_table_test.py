#!/usr/bin/env python3
"""What scripts/make-desktops-table finds wrong, and what it keeps."""

import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent.parent / "make-desktops-table"
loader = importlib.machinery.SourceFileLoader("desktops_table", str(SCRIPT))
table = importlib.util.module_from_spec(importlib.util.spec_from_loader("desktops_table", loader))
loader.exec_module(table)

PORTRAIT = ("displays", "Portrait", "frames", "exact", "journey.Displays.portrait")
DEEP = ("colours", "Depth 30", "pixels", "upper eight bits", "journey.Colors.deep")
TESTS = {PORTRAIT[4], DEEP[4]}


class Tables(unittest.TestCase):
    def test_what_is_written_is_read_again(self):
        self.assertEqual(table.written_rows(table.rendered([PORTRAIT, DEEP])), [PORTRAIT, DEEP])

    def test_a_table_that_says_what_the_tests_say_is_right(self):
        self.assertEqual(list(table.offences([PORTRAIT, DEEP], [DEEP], TESTS)), [])

    def test_a_row_of_a_test_that_is_gone_is_found(self):
        self.assertEqual(len(list(table.offences([PORTRAIT], [], {DEEP[4]}))), 1)

    def test_a_row_that_nobody_wrote_down_is_found(self):
        self.assertEqual(len(list(table.offences([PORTRAIT], [DEEP], TESTS))), 1)

    def test_a_row_that_its_test_does_not_say_any_more_is_found(self):
        other = ("displays", "Portrait", "frames", "nearly", PORTRAIT[4])
        self.assertEqual(len(list(table.offences([PORTRAIT], [other], TESTS))), 2)

    def test_a_failed_row_is_found(self):
        failed = (*PORTRAIT[:3], "FAILED", PORTRAIT[4])
        self.assertTrue(list(table.offences([PORTRAIT], [failed], TESTS)))

    def test_rows_of_tests_that_did_not_run_stay_and_those_of_tests_that_are_gone_go(self):
        self.assertEqual(table.merged([PORTRAIT, DEEP], [DEEP], TESTS), [PORTRAIT, DEEP])
        self.assertEqual(table.merged([PORTRAIT], [DEEP], {DEEP[4]}), [DEEP])


if __name__ == "__main__":
    unittest.main()
