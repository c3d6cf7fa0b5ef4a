#!/usr/bin/env python3
"""Makes tables and plots of what the program `latency` measured.

Usage: report.py MEASURED.json... [--plot FILE.svg] [--document FILE.md]

Prints the tables. With --document they also go between the markers of that file, with the machine they
were measured on.
"""

import argparse
import datetime
import html
import json
import math
import os
import platform
import statistics
import subprocess
from pathlib import Path

OURS = "lumaframe"
BEGIN = "<!-- Measured by scripts/bench-latency: do not edit. -->"
END = "<!-- End of what was measured. -->"

# Title, quantity of ours, quantity of the peers, unit, budget without and with a compositor.
WAITS = [
    ("Trigger to overlay mapped, first after idle", "mapped first", "mapped first", None),
    ("Trigger to overlay mapped, warm", "mapped warm", "mapped warm", None),
    ("... and taking keys and pointer, first after idle", "ready first", None, (25, 15)),
    ("... and taking keys and pointer, warm", "ready warm", None, (25, 8)),
    ("First drag to dimming painted", "first drag painted 1280x800", "first drag painted 1280x800",
     (12, 12)),
    ("... CPU of it", "cpu of the first drag 1280x800", "cpu of the first drag 1280x800", None),
    ("... CPU of it, X server", "cpu of the first drag 1280x800 (X server)",
     "cpu of the first drag 1280x800 (X server)", None),
    ("... CPU of it, compositor", "cpu of the first drag 1280x800 (compositor)",
     "cpu of the first drag 1280x800 (compositor)", None),
    ("CPU of each motion", "cpu per motion", "cpu per motion", (3, 3)),
    ("CPU of each motion, X server", "cpu per motion (X server)", "cpu per motion (X server)", None),
    ("Release to file closed, 1280x800", "release to file closed 1280x800",
     "release to file closed 1280x800", (12, None)),
    ("Release to clipboard owned, 1280x800", "release to clipboard owned 1280x800",
     "release to clipboard owned 1280x800", (8, None)),
    ("Release to image/png received, 1280x800", "release to image/png received 1280x800",
     "release to image/png received 1280x800", (15, None)),
    ("CPU from the release on, 1280x800", "cpu from release 1280x800", "cpu from release 1280x800",
     None),
    ("Release to file closed, 4K", "release to file closed 3840x2160",
     "release to file closed 3840x2160", None),
    ("Release to clipboard owned, 4K", "release to clipboard owned 3840x2160",
     "release to clipboard owned 3840x2160", None),
    ("Release to image/png received, 4K", "release to image/png received 3840x2160",
     "release to image/png received 3840x2160", None),
    ("CPU from the release on, 4K", "cpu from release 3840x2160", "cpu from release 3840x2160", None),
    ("Click to file closed, window of 1800x1500", "release to file closed window", None, None),
    ("Start to hot keys registered", "start to hot keys", None, (60, 60)),
]
# Ours is a release in the overlay; theirs a command of its own, which has no overlay to wait for.
COMMANDS = [
    ("Picture of 1280x800: file closed", "release to file closed 1280x800",
     "command to file closed 1280x800"),
    ("... CPU", "cpu from release 1280x800", "cpu of the command 1280x800"),
    ("Picture of the 4K screen: file closed", "release to file closed 3840x2160",
     "command to file closed 3840x2160"),
    ("... CPU", "cpu from release 3840x2160", "cpu of the command 3840x2160"),
    ("... bytes", "bytes 3840x2160", "bytes of the command 3840x2160"),
]
IDLE = [("wake-ups in 30 s", "", 0), ("cpu in 30 s", "ms", None), ("rss", "MiB", None),
        ("pss", "MiB", None), ("uss", "MiB", None)]
IDLE_TIMES = ["fresh", "after 50 captures", "after a recognition"]


def median(values):
    return statistics.median(values) if values else None


