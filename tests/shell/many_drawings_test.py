#!/usr/bin/python3
"""The commands of docs/many-drawings.md: many_drawings_test.py PROGRAM MODULES_FOLDER [unittest's arguments]."""
import csv
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from collections import Counter
from pathlib import Path

PROGRAM = ""
MODULES = Path()

TOP = Path(__file__).resolve().parents[2]
ROOM = "Wohnzimmer"  # a text of the sample drawing, by which its copies differ
# What GNU Parallel does does not depend on the build of lomsh.
MANY = int(os.environ.get("LOMSH_DRAWINGS", "200"))
SECONDS = 600  # for all drawings, with a program under sanitizers on a busy machine

SCRIPT = """
(LAYER-TOTALS)
(entmake '((0 . "TEXT") (10 0.0 0.0 0.0) (40 . 0.5) (1 . "seen")))
"""
# What is started is noted, so that nothing is done twice unnoticed.
STAND_IN_LOMSH = """#!/bin/sh
echo "$1" >> "$STARTED"
exec "$LOMSH" "$@"
"""
# Each machine is a folder. Like ssh's server it sets SHELL, by which parallel starts a job there.
STAND_IN_SSH = """#!/bin/bash
while [[ $1 == -* ]]; do
  case $1 in -[lopiF]) shift 2 ;; *) shift ;; esac
done
export HOME=$MACHINES/$1 SHELL=/bin/bash
shift
[[ $1 == -- ]] && shift
mkdir -p "$HOME" && cd "$HOME" && exec bash -c "$*"
"""


def commands_of(heading):
    """The commands below a heading of the document."""
    text = (TOP / "docs/many-drawings.md").read_text(encoding="utf-8")
    section = re.search(rf"^## {heading}\n(.*?)(?:^## |\Z)", text, re.MULTILINE | re.DOTALL)[1]
    return re.findall(r"^```sh\n(.*?)^```", section, re.MULTILINE | re.DOTALL)


def command_of(heading):
    [command] = commands_of(heading)
    return command


def processes_of(session):
    """The processes of a session, without those that have ended."""
    found = []
    for stat in Path("/proc").glob("[0-9]*/stat"):
        try:
            state, _, _, its_session = stat.read_text().rpartition(")")[2].split()[:4]
        except (OSError, ValueError):
            continue
        if int(its_session) == session and state != "Z":
            found.append(int(stat.parent.name))
    return found


