"""Runs the programs of the peers."""
import statistics
import subprocess
import sys
import time
from pathlib import Path


class Failure(Exception):
    """A peer has ended early, or the peers of a row have not processed the same content."""


class Peer:
    """A program that measures one row when it is told to."""

    def __init__(self, program, row, size):
        # Debian's Python, for which its packages are.
        command = ["/usr/bin/python3", program] if program.suffix == ".py" else [program]
        self.process = subprocess.Popen(
            [*command, row, str(size)], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.name = program.name

    def measure(self):
        """The figure and the digest of the content."""
        try:
            self.process.stdin.write("\n")
            self.process.stdin.flush()
            answer = self.process.stdout.readline().split()
        except BrokenPipeError:
            answer = []
        if len(answer) != 2:
            raise Failure(f"{self.name} has ended with status {self.process.wait()}")
        return float(answer[0]), answer[1]

    def end(self):
        self.process.communicate()


FEWEST_ROUNDS = 3


def rounds(peers, repetitions, seconds):
    """The figures and digests of each peer. They take turns; a first round warms up and does not count.

    After so many seconds a few rounds are enough.
    """
    end = time.monotonic() + seconds
    figures = {name: [] for name in peers}
    digests = {name: set() for name in peers}
    order = list(peers)
    for repetition in range(repetitions + 1):
        if repetition > FEWEST_ROUNDS and time.monotonic() > end:
            break
        for name in order[repetition % len(order):] + order[:repetition % len(order)]:
            figure, digest = peers[name].measure()
            digests[name].add((repetition, digest))
            if repetition > 0:
                figures[name].append(figure)
    return figures, digests


def run(programs, row, size, repetitions, seconds):
    """The figures of all peers for each element, by peer."""
    peers = {name: Peer(program, row, size) for name, program in programs.items()}
    try:
        figures, digests = rounds(peers, repetitions, seconds)
    finally:
        for peer in peers.values():
            peer.end()
    expected = next(iter(digests.values()))
    wrong = [name for name, found in digests.items() if found != expected]
    if wrong:
        raise Failure(f"{row}: {', '.join(wrong)} and {next(iter(digests))} have not processed the same content")
    return {name: [figure / size for figure in found] for name, found in figures.items()}


def measure_row(row, size, repetitions, seconds, folders):
    """The medians and all figures of a row for each element; peers without a program are left out."""
    programs = {name: find(row.program(name), folders) for name in ("ours", *row.peers)}
    there = {name: path for name, path in programs.items() if path}
    figures = run(there, row.name, size, repetitions, seconds)
    return {"medians": {name: statistics.median(found) for name, found in figures.items()}, "figures": figures}


def find(program, folders):
    return next((folder / program for folder in folders if (folder / program).exists()), None)


def measure_growth(row, sizes, seconds, folders):
    """Ours for each element (of a sort: and doubling), by the number of elements."""
    costs = {}
    for size in sizes:
        repetitions = max(3, min(50, 1_000_000 // size))
        figures = run({"ours": find("ours", folders)}, row.name, size, repetitions, seconds)
        costs[size] = statistics.median(figures["ours"]) / (size.bit_length() if row.is_sort else 1)
    return costs


def log(text):
    print(text, file=sys.stderr, flush=True)
