#!/usr/bin/env python3
"""What ezdxf takes for what drawings.cpp measures, with the file that it wrote.

    LOMLISP_BENCH_DXF=FILE build/release/bench/lomlisp_bench --benchmark_filter='Drawing|Select|Ent'
    bench/compare_ezdxf.py FILE
"""
import os
import statistics
import sys
import time

import ezdxf


def timed(repetitions, work):
    """The median of some runs, in seconds."""
    times = []
    for _ in range(repetitions):
        begin = time.perf_counter()
        work()
        times.append(time.perf_counter() - begin)
    return statistics.median(times)


def main():
    path = sys.argv[1]
    megabytes = os.path.getsize(path) / 1e6
    drawing = ezdxf.readfile(path)
    space = drawing.modelspace()
    entities = len(space)
    rows = [
        ("open", timed(3, lambda: ezdxf.readfile(path)), entities),
        ("save", timed(3, lambda: drawing.saveas(path + ".saved")), entities),
        ("query by type and layer", timed(3, lambda: space.query('TEXT LINE[layer ? "LAYER-1.*"]')), entities),
    ]
    os.remove(path + ".saved")
    print(f"{entities} entities, {megabytes:.1f} MB")
    for name, seconds, count in rows:
        print(f"{name:28} {seconds * 1e3:9.1f} ms  {megabytes / seconds:8.1f} MB/s  {count / seconds:12.0f} entities/s")


if __name__ == "__main__":
    main()
