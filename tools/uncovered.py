#!/usr/bin/env python3
"""tools/uncovered.py JSON: the lines and branches of gcovr's report that did not run, with their source."""

import json
import sys


def missed(line):
    """What of the line did not run; nothing where all did."""
    if line["gcovr/noncode"]:
        return ""
    if line["count"] == 0:
        return "not run"
    branches = line["branches"]
    numbers = [str(i) for i, branch in enumerate(branches, 1) if branch["count"] == 0]
    return f"branch {', '.join(numbers)} of {len(branches)}" if numbers else ""


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        report = json.load(file)
    for source in report["files"]:
        with open(source["file"], encoding="utf-8") as file:
            texts = file.read().splitlines()
        for line in source["lines"]:
            if what := missed(line):
                number = line["line_number"]
                print(f"{source['file']}:{number}: {what}: {texts[number - 1].strip()}")


if __name__ == "__main__":
    main()
