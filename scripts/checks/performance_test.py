#!/usr/bin/env python3
"""That scripts/check-performance sees what costs more, and nothing else."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent / "performance.py"
RECORDED = {"avx2": True, "machine": "x86_64", "instructions": {"drag": 1000, "png: text": 200000}}


def run(counts, *options, recorded=RECORDED, **machine):
    """Status, output, and what is recorded afterwards."""
    with tempfile.TemporaryDirectory() as folder:
        record, measured = Path(folder) / "recorded.json", Path(folder) / "measured.json"
        if recorded:
            record.write_text(json.dumps(recorded))
        measured.write_text(json.dumps({**RECORDED, **machine, "instructions": counts}))
        done = subprocess.run([sys.executable, "-B", SCRIPT, "--recorded", record, "--measured", measured,
                               *options], capture_output=True, text=True, check=False)
        kept = json.loads(record.read_text()) if record.exists() else None
        return done.returncode, done.stdout + done.stderr, kept


class PerformanceTest(unittest.TestCase):
    def test_what_costs_as_much_as_before_passes(self):
        status, output, _ = run({"drag": 1000, "png: text": 200000})
        self.assertEqual(status, 0, output)

    def test_what_costs_more_than_a_tenth_more_fails_with_a_table(self):
        status, output, _ = run({"drag": 1101, "png: text": 200000})
        self.assertEqual(status, 1)
        self.assertRegex(output, r"drag +1,000 +1,101 +\+10\.1 % MORE than a tenth")
        self.assertRegex(output, r"png: text +200,000 +200,000 +\+0\.0 %\n")

    def test_a_tenth_more_passes(self):
        self.assertEqual(run({"drag": 1100, "png: text": 219999})[0], 0)

    def test_what_costs_less_passes_and_asks_to_be_recorded(self):
        status, output, _ = run({"drag": 500, "png: text": 200000})
        self.assertEqual(status, 0)
        self.assertIn("-50.0 % less: record it", output)

    def test_a_scenario_that_is_gone_fails(self):
        status, output, _ = run({"drag": 1000})
        self.assertEqual(status, 1)
        self.assertIn("was not measured", output)

    def test_a_scenario_that_is_new_fails(self):
        status, output, _ = run({"drag": 1000, "png: text": 200000, "start": 5})
        self.assertEqual(status, 1)
        self.assertIn("is new", output)

    def test_another_kind_of_processor_is_not_compared(self):
        status, output, _ = run({"drag": 5000, "png: text": 200000}, avx2=False)
        self.assertEqual(status, 0)
        self.assertIn("Not compared", output)

    def test_recording_keeps_what_was_measured(self):
        status, output, kept = run({"drag": 5000}, "--record")
        self.assertEqual(status, 0, output)
        self.assertEqual(kept["instructions"], {"drag": 5000})

    def test_nothing_recorded_fails(self):
        self.assertEqual(run({"drag": 1}, recorded=None)[0], 1)


if __name__ == "__main__":
    unittest.main()
