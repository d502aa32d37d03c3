#!/usr/bin/python3
"""Saving when it ends badly: the process is killed, the disk is full, the folder is nobody's to write in.

kill_saves_test.py PROGRAM MODULES_FOLDER [unittest's arguments]. LOMSH_KILLS is how many saves are killed (20),
LOMSH_ROOMS how many rooms the drawing has (1500).
"""
import itertools
import os
import random
import subprocess
import time
import unittest

import lomsh_test_case
from lomsh_test_case import PATIENCE, SAMPLES, ShellTest, environment

KILLS = int(os.environ.get("LOMSH_KILLS", "20"))
ROOMS = os.environ.get("LOMSH_ROOMS", "1500")
SEED = 1
GOOD, NOT_WRITTEN = 0, 3

CHANGE = ["-e", "(entdel (entnext))"]


def leftovers(folder):
    return sorted(folder.glob("rooms.dxf.new*"))


class Saves(ShellTest):
    """Of a drawing with many rooms."""

    def setUp(self):
        super().setUp()
        subprocess.run(["/usr/bin/python3", SAMPLES, self.folder, ROOMS, "R2000"], check=True, timeout=PATIENCE,
                       stdout=subprocess.DEVNULL)
        self.drawing = self.folder / "rooms.dxf"
        self.old = self.drawing.read_bytes()
        self.assertEqual(self.lomsh("rooms.dxf", *CHANGE, "--save", "new.dxf").returncode, GOOD)
        self.new = (self.folder / "new.dxf").read_bytes()
        self.assertNotEqual(self.old, self.new)


class Killed(Saves):
    def wait_for(self, is_reached):
        deadline = time.monotonic() + PATIENCE
        while not is_reached():
            self.assertLess(time.monotonic(), deadline)

    def start_saving(self):
        """The program, at the moment at which it begins to save, and the file that it writes."""
        self.drawing.write_bytes(self.old)
        names = (self.folder / f"rooms.dxf.new{number}" for number in itertools.count(1))
        part = next(name for name in names if not name.exists())
        process = subprocess.Popen([lomsh_test_case.program, "rooms.dxf", *CHANGE, "--save", "rooms.dxf"],
                                   cwd=self.folder, env=environment(self.folder), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL)
        self.wait_for(part.exists)
        return process, part

    def duration(self):
        """How long a save takes, in seconds."""
        process, part = self.start_saving()
        start = time.monotonic()
        self.wait_for(lambda: not part.exists())
        duration = time.monotonic() - start
        self.assertEqual(process.wait(PATIENCE), GOOD)
        self.assertEqual(self.drawing.read_bytes(), self.new)
        return duration

    def kill(self, moment):
        """Kills a save so many seconds after it has begun; whether the new file is there, and whether a part of it."""
        process, part = self.start_saving()
        time.sleep(moment)
        process.kill()
        process.wait(PATIENCE)
        content = self.drawing.read_bytes()
        self.assertIn(content, (self.old, self.new), "neither the old file nor the new one")
        self.assertEqual(content == self.old, part.exists(), "a part of the new file and no old one, or none")
        return content == self.new

    def save_again(self):
        """What was left by killed saves is in nobody's way."""
        others = {file: file.read_bytes() for file in leftovers(self.folder)}
        self.drawing.write_bytes(self.old)
        self.assertEqual(self.lomsh("rooms.dxf", *CHANGE, "--save", "rooms.dxf").returncode, GOOD)
        self.assertEqual(self.drawing.read_bytes(), self.new)
        self.assertEqual({file: file.read_bytes() for file in leftovers(self.folder)}, others)
        for file in others:
            file.unlink()

    def check_opens(self, content):
        self.drawing.write_bytes(content)
        done = self.lomsh("rooms.dxf", "-e", '(sslength (ssget "X"))')
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))

    def test_the_old_file_or_the_new_one_is_there(self):
        moments = random.Random(SEED)
        duration = self.duration()
        # What runs beside makes a save take longer than the last one, so the kills themselves look for a time of
        # which half is behind its end.
        longest = duration
        least = max(1, KILLS // 5)
        old = new = 0
        while old + new < KILLS or min(old, new) < least and old + new < KILLS + 40:
            if self.kill(moments.uniform(0, longest)):
                new += 1
                longest *= 0.8
            else:
                old += 1
                longest *= 1.25
            if (old + new) % 10 == 0:
                self.save_again()
        self.save_again()
        for content in (self.old, self.new):
            self.check_opens(content)
        print(f"{old + new} kills in a save of {len(self.new)} bytes and {duration * 1000:.0f} ms: {old} times the "
              f"old file, with a part of the new one beside it, {new} times the new one")
        self.assertGreaterEqual(old, least, "too few within the save")
        self.assertGreaterEqual(new, least, "too few behind the save")


class Refused(Saves):
    # To root without capabilities folders are as closed as to others.
    CLOSED = [] if os.getuid() else ["setpriv", "--bounding-set=-all", "--inh-caps=-all", "--"]
    # A file system with so much room, where the drawing is.
    SMALL_DISK = """mount -t tmpfs -o size="$1" none disk && cp -p rooms.dxf disk && cd disk || exit 99; shift
        "$@"; status=$?
        cmp rooms.dxf ../rooms.dxf && [ "$(ls)" = rooms.dxf ] || exit 98
        exit $status"""
    NAMESPACE = ["unshare", "--mount", "--map-root-user"]

    def check_refused(self, message, *command):
        done = subprocess.run([*command, lomsh_test_case.program, "rooms.dxf", *CHANGE, "--save", "rooms.dxf"],
                              cwd=self.folder, env=environment(self.folder), check=False, timeout=PATIENCE,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)
        self.assertEqual(done.returncode, NOT_WRITTEN, done.stderr)
        self.assertIn("rooms.dxf", done.stderr)
        self.assertIn(message, done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertEqual(self.drawing.read_bytes(), self.old)
        self.assertEqual(leftovers(self.folder), [])

    def test_a_folder_that_is_not_to_be_written_in(self):
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        self.check_refused("cannot be written: Permission denied", *self.CLOSED)

    def test_a_disk_that_is_full(self):
        disk = self.folder / "disk"
        disk.mkdir()
        if subprocess.run([*self.NAMESPACE, "mount", "-t", "tmpfs", "none", disk], check=False,
                          capture_output=True).returncode != 0:
            self.skipTest("no file system can be mounted here")
        room = len(self.old) + len(self.new) // 2
        self.check_refused("cannot be written to its end: No space left on device", *self.NAMESPACE, "sh", "-c",
                           self.SMALL_DISK, "sh", str(room))


if __name__ == "__main__":
    lomsh_test_case.take_arguments(1)
    unittest.main()