class ManyDrawings(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()
        for name in ["drawings", "bin", "home", "machines"]:
            (self.folder / name).mkdir()
        self.write_program("lomsh", STAND_IN_LOMSH)
        self.write_program("ssh", STAND_IN_SSH)
        (self.folder / "change.lsp").write_text(SCRIPT)
        shutil.copy(MODULES / "plan.so", self.folder)
        self.environment = dict(
            os.environ, PATH=f"{self.folder}/bin:{os.environ['PATH']}", HOME=str(self.folder / "home"), LOMSH=PROGRAM,
            STARTED=str(self.folder / "started"), MACHINES=str(self.folder / "machines"),
            PARALLEL_SSH=str(self.folder / "bin/ssh"))

    def write_program(self, name, text):
        path = self.folder / "bin" / name
        path.write_text(text)
        path.chmod(0o755)

    def make_drawings(self, count, damaged=()):
        subprocess.run(["/usr/bin/python3", TOP / "tools/samples.py", self.folder / "samples", "1", "R2000"],
                       check=True)
        plan = (self.folder / "samples/plan.dxf").read_bytes()
        for number in range(count):
            text = plan.replace(ROOM.encode(), b"Room %d" % number)
            if number in damaged:
                text = text[:len(text) // 2]
            (self.folder / f"drawings/plan {number}.dxf").write_bytes(text)

    def start(self, command):
        # Away from the terminal of the tests, and with all that it starts in a session of its own.
        with open(self.folder / "shown", "w") as shown:
            process = subprocess.Popen(["bash", "-c", command], cwd=self.folder, env=self.environment,
                                       start_new_session=True, stdin=subprocess.DEVNULL, stdout=shown, stderr=shown)
        self.addCleanup(self.kill, process)
        return process

    def run_command(self, command):
        process = self.start(command)
        status = process.wait(timeout=SECONDS)
        return status, (self.folder / "shown").read_text(errors="replace")

    def kill(self, process):
        """Kills a command with all that it has started, and waits for their ends."""
        while alive := processes_of(process.pid):
            for each in alive:
                try:
                    os.kill(each, signal.SIGKILL)
                except ProcessLookupError:
                    pass
        process.wait()

    def jobs(self):
        """The lines of the log, by drawing."""
        with open(self.folder / "jobs.log", newline="", encoding="utf-8") as file:
            rows = list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))
        return {re.search(r"drawings/plan\\? (\d+)", row["Command"])[1]: row for row in rows}, len(rows)

    def wait_for_jobs(self, count, process):
        log = self.folder / "jobs.log"
        limit = time.monotonic() + SECONDS
        while not log.exists() or log.read_bytes().count(b"\n") <= count:
            self.assertIsNone(process.poll(), "it is through before it could be killed")
            self.assertLess(time.monotonic(), limit, "it takes too long")
            time.sleep(0.01)

    def results(self):
        """The results, by drawing. Each file is a line."""
        lines = {}
        for path in (self.folder / "results").iterdir():
            text = path.read_text(encoding="utf-8")
            self.assertEqual(text.count("\n"), 1, path)
            lines[path.stem.removeprefix("plan ")] = json.loads(text)
        return lines

    def check_results(self, count, damaged=()):
        good = {str(number) for number in range(count) if number not in damaged}
        bad = set(map(str, damaged))
        results = self.results()
        self.assertEqual(set(results), good | bad)
        for number, line in results.items():
            self.assertEqual(line["file"], f"drawings/plan {number}.dxf")
            self.assertEqual(line["memory"], {"blocks": 0, "bytes": 0})
        before = {results[number]["entities_before"] for number in good}
        self.assertEqual(len(before), 1)
        for number in good:
            line = results[number]
            self.assertEqual((line["status"], line["errors"], line["functions"]), (0, [], {"LAYER-TOTALS": 1}))
            self.assertEqual(line["entities_after"], line["entities_before"] + 1)
        for number in bad:
            self.assertEqual(results[number]["status"], 2)
            self.assertIn(f"drawings/plan {number}.dxf:", results[number]["errors"][0])
        self.check_saved(good, before.pop() + 1)

    def check_saved(self, numbers, entities):
        """Each drawing is there once, whole, and is the one that its name says."""
        saved = {path.stem.removeprefix("plan "): path for path in (self.folder / "saved").glob("*.dxf")}
        self.assertEqual(set(saved), set(numbers))
        for number, path in saved.items():
            self.assertIn(f"\nRoom {number}\n", path.read_text(encoding="cp1252").replace("\r\n", "\n"))
        names = " ".join(f'"{path}"' for path in saved.values())
        look = f"""(foreach name '({names})
                     (open-drawing name)
                     (if (/= {entities} (sslength (ssget "_X"))) (exit-with-an-error name))
                     (if (/= 1 (sslength (ssget "_X" '((0 . "TEXT") (1 . "seen"))))) (exit-with-an-error name)))"""
        opened = subprocess.run([PROGRAM, "--batch", "-e", look], capture_output=True, text=True, timeout=SECONDS)
        self.assertEqual((opened.returncode, json.loads(opened.stdout)["errors"]), (0, []))

    def started(self):
        return Counter(re.findall(r"drawings/plan (\d+)\.dxf", (self.folder / "started").read_text()))

    def test_all_of_a_folder_and_a_damaged_one_stops_no_other(self):
        self.make_drawings(MANY, damaged=[17])
        status, shown = self.run_command(command_of("A folder"))
        self.assertEqual(status, 1, shown)
        self.assertIn("lomsh: drawings/plan 17.dxf:", shown)
        self.check_results(MANY, damaged=[17])
        jobs, lines = self.jobs()
        self.assertEqual((len(jobs), lines), (MANY, MANY))
        self.assertEqual({number: row["Exitval"] for number, row in jobs.items() if row["Exitval"] != "0"}, {"17": "2"})
        self.assertEqual(set(self.started().values()), {1})

        status, shown = self.run_command(command_of("A folder"))
        self.assertEqual(status, 0, shown)
        self.assertEqual(self.started().total(), MANY)

        shutil.copy(self.folder / "samples/plan.dxf", self.folder / "drawings/plan 17.dxf")
        status, shown = self.run_command(command_of("After a stop"))
        self.assertEqual(status, 0, shown)
        self.assertEqual({number: count for number, count in self.started().items() if count != 1}, {"17": 2})
        self.assertEqual(self.results()["17"]["status"], 0)

    def test_after_a_kill_none_is_lost_and_none_that_was_through_is_done_again(self):
        self.make_drawings(60)
        process = self.start(command_of("A folder"))
        self.wait_for_jobs(20, process)
        self.kill(process)
        done = set(self.jobs()[0])
        running = set(self.started()) - done
        self.assertGreaterEqual(len(done), 20)
        self.assertLess(len(done), 60)

        status, shown = self.run_command(command_of("A folder"))
        self.assertEqual(status, 0, shown)
        self.check_results(60)
        jobs, lines = self.jobs()
        self.assertEqual((len(jobs), lines), (60, 60))
        self.assertEqual({number for number, count in self.started().items() if count > 1}, running)
        self.assertEqual(max(self.started().values()), 2 if running else 1)

    def test_other_machines(self):
        self.make_drawings(6, damaged=[3])
        work, clean = commands_of("Other machines")
        status, shown = self.run_command(work)
        self.assertEqual(status, 1, shown)
        self.check_results(6, damaged=[3])
        jobs, _ = self.jobs()
        self.assertEqual({row["Host"] for row in jobs.values()}, {"build1", "build2"})

        status, shown = self.run_command(clean)
        self.assertEqual(status, 0, shown)
        self.assertEqual(list((self.folder / "machines").glob("*/lomsh-work")), [])


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    PROGRAM, MODULES = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2]).resolve()
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
