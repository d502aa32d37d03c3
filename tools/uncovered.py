#!/usr/bin/env python3
"""tools/uncovered.py FOLDER...: what of lomlisp/ the programs that were built in these folders did not run.

Prints each line and each branch that did not run, and then the shares that did. Fails below 100 % of the lines or
95 % of the branches.

A function that is there in several objects, as an inline one or as a template, counts once: a branch ran when it ran
in one of them. Not counted are the branches that GCC makes for exceptions, one for each call, which do not stand in
the source, and lines of nothing but a closing brace, where it puts what exceptions destroy.
"""

import collections
import json
import pathlib
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
LEAST_OF_LINES = 100.0
LEAST_OF_BRANCHES = 95.0


def reports(folder):
    """What gcov says of each source of each object."""
    for data in sorted(pathlib.Path(folder).rglob("*.gcda")):
        command = ["gcov", "--json-format", "--stdout", "--branch-probabilities", data.name]
        output = subprocess.run(command, cwd=data.parent, stdout=subprocess.PIPE, check=True).stdout
        report = json.loads(output)
        for file in report["files"]:
            yield pathlib.Path(report["current_working_directory"], file["file"]).resolve(), file


def count(folders):
    """How often each line and each branch ran: {file: {line: count}}, {(file, line): {branch: count}}."""
    lines = collections.defaultdict(collections.Counter)
    branches = collections.defaultdict(collections.Counter)
    for path, report in (report for folder in folders for report in reports(folder)):
        if TOP / "lomlisp" not in path.parents:
            continue
        # Where the function begins tells it from others, but not from other instances of its template.
        begins = {f["name"]: (f["start_line"], f["start_column"]) for f in report["functions"]}
        for line in report["lines"]:
            number = line["line_number"]
            lines[path][number] += line["count"]
            function = begins.get(line.get("function_name"))
            for index, branch in enumerate(line["branches"]):
                if not branch["throw"]:
                    branches[path, number][function, index] += branch["count"]
    return lines, branches


def missed(ran, ways):
    """What of a line did not run; nothing where all did."""
    if ran == 0:
        return "not run"
    numbers = [str(i) for i, taken in enumerate(ways, 1) if taken == 0]
    return f"branch {', '.join(numbers)} of {len(ways)}" if numbers else ""


def share(what, ran, of_all):
    percent = 100.0 * ran / of_all
    print(f"{what}: {percent:.1f} % ({ran} of {of_all})")
    return percent


def main():
    lines, branches = count(sys.argv[1:])
    for path in sorted(lines):
        texts = path.read_text(encoding="utf-8").splitlines()
        for number in sorted(lines[path]):
            text = texts[number - 1].strip()
            if text == "}":
                del lines[path][number]
                branches.pop((path, number), None)
            elif what := missed(lines[path][number], list(branches[path, number].values())):
                print(f"{path.relative_to(TOP)}:{number}: {what}: {text}")
    counts = [ran for of_file in lines.values() for ran in of_file.values()]
    ways = [ran for of_line in branches.values() for ran in of_line.values()]
    of_lines = share("lines", sum(ran > 0 for ran in counts), len(counts))
    of_branches = share("branches", sum(ran > 0 for ran in ways), len(ways))
    sys.exit(of_lines < LEAST_OF_LINES or of_branches < LEAST_OF_BRANCHES)


if __name__ == "__main__":
    main()
