#!/usr/bin/python3
"""Runs the scripts in scripts/ and compares what they show with the expected transcripts beside them.

    scripts_test.py PROGRAM MODULES_FOLDER [--accept] [unittest's arguments]

--accept writes the transcripts anew: look at the difference before you commit it.
"""
import re
import sys
import unittest

import lomsh_test_case
from lomsh_test_case import HERE, ShellTest

SCRIPTS = sorted((HERE / "scripts").glob("*.lsp"))


def independent(text, folder):
    """The text without what differs from machine to machine, and from run to run."""
    text = text.replace(f"{folder}/", "")
    return re.sub(r"@[0-9A-F]{16}", "@", text)


class Scripts(ShellTest):
    def compare(self, script):
        self.write(script.name, script.read_bytes())
        done = self.lomsh("--keep-going", "--script", script.name)
        self.assertEqual(done.stderr, "")
        # Every script has forms that fail.
        self.assertEqual(done.returncode, 1)
        found = independent(done.stdout, self.folder)
        expected = script.with_suffix(".out")
        if accepts:
            expected.write_text(found)
        self.assertEqual(expected.read_text(), found)


def add_test(script):
    setattr(Scripts, "test_" + script.stem, lambda self: self.compare(script))


for each in SCRIPTS:
    add_test(each)

if __name__ == "__main__":
    lomsh_test_case.take_arguments(1)
    accepts = "--accept" in sys.argv
    if accepts:
        sys.argv.remove("--accept")
    unittest.main()
