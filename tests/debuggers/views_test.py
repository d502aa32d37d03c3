#!/usr/bin/python3
"""Has GDB show the values of a program, and compares with views.out.

    views_test.py PROGRAM [--accept] [unittest's arguments]

--accept writes views.out anew: look at the difference before you commit it.
"""
import os
import pathlib
import re
import subprocess
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
VIEWS = HERE.parents[1] / "debuggers" / "lomlisp_gdb.py"
EXPECTED = HERE / "views.out"
# What GDB says when a printer fails, and what it shows then.
FAILURE = re.compile(r"Python|Traceback|warning:|RTTI", re.IGNORECASE)


def independent(text):
    """The text without addresses, except those that the program made up."""
    return re.sub(r"0x[0-9a-f]{5,}", "0x@", text)


def gdb(*commands, stop="Stop", encoding="UTF-8"):
    """What GDB shows for the commands, in the frame that called Stop. It has the printers of the standard library
    as well, which know shared pointers, too."""
    done = subprocess.run(["gdb", "-nx", "-batch", "-ex", "set width 0",
                           "-ex", f"set host-charset {encoding}", "-ex", f"source {VIEWS}",
                           "-ex", f"break {stop}", "-ex", "run", "-ex", "up" if stop == "Stop" else "frame",
                           "-ex", r"echo \n--- commands\n",
                           *(word for command in commands for word in ("-ex", command)), program],
                          capture_output=True, encoding="utf-8", timeout=100, check=False,
                          env=os.environ | {"LC_ALL": "C.UTF-8", "ASAN_OPTIONS": "detect_leaks=0"})
    begin = "\n--- commands\n"
    if begin not in done.stdout:
        raise AssertionError(done.stdout + done.stderr)
    return done.stdout.split(begin)[1] + "".join(filter(FAILURE.search, done.stderr.splitlines()))


def shown(*expressions):
    """What each expression is printed as."""
    output = gdb(*(f"print {expression}" for expression in expressions))
    return [line.split(" = ", 1)[1] if line.startswith("$") else line for line in output.splitlines()]


