"""A bar chart of one lane as SVG: each peer's time as a ratio to Vellum's, on a logarithmic scale.

Bars begin at 1. To the left is what is faster than Vellum, to the right what is slower; a thin line over the end of a
bar spans the ratios of all rounds.
"""

import math
import statistics
from html import escape

WIDTH, LABELS, MARGIN, ROW, TOP = 720, 150, 70, 24, 30
FASTER, SLOWER, TEXT, GRID = "#c2410c", "#2563eb", "#333333", "#d4d4d4"
TICKS = [0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100]


class Scale:
    """Ratios to places in the picture."""

    def __init__(self, ratios):
        self.low = max((tick for tick in TICKS if tick <= min(ratios + [0.5])), default=TICKS[0])
        self.high = min((tick for tick in TICKS if tick >= max(ratios + [2])), default=TICKS[-1])

    def place(self, ratio):
        ratio = min(max(ratio, self.low), self.high)
        share = math.log(ratio / self.low) / math.log(self.high / self.low)
        return LABELS + share * (WIDTH - LABELS - MARGIN)

    def ticks(self):
        return [tick for tick in TICKS if self.low <= tick <= self.high]


def text(x, y, content, anchor):
    return f'<text x="{x:.1f}" y="{y}" text-anchor="{anchor}">{escape(content)}</text>'


def grid(scale, bottom):
    for tick in scale.ticks():
        x = scale.place(tick)
        yield f'<line x1="{x:.1f}" y1="{TOP - 6}" x2="{x:.1f}" y2="{bottom}" stroke="{TEXT if tick == 1 else GRID}"/>'
        yield text(x, TOP - 12, f"{tick:g}", "middle")


def bar(scale, y, peer, ratios):
    middle = statistics.median(ratios)
    start, end = sorted((scale.place(1), scale.place(middle)))
    low, high = scale.place(ratios[0]), scale.place(ratios[-1])
    yield text(LABELS - 8, y + 16, peer, "end")
    colour = FASTER if middle < 1 else SLOWER
    yield f'<rect x="{start:.1f}" y="{y + 4}" width="{max(end - start, 1):.1f}" height="{ROW - 8}" fill="{colour}"/>'
    yield f'<line x1="{low:.1f}" y1="{y + ROW / 2}" x2="{high:.1f}" y2="{y + ROW / 2}" stroke="{TEXT}"/>'
    yield text(max(end, high) + 6, y + 16, f"{middle:.2f}", "start")


def draw(peers):
    """The picture of {peer: ascending ratios}."""
    scale = Scale([ratio for ratios in peers.values() for ratio in ratios])
    height = TOP + ROW * len(peers) + 8
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" fill="{TEXT}" '
        'font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>',
        *grid(scale, height - 8),
    ]
    for row, (peer, ratios) in enumerate(peers.items()):
        lines.extend(bar(scale, TOP + row * ROW, peer, ratios))
    return "\n".join(lines + ["</svg>", ""])