def quartile(values):
    return sorted(values)[len(values) // 4]


def text(value):
    if value is None:
        return "-"
    if value >= 1000:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value < 100 else f"{value:.0f}"


def cell(values, own):
    """Median, lowest quartile, and how many times ours it is."""
    if not values:
        return "-"
    middle = median(values)
    ratio = f" = {middle / own:.1f}x" if own else ""
    return f"{text(middle)} ({text(quartile(values))}){ratio}"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return lines + ["| " + " | ".join(row) + " |" for row in rows]


def peers_with(values, quantities):
    return [name for name in sorted(values)
            if name != OURS and any(values[name].get(quantity) for quantity in quantities)]


def waits_table(values, compositor):
    own = values.get(OURS, {})
    peers = peers_with(values, [row[2] for row in WAITS])
    rows = []
    for title, quantity, theirs, budget in WAITS:
        limit = budget[1 if compositor else 0] if budget else None
        middle = median(own.get(quantity, []))
        if middle is None and not any(values[peer].get(theirs) for peer in peers):
            continue
        rows.append([title, cell(own.get(quantity), None), f"<= {limit}" if limit else ""] +
                    [cell(values[peer].get(theirs), middle) for peer in peers])
    return table(["ms: median (lowest quartile)", "Lumaframe", "budget", *peers], rows) if rows else []


def commands_table(values):
    own = values.get(OURS, {})
    peers = peers_with(values, [row[2] for row in COMMANDS])
    if not peers:
        return []
    rows = [[title, text(median(own.get(quantity, [])))] +
            [cell(values[peer].get(theirs), median(own.get(quantity, []))) for peer in peers]
            for title, quantity, theirs in COMMANDS]
    return table(["ms: median (lowest quartile)", "Lumaframe", *peers], rows)


def idle_table(values):
    """Ours at each time, then the others, which are only looked at when they have just been started."""
    own = values.get(OURS, {})
    peers = peers_with(values, [f"rss {IDLE_TIMES[0]}"])
    rows = []
    for quantity, unit, _ in IDLE:
        found = [median(own.get(f"{quantity} {when}", [])) for when in IDLE_TIMES]
        found += [median(values[peer].get(f"{quantity} {IDLE_TIMES[0]}", [])) for peer in peers]
        if any(value is not None for value in found):
            rows.append([f"{quantity} {unit}".strip(), *(text(value) for value in found)])
    header = ["Lumaframe, idle", *IDLE_TIMES, *(f"{peer}, {IDLE_TIMES[0]}" for peer in peers)]
    return table(header, rows) if rows else []


def growth_table(values):
    """Lumaframe alone, on other arrangements of displays: quantities that begin with "on "."""
    own = values.get(OURS, {})
    places = []
    for quantity in own:
        if quantity.startswith("on "):
            place = quantity[3:].split(":")[0]
            if place not in places:
                places.append(place)
    # "8 x 1920x1080": by the size of a display, then by their number.
    places.sort(key=lambda place: [int(number) for number in
                                   reversed(place.replace(" x ", "x").split("x")[:2])])
    columns = ["ready first", "ready warm", "cpu of opening", "first drag painted",
               "rss while open", "X server while open"]
    rows = [[place, *(text(median(own.get(f"on {place}: {column}", []))) for column in columns)]
            for place in places]
    return table(["displays", "first opening, ms", "opening, ms", "its CPU, X server's included, ms",
                  "first drag, ms", "RSS while open, MiB", "X server's RSS grows by, MiB"],
                 rows) if rows else []


def machine():
    model = next((line.split(":", 1)[1].strip() for line in
                  Path("/proc/cpuinfo").read_text().splitlines() if line.startswith("model name")),
                 platform.machine())
    memory = int(Path("/proc/meminfo").read_text().split()[1]) / 1024 / 1024
    load = os.getloadavg()[1]
    return (f"{model}, {os.cpu_count()} processors, {memory:.0f} GiB, Linux {platform.release()}, "
            f"load {load:.1f}")


def version(program):
    if program == OURS:
        answer = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True,
                                text=True, check=False)
        return answer.stdout.strip()
    package = "kde-spectacle" if program == "spectacle" else program
    answer = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], capture_output=True,
                            text=True, check=False)
    return answer.stdout.strip()


