"""What the tests of lomsh share: the program, the modules, a folder of its own for every run.

A test is started as: NAME_test.py PROGRAM MODULES_FOLDER [TEST_MODULES_FOLDER] [unittest's own arguments]
"""
import atexit
import functools
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
SAMPLES = HERE.parent.parent / "tools" / "samples.py"

# Never reached, unless something hangs: a build with sanitizers on a busy machine is slow.
PATIENCE = 300

program = None
modules = None
test_modules = None


def take_arguments(count):
    """Takes the program and so many folders off the command line."""
    global program, modules, test_modules
    if len(sys.argv) < 2 + count:
        sys.exit(f"usage: {sys.argv[0]} PROGRAM MODULES_FOLDER"
                 f"{' TEST_MODULES_FOLDER' if count > 1 else ''} [unittest's arguments]")
    places = [Path(argument).resolve() for argument in sys.argv[1:2 + count]]
    program, modules = places[:2]
    test_modules = places[2] if count > 1 else None
    del sys.argv[1:2 + count]


def environment(folder):
    """Nothing of the user's: neither language nor files. GC_ is what tests ask of LISP's collector."""
    kept = {name: value for name, value in os.environ.items()
            if name == "PATH" or name.endswith("SAN_OPTIONS") or name.startswith("GC_")}
    return {**kept, "HOME": str(folder), "LC_ALL": "C.UTF-8", "TERM": "dumb"}


@functools.cache
def samples():
    """The folder with the sample drawings, which goes with the process."""
    folder = tempfile.TemporaryDirectory()
    atexit.register(folder.cleanup)
    # The system's own Python is the one that has ezdxf.
    subprocess.run(["/usr/bin/python3", SAMPLES, folder.name, "1", "R2000", "R2018"], check=True, timeout=PATIENCE,
                   stdout=subprocess.DEVNULL)
    return Path(folder.name)


class ShellTest(unittest.TestCase):
    """A folder for each test, with the modules and the sample drawings."""
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()
        for place in (modules, test_modules):
            for module in place.glob("*.so") if place else []:
                shutil.copy(module, self.folder)
        for drawing in samples().glob("*.dxf"):
            shutil.copy(drawing, self.folder)

    def write(self, name, content):
        """A file in the folder, from text or bytes."""
        data = content if isinstance(content, bytes) else content.encode()
        (self.folder / name).write_bytes(data)
        return name

    def lomsh(self, *words, typed=b"", **options):
        """Runs the program in the folder, with a pipe as its input. Output and errors are text."""
        done = subprocess.run([program, *words], cwd=self.folder, env=environment(self.folder),
                              input=typed if isinstance(typed, bytes) else typed.encode(),
                              stdout=options.pop("stdout", subprocess.PIPE), stderr=subprocess.PIPE,
                              timeout=PATIENCE, check=False, **options)
        done.stdout = (done.stdout or b"").decode(errors="replace")
        done.stderr = (done.stderr or b"").decode(errors="replace")
        return done
