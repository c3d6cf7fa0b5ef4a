#!/usr/bin/env python3
"""Compares what fixed scenarios cost, in instructions, with what was recorded.

Usage: performance.py --recorded FILE.json (--programs DIRECTORY | --measured FILE.json) [--record]

Instructions are counted by callgrind: unlike time they are the same on a busy machine. Fails with status 1
when a scenario needs more than a tenth more than recorded, when one is missing, or when one is new.
"""

import argparse
import json
import os
import platform
import re
import signal
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

# Per cent.
TOLERANCE = 10
START = "start: until the shortcuts are registered"
REGISTERED = "Event handler installed successfully"
# In seconds; a start takes some five under callgrind, on a machine that does nothing else.
LIMIT = 300


def callgrind(output, *options):
    # The same addresses, and the same code for every processor with AVX2, in every run.
    return ["setarch", "--addr-no-randomize", "taskset", "--cpu-list", first_processor(),
            "valgrind", "--tool=callgrind", f"--callgrind-out-file={output}", *options]


def first_processor():
    return str(min(os.sched_getaffinity(0)))


def counts_in(folder):
    """Counts by the description of each dump."""
    counts = {}
    for path in folder.glob("counts*"):
        dump = path.read_text(errors="replace")
        described = re.search(r"^desc: Trigger: Client Request: (.*)$", dump, re.MULTILINE)
        total = re.search(r"^(?:summary|totals): (\d+)", dump, re.MULTILINE)
        if described and total:
            counts[described.group(1)] = int(total.group(1))
    return counts


def count_scenarios(programs):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*callgrind(f"{folder}/counts", "--instr-atstart=no", "--quiet"),
                        str(programs / "bench/instructions")],
                       check=True, stdout=subprocess.DEVNULL, timeout=LIMIT)
        return counts_in(Path(folder))


class Desktop:
    """A server and a bus for one start of the program."""

    def __init__(self, folder):
        self.folder = Path(folder)
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1920x1080x24", "-nolisten", "tcp"],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            self.display = ":" + answer.readline().strip()
        self.bus = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.bus_address = self.bus.stdout.readline().strip()

    def environment(self):
        names = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "data",
                 "XDG_CACHE_HOME": "cache", "XDG_RUNTIME_DIR": "runtime"}
        environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "DISPLAY": self.display,
                       "DBUS_SESSION_BUS_ADDRESS": self.bus_address}
        for name, folder in names.items():
            path = self.folder / folder
            path.mkdir(mode=0o700, exist_ok=True)
            environment[name] = str(path)
        return environment

    def end(self):
        for process in (self.bus, self.server):
            process.terminate()
            process.wait()


def count_start(programs):
    with tempfile.TemporaryDirectory() as folder:
        desktop = Desktop(folder)
        try:
            process = subprocess.Popen(
                [*callgrind(f"{folder}/counts", "--quiet"), str(programs / "lumaframe")],
                env=desktop.environment(), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                text=True)
            guard = threading.Timer(LIMIT, process.kill)
            guard.start()
            is_registered = any(REGISTERED in line for line in process.stdout)
            process.send_signal(signal.SIGTERM)
            process.stdout.read()
            process.wait()
            guard.cancel()
            if not is_registered:
                sys.exit("The program did not register its shortcuts.")
        finally:
            desktop.end()
        dump = (Path(folder) / "counts").read_text(errors="replace")
        return int(re.search(r"^(?:summary|totals): (\d+)", dump, re.MULTILINE).group(1))


def has_avx2():
    return "avx2" in Path("/proc/cpuinfo").read_text().split()


def measure(programs):
    return {"avx2": has_avx2(), "machine": platform.machine(),
            "instructions": {**count_scenarios(programs), START: count_start(programs)}}


def compare(recorded, measured):
    """Rows of a table, and whether everything is as recorded."""
    rows, is_good = [], True
    for name in sorted(recorded.keys() | measured.keys()):
        before, now = recorded.get(name), measured.get(name)
        if before is None or now is None:
            verdict = "is new: record it" if before is None else "was not measured"
            is_good = False
            change = ""
        else:
            share = now / before - 1
            change = f"{100 * share:+.1f} %"
            verdict = ""
            if now * 100 > before * (100 + TOLERANCE):
                verdict = "MORE than a tenth"
                is_good = False
            elif now * 100 < before * (100 - TOLERANCE):
                verdict = "less: record it"
        rows.append((name, before, now, change, verdict))
    return rows, is_good


def print_table(rows):
    width = max(len(row[0]) for row in rows)
    print(f"{'instructions':{width}} {'recorded':>15} {'now':>15} {'change':>9}")
    for name, before, now, change, verdict in rows:
        numbers = [f"{value:15,}" if value is not None else f"{'-':>15}" for value in (before, now)]
        print(f"{name:{width}} {numbers[0]} {numbers[1]} {change:>9} {verdict}".rstrip())


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--recorded", type=Path, required=True)
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument("--programs", type=Path)
    source.add_argument("--measured", type=Path)
    parser.add_argument("--record", action="store_true")
    arguments = parser.parse_args()
    measured = (json.loads(arguments.measured.read_text()) if arguments.measured
                else measure(arguments.programs))
    recorded = json.loads(arguments.recorded.read_text()) if arguments.recorded.exists() else None
    if recorded:
        rows, is_good = compare(recorded["instructions"], measured["instructions"])
        print_table(rows)
    if arguments.record:
        arguments.recorded.write_text(json.dumps(measured, indent=2, sort_keys=True) + "\n")
        print(f"Recorded in {arguments.recorded}.")
        return 0
    if not recorded:
        print("Nothing is recorded yet: use --record.", file=sys.stderr)
        return 1
    if any(recorded[key] != measured[key] for key in ("avx2", "machine")):
        print("Not compared: the counts were recorded on a processor with other instructions.")
        return 0
    if not is_good:
        print("What costs more has a reason, which belongs into the commit, or is a mistake. To record it"
              " anew: scripts/check-performance --record", file=sys.stderr)
    return 0 if is_good else 1


if __name__ == "__main__":
    sys.exit(main())
