"""Writes Docs/Performance.md and its charts from what Scripts/Benchmark.sh has measured.

    MakePage.py DOCS COLD.json ROUND.json...

The text around the figures is Page.md beside this file.
"""

import platform
import re
import string
import subprocess
import sys
from datetime import date
from pathlib import Path

import Chart
from Results import OURS, read_results

FORMATS = {"Binary": "Binary", "Json": "JSON", "Xml": "XML"}
OPERATIONS = {
    "OrdersWrite": ("writing orders", "order"),
    "OrdersRead": ("reading orders", "order"),
    "DoublesWrite": ("writing doubles", "double"),
    "DoublesRead": ("reading doubles", "double"),
    "Int32Write": ("writing int32", "int32"),
    "Int32Read": ("reading int32", "int32"),
    "FieldsWrite": ("writing the fields of one object", "field"),
    "FieldsRead": ("looking up fields in written order", "field"),
    "FieldsShuffledRead": ("looking up fields in shuffled order", "field"),
    "LevelsWrite": ("writing nested levels", "level"),
    "LevelsRead": ("reading nested levels", "level"),
}
SMALL, LARGE = 1000, 100000  # the two numbers of orders


def split(lane):
    form, operation, count = lane.split("/")
    return form, operation, int(count)


def order(lane):
    form, operation, count = split(lane)
    return list(FORMATS).index(form), list(OPERATIONS).index(operation), count


def title(lane):
    form, operation, count = split(lane)
    return f"{FORMATS[form]}, {OPERATIONS[operation][0]}: {count:,}"


def row(cells):
    return "| " + " | ".join(cells) + " |"


def table(header, rows):
    return "\n".join([row(header), "|---|" + "---:|" * (len(header) - 1), *map(row, rows)])


def by_time(peers):
    return sorted(peers.items(), key=lambda item: item[1].median)


def spread(ratios):
    return f"{ratios[0]:.2f} to {ratios[-1]:.2f}"


def growth(lanes, lane, peer):
    """By how much an item is dearer among many than among few."""
    form, operation, _ = split(lane)
    return f"{lanes[lane][peer].median / lanes[f'{form}/{operation}/{SMALL}'][peer].median:.2f}"


def nanoseconds(value):
    return f"{value:,.1f}" if value < 100 else f"{value:,.0f}"


def lane_table(lanes, lane):
    _, operation, count = split(lane)
    peers = lanes[lane]
    item = OPERATIONS[operation][1]
    large = operation.startswith("Orders") and count == LARGE
    header = ["", f"ns/{item}", "ratio", "spread", f"bytes/{item}", "peak heap"] + ["growth", "cold"] * large
    rows = []
    for peer, result in by_time(peers):
        ratios = result.ratios(peers[OURS])
        cells = [f"**{peer}**" if peer == OURS else peer, nanoseconds(result.median)]
        cells += [f"{result.median / peers[OURS].median:.2f}", spread(ratios)]
        cells += [f"{result.document:,.1f}", f"{result.peak:.1f}"]
        if large:
            cells += [growth(lanes, lane, peer), nanoseconds(result.cold)]
        rows.append(cells)
    return table(header, rows)


def draw_chart(lanes, lane, folder):
    peers = lanes[lane]
    name = lane.replace("/", "-") + ".svg"
    ratios = {peer: result.ratios(peers[OURS]) for peer, result in by_time(peers) if peer != OURS}
    (folder / name).write_text(Chart.draw(ratios), encoding="utf-8")
    return name


def lane_section(lanes, lane, folder):
    chart = f"![{title(lane)}](Performance/{draw_chart(lanes, lane, folder)})"
    return f"### {title(lane)}\n\n{lane_table(lanes, lane)}\n\n{chart}\n"


def overview(lanes):
    """Where Vellum stands in each lane: who is ahead of it, by what share of its time."""
    rows = []
    for lane in sorted(lanes, key=order):
        ours = lanes[lane][OURS].median
        others = [(peer, result.median / ours) for peer, result in by_time(lanes[lane]) if peer != OURS]
        ahead = [f"{peer} {ratio:.2f}" for peer, ratio in others if ratio < 1]
        rows.append([title(lane), nanoseconds(ours), ", ".join(ahead) or "nobody", f"{len(ahead)} of {len(others)}"])
    return table(["", "ns each", "ahead of Vellum, and their ratio", ""], rows)


def processor():
    found = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(encoding="utf-8"), re.MULTILINE)
    return found.group(1) if found else platform.processor()


def compiler():
    return subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]


def main():
    docs, cold, *rounds = map(Path, sys.argv[1:])
    folder = docs / "Performance"
    folder.mkdir(exist_ok=True)
    for chart in folder.glob("*.svg"):
        chart.unlink()
    lanes = read_results(rounds, cold)
    page = string.Template((Path(__file__).parent / "Page.md").read_text(encoding="utf-8")).substitute(
        day=date.today().isoformat(),
        processor=processor(),
        system=f"{platform.system()} {platform.release()}",
        compiler=compiler(),
        rounds=len(rounds),
        overview=overview(lanes),
        lanes="\n".join(lane_section(lanes, lane, folder) for lane in sorted(lanes, key=order)),
    )
    (docs / "Performance.md").write_text(page.rstrip() + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
