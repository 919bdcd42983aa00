"""What the rounds of VellumBenchmarks have found, lane by lane and peer by peer."""

import json
import re
import statistics
from collections import defaultdict
from dataclasses import dataclass, field

OURS = "Vellum"


@dataclass
class Result:
    """One peer in one lane."""

    nanoseconds: dict = field(default_factory=dict)  # for one item, by round
    document: float = 0  # bytes for one item
    peak: float = 0  # bytes of the heap for one byte of the document
    cold: float | None = None  # nanoseconds for one item, with the page faults of new memory

    @property
    def median(self):
        return statistics.median(self.nanoseconds.values())

    def ratios(self, ours):
        """The times by those of Vellum in the same round, ascending."""
        return sorted(time / ours.nanoseconds[index] for index, time in self.nanoseconds.items())


def parse_name(name):
    lane, peer = re.fullmatch(r"([^/]+/[^/]+/\d+)/(.+)/manual_time", name).groups()
    return lane, peer


def read_round(path):
    with open(path, encoding="utf-8") as file:
        for entry in json.load(file)["benchmarks"]:
            lane, peer = parse_name(entry["name"])
            if entry.get("error_occurred"):
                raise SystemExit(f"{lane}, {peer}: {entry['error_message']}")
            yield lane, peer, entry


def read_results(rounds, cold):
    """{lane: {peer: Result}}, lanes in the order of the program."""
    lanes = defaultdict(lambda: defaultdict(Result))
    for index, path in enumerate(rounds):
        for lane, peer, entry in read_round(path):
            result = lanes[lane][peer]
            result.nanoseconds[index] = entry["real_time"] / entry["items"]
            result.document = entry["document"] / entry["items"]
            result.peak = entry["peak"] / entry["document"]
    for lane, peer, entry in read_round(cold):
        lanes[lane][peer].cold = entry["real_time"] / entry["items"]
    return lanes