def section(measured):
    values = measured["values"]
    own, theirs = (max((len(quantity) for name in values if (name == OURS) == is_own
                        for quantity in values[name].values()), default=0)
                   for is_own in (True, False))
    repetitions = f"{own} repetitions" + (f" ({theirs} of the others)" if 0 < theirs != own else "")
    compositor = measured["compositor"]
    title = "With picom (xrender)" if compositor else "Without a compositor"
    lines = [f"### {title}", "", f"{repetitions}, taken in turn.", ""]
    for part in (waits_table(values, compositor), commands_table(values), idle_table(values),
                 growth_table(values)):
        if part:
            lines += part + [""]
    for program, remarks in sorted(measured["remarks"].items()):
        lines += [f"{program}: {remark}." for remark in remarks]
    return lines + [""] if lines[-1] else lines


def document(measurements):
    programs = sorted({name for measured in measurements for name in measured["values"]})
    versions = ", ".join(f"{name} {version(name)}".strip() for name in programs)
    today = datetime.date.today().isoformat()
    lines = [f"Measured on {today}: {machine()}; one 3840x2160 display (Xvfb).", "",
             f"Versions: {versions}.", "",
             "![Medians beside those of the others](images/performance.svg)", ""]
    for measured in measurements:
        lines += section(measured)
    return lines


def bars(measured):
    """One group of bars for each wait that somebody else has, too."""
    values = measured["values"]
    groups = []
    for title, quantity, theirs, _ in WAITS:
        own = median(values.get(OURS, {}).get(quantity, []))
        others = [(peer, median(values[peer].get(theirs, []))) for peer in sorted(values)
                  if peer != OURS and values[peer].get(theirs)]
        if own is not None and others and "CPU" not in title:
            groups.append((title, [(OURS, own), *others]))
    return groups


def plot(measurements):
    """A bar chart of logarithmic lengths: 1 ms to 10 s."""
    width, left, unit, row = 900, 290, 95, 20
    body, y = [], 30
    for measured in measurements:
        name = "with picom" if measured["compositor"] else "without a compositor"
        body.append(f'<text x="10" y="{y}" font-weight="bold">Median, {name} (ms, logarithmic)</text>')
        y += 12
        for title, entries in bars(measured):
            y += 18
            body.append(f'<text x="10" y="{y}">{html.escape(title)}</text>')
            for program, value in entries:
                length = max(2, unit * (1 + math.log10(max(value, 0.1))))
                color = "#1a7f37" if program == OURS else "#8c959f"
                body.append(f'<rect x="{left}" y="{y - 12}" width="{length:.0f}" height="14" fill="{color}"/>')
                body.append(f'<text x="{left + length + 6:.0f}" y="{y}">{program} {text(value)}</text>')
                y += row
        y += 30
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{y}" '
            f'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="white"/>'
            + "".join(body) + "</svg>\n")


def replace_between(path, lines):
    before, rest = path.read_text(encoding="utf-8").split(BEGIN)
    after = rest.split(END)[1]
    path.write_text(before + "\n".join([BEGIN, "", *lines, END]) + after, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("measured", nargs="+", type=Path)
    parser.add_argument("--plot", type=Path)
    parser.add_argument("--document", type=Path)
    arguments = parser.parse_args()
    measurements = [json.loads(path.read_text()) for path in arguments.measured]
    lines = document(measurements)
    print("\n".join(lines))
    if arguments.plot:
        arguments.plot.write_text(plot(measurements))
    if arguments.document:
        replace_between(arguments.document, lines)


if __name__ == "__main__":
    main()
