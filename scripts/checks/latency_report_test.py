#!/usr/bin/env python3
"""That the report of the latency benchmark says what was measured, and puts it where it belongs."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "bench/latency/report.py"
DOCUMENT = """before
<!-- Measured by scripts/bench-latency: do not edit. -->
old
<!-- End of what was measured. -->
after
"""


def report(values, compositor=False, remarks=None):
    """What is printed, and the document afterwards."""
    with tempfile.TemporaryDirectory() as folder:
        measured, document = Path(folder) / "measured.json", Path(folder) / "document.md"
        measured.write_text(json.dumps({"values": values, "remarks": remarks or {}, "compositor": compositor}))
        document.write_text(DOCUMENT)
        done = subprocess.run([sys.executable, "-B", SCRIPT, measured, "--document", document],
                              capture_output=True, text=True, check=True)
        return done.stdout, document.read_text()


def row(output, title):
    line = next(line for line in output.splitlines() if line.startswith(f"| {title} |"))
    return [cell.strip() for cell in line.strip("|").split("|")]


class LatencyReportTest(unittest.TestCase):
    def test_a_wait_is_a_median_its_budget_and_how_many_times_ours_the_others_are(self):
        output, _ = report({"lumaframe": {"ready warm": [9, 30, 7, 8, 8], "mapped warm": [2, 4, 3]},
                            "flameshot": {"mapped warm": [600]}})
        self.assertEqual(row(output, "Trigger to overlay mapped, warm")[1:], ["3.0 (2.0)", "", "600 (600) = 200.0x"])
        self.assertEqual(row(output, "... and taking keys and pointer, warm")[1:], ["8.0 (8.0)", "<= 25", "-"])

    def test_a_compositor_has_budgets_of_its_own(self):
        output, _ = report({"lumaframe": {"ready warm": [9]}}, compositor=True)
        self.assertEqual(row(output, "... and taking keys and pointer, warm")[2], "<= 8")

    def test_what_nobody_has_measured_has_no_row(self):
        output, _ = report({"lumaframe": {"ready warm": [9]}})
        self.assertNotIn("Release to file closed", output)

    def test_those_that_wait_beside_ours_are_in_the_idle_table(self):
        output, _ = report({"lumaframe": {"rss fresh": [31.5], "rss after 50 captures": [42]},
                            "flameshot": {"rss fresh": [30.9]}, "ksnip": {"mapped warm": [5]}})
        self.assertEqual(row(output, "rss MiB")[1:], ["31.5", "42.0", "-", "30.9"])

    def test_the_fewer_rounds_of_the_others_are_said(self):
        output, _ = report({"lumaframe": {"mapped warm": [1] * 20}, "ksnip": {"mapped warm": [5] * 5}})
        self.assertIn("20 repetitions (5 of the others)", output)

    def test_a_remark_is_not_lost(self):
        output, _ = report({"lumaframe": {"mapped warm": [1]}}, remarks={"maim": ["not installed"]})
        self.assertIn("maim: not installed.", output)

    def test_only_what_lies_between_the_marks_of_the_document_is_replaced(self):
        _, document = report({"lumaframe": {"mapped warm": [1.25]}})
        self.assertTrue(document.startswith("before\n<!-- Measured"))
        self.assertTrue(document.endswith("<!-- End of what was measured. -->\nafter\n"))
        self.assertNotIn("old", document)
        self.assertIn("Trigger to overlay mapped, warm", document)


if __name__ == "__main__":
    unittest.main()
