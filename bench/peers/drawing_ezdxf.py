#!/usr/bin/env python3
"""ezdxf, which answers as the programs of Peer.cpp do: drawing_ezdxf.py ROW SIZE."""
import struct
import sys
import time

import ezdxf

MASK = 2**64 - 1
PLACES = {"LINE": "start", "CIRCLE": "center", "TEXT": "insert"}


def drawing_with(entities):
    """The drawing of SampleDrawing.cpp."""
    drawing = ezdxf.new("R2010")
    for layer in range(20):
        drawing.layers.add(f"LAYER-{layer}")
    space = drawing.modelspace()
    for number in range(entities):
        x, y = number % 400 * 10.0, number // 400 * 10.0
        attributes = {"layer": f"LAYER-{number % 20}"}
        if number % 3 == 0:
            attributes["color"] = 1 + number % 7
            space.add_line((x, y), (x + 6.25, y + 3.5), dxfattribs=attributes)
        elif number % 3 == 1:
            space.add_circle((x + 2.0, y + 2.0), 1.75, dxfattribs=attributes)
        else:
            attributes |= {"height": 2.5, "insert": (x, y)}
            space.add_text(f"Raum {number}", dxfattribs=attributes)
    return space


class Digest:
    """As Digest.h."""

    def __init__(self):
        self.hash, self.atoms = 1, 0

    def add(self, value):
        self.hash = (self.hash ^ value) * 0x9E3779B97F4A7C15 & MASK
        self.hash ^= self.hash >> 29

    def atom(self, kind, value):
        self.add(ord(kind))
        self.add(value & MASK)
        self.atoms += 1
        return self

    def integer(self, value):
        return self.atom("i", value)

    def real(self, value):
        return self.atom("r", struct.unpack("<Q", struct.pack("<d", value))[0])


class EntGet:
    """Reads every entity, and adds up where they are."""

    def __init__(self, space):
        self.space, self.sum = space, 0.0

    def run(self):
        total = 0.0
        for entity in self.space:
            groups = entity.dxfattribs()
            point = groups[PLACES[entity.dxftype()]]
            total += point.x + point.y
        self.sum = total

    def check(self):
        return Digest().real(self.sum)


class EntMod:
    """Gives every entity a colour, another one in each run."""

    def __init__(self, space):
        self.space, self.runs = space, 0

    def run(self):
        self.runs += 1
        for position, entity in enumerate(self.space):
            entity.dxf.color = (position + self.runs) % 250 + 1

    def check(self):
        digest = Digest()
        for entity in self.space:
            digest.integer(entity.dxf.color)
        return digest


class SSGet:
    """Selects by type and layer."""

    def __init__(self, space):
        self.space, self.selected = space, None

    def run(self):
        self.selected = self.space.query('TEXT LINE[layer ? "LAYER-1.*"]')

    def check(self):
        return Digest().integer(len(self.selected))


ROWS = {"entget": EntGet, "entmod": EntMod, "ssget": SSGet}


def main():
    row, size = sys.argv[1:]
    work = ROWS[row](drawing_with(int(size)))
    for _ in sys.stdin:
        begin = time.perf_counter_ns()
        work.run()
        nanoseconds = time.perf_counter_ns() - begin
        digest = work.check()
        print(nanoseconds, f"{digest.atoms}/{digest.hash}", flush=True)


if __name__ == "__main__":
    main()