class Views(unittest.TestCase):
    def test_values_of_every_kind(self):
        expressions = [line.split(":", 1)[0] for line in EXPECTED.read_text().splitlines()]
        lines = [f"{name}: {independent(view)}" for name, view in zip(expressions, shown(*expressions), strict=True)]
        if accepts:
            EXPECTED.write_text("".join(f"{line}\n" for line in lines))
        self.assertEqual(EXPECTED.read_text().splitlines(), lines)

    def test_arguments_of_functions(self):
        output = independent(gdb("info args"))
        self.assertIn('value = (1 ("LINE" (1 . (1)))) [list of 2, ', output)
        self.assertIn("chain = 0x@: (-1 . <Entity name: 1f>) (0 . \"LINE\")", output)
        self.assertNotRegex(output, FAILURE)

    def test_a_class_of_a_client_keeps_its_own_members(self):
        [view] = shown("named")
        self.assertRegex(view, r"^\{<CLOMAdsLispVar> = \(1 \(\"LINE\" .*\]\}, number = 7\}$")

    def test_nothing_goes_wrong_with_garbage(self):
        expressions = ["hugeBlock", "*(CLOMAdsLispVar*)garbage", "*(CLOMAdsLispVar*)dangling", "*badNode",
                       "*(CLOMLispElement*)longText", "*(CLOMAdsLispVar*)longText", "*(ADSList*)garbage",
                       "*(ADSList*)longText", "*(resbuf*)longText", "(resbuf*)longText", "(resbuf*)&main",
                       "(CLOMLispElement*)&main", "*(CLOMAdsLispVar*)main", "(CLOMLispElement*)&wide",
                       "*(resbuf*)16", "*(CLOMAdsLispVar*)16", "*(ADSList*)16", "(resbuf*)-8", "(CLOMLispElement*)-8"]
        for limits in ["", "-elements unlimited -max-depth unlimited --"]:
            output = gdb(*(f"print {limits} {expression}" for expression in expressions), "echo the end")
            self.assertNotRegex(output, FAILURE)
            self.assertTrue(output.endswith("the end"))

    def test_nothing_goes_wrong_with_values_that_are_not_made_yet(self):
        output = gdb("info locals", "info args", "print named", "print list", "print longChain", stop="main")
        self.assertNotRegex(output, FAILURE)

    def test_size_costs_nothing(self):
        names = ["deep", "wide", "broad", "longList", "longChain", "longTextRecord", "*deep.m_element._M_ptr"]
        output = gdb("python import time", *(command for name in names for command in [
            "python begin = time.time()", f"print {name}", "python print(time.time() - begin)"]))
        lines = output.splitlines()
        for name, view, seconds in zip(names, lines[::2], lines[1::2], strict=True):
            with self.subTest(name=name):
                self.assertLess(len(view), 20_000)
                self.assertLess(float(seconds), 2.0)

    def test_unlimited_has_limits(self):
        views = shown(*(f"-elements unlimited -max-depth unlimited -- {name}" for name in
                        ["deep", "broad", "longChain", "wide"]))
        self.assertIn("(" * 101 + "..." + ")" * 101, views[0])
        for view in views:
            self.assertLess(len(view), 1_000_000)

    def test_limits_of_the_command_count(self):
        views = shown("-elements 3 -max-depth 1 -- shared", "-elements 2 -- wide", "-elements 2 -- list")
        self.assertEqual(views[0], '(1 (...)) [list of 2, 4 owners] = '
                         '{1 [RTSHORT, 1 owner], ("LIN"... (...)) [list of 2, 1 owner]}')
        self.assertRegex(views[1], r"^\(0 1 \.\.\.\) \[list of \d+, 1 owner\] = "
                         r"\{0 \[RTSHORT, 1 owner\], 1 \[RTSHORT, 1 owner\]\.\.\.\}$")
        self.assertEqual(views[2], "(1 ... [ADSList of more than 2, cursor at [1]] = {( [RTLB], 1 [RTSHORT]...}")

    def test_what_the_terminal_cannot_show_is_escaped(self):
        output = gdb("print quotedRecord", "print beyondRecord", encoding="ASCII")
        self.assertEqual(output.splitlines(), [r'$1 = "a \"b\" \\ \n \x01 \xe4 \u20ac" [RTSTR]',
                                               r'$2 = "\U0001f600" [RTSTR]'])

    def test_a_front_end_opens_level_by_level(self):
        output = gdb(*(f'interpreter-exec mi "{command}"' for command in [
            "-enable-pretty-printing", "-var-create v * shared", "-var-list-children --all-values v",
            "-var-list-children --all-values v.[1]", "-var-list-children --all-values v.[1].[1]",
            "-var-create c * nestedChain", "-var-list-children --all-values c 0 2", "-var-create n * noChain"]))
        replies = output.splitlines()
        children = [re.findall(r'exp="(.*?)".*?value="(.*?[^\\])",type', reply) for reply in replies]
        self.assertEqual(children[2], [("[0]", "1 [RTSHORT, 1 owner]"), ("[1]", "{...}")])
        self.assertEqual(children[3], [("[0]", r'\"LINE\" [RTSTR, 1 owner]'), ("[1]", "{...}")])
        self.assertEqual(children[4], [("[0]", "1 [RTSHORT, 1 owner]"), ("[1]", "{...}")])
        self.assertEqual(children[6], [("[0]", "( [RTLB]"), ("[1]", "1 [RTSHORT]")])
        self.assertIn('value="nil"', replies[7])

    def test_printers_can_be_turned_off(self):
        output = gdb("disable pretty-printer .* lomlisp", "print list")
        self.assertIn("{<ADSBaseList> = {start = ", output)


if __name__ == "__main__":
    accepts = "--accept" in sys.argv
    if accepts:
        sys.argv.remove("--accept")
    program = sys.argv.pop(1)
    unittest.main()
