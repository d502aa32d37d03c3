#!/usr/bin/python3
"""Options, exit statuses, batches and bad input of lomsh.

    batch_test.py PROGRAM MODULES_FOLDER TEST_MODULES_FOLDER [unittest's arguments]
"""
import json
import os
import resource
import signal
import subprocess
import unittest

import lomsh_test_case
from lomsh_test_case import ShellTest

GOOD, FAILED, BAD_INVOCATION, NOT_WRITTEN, TIMEOUT = 0, 1, 2, 3, 124


class Options(ShellTest):
    def test_help_is_shown_on_output(self):
        for word in ("-h", "--help"):
            done = self.lomsh(word)
            self.assertEqual(done.returncode, GOOD)
            self.assertEqual(done.stderr, "")
            for option in ("--module", "--script", "--eval", "--keep-going", "--interactive", "--save", "--batch",
                           "--transcript", "--check-memory", "--timeout"):
                self.assertIn(option, done.stdout)

    def test_wrong_command_lines_are_refused(self):
        for words, reason in [(["--no-such-option"], "--no-such-option"),
                              (["-x"], "-x"),
                              (["--script"], "--script"),
                              (["-m"], "-m"),
                              (["a.dxf", "b.dxf"], "b.dxf"),
                              (["--timeout", "0"], '"0"'),
                              (["--timeout", "-5"], '"-5"'),
                              (["--timeout", "soon"], '"soon"'),
                              (["--timeout", "5s"], '"5s"'),
                              (["--timeout", "99999999999"], '"99999999999"'),
                              (["--batch", "--interactive"], "--batch")]:
            with self.subTest(words=words):
                done = self.lomsh(*words)
                self.assertEqual(done.returncode, BAD_INVOCATION)
                self.assertEqual(done.stdout, "")
                self.assertTrue(done.stderr.startswith("lomsh: "), done.stderr)
                self.assertIn(reason, done.stderr)

    def test_scripts_and_expressions_run_in_the_order_in_which_they_were_given(self):
        self.write("one.lsp", "(progn (princ 1) (princ))\n")
        done = self.lomsh("-e", "(progn (princ 0) (princ))", "-s", "one.lsp", "--eval=(progn (princ 2) (princ))",
                          "--script=one.lsp")
        self.assertEqual(done.returncode, GOOD)
        shown = [line for line in done.stdout.splitlines() if not line.startswith("Command: ")]
        self.assertEqual(shown, ["0", "1", "2", "1"])

    def test_long_and_short_options_load_modules(self):
        done = self.lomsh("-m", "parts.so", "--module", "plan.so", "-e", "(arx)")
        self.assertEqual((done.returncode, done.stdout), (GOOD, 'Command: (arx)\n("parts.so" "plan.so")\n'))

    def test_the_drawing_may_stand_anywhere(self):
        for words in (["plan.dxf", "-e", '(getvar "DWGNAME")'], ["-e", '(getvar "DWGNAME")', "plan.dxf"]):
            done = self.lomsh(*words)
            self.assertEqual((done.returncode, done.stdout), (GOOD, 'Command: (getvar "DWGNAME")\n"plan.dxf"\n'))

    def test_after_two_dashes_a_name_may_begin_with_one(self):
        (self.folder / "plan.dxf").rename(self.folder / "-plan.dxf")
        self.assertEqual(self.lomsh("-e", "1", "--", "-plan.dxf").returncode, GOOD)

    def test_an_empty_expression_does_nothing(self):
        self.assertEqual(self.lomsh("-e", "").returncode, GOOD)
        self.assertEqual(self.lomsh("-e", " ; only a comment").returncode, GOOD)


class Statuses(ShellTest):
    def test_forms_that_succeed(self):
        done = self.lomsh("-e", "(+ 1 2)")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (GOOD, "Command: (+ 1 2)\n3\n", ""))

    def test_a_form_that_fails_ends_the_run(self):
        self.write("fails.lsp", "(setq a 1)\n\n(car a)\n(princ \"never\")\n")
        done = self.lomsh("-s", "fails.lsp", "-e", '(princ "never")')
        self.assertEqual(done.returncode, FAILED)
        self.assertNotIn("never", done.stdout)
        self.assertEqual(done.stdout.splitlines()[-3:],
                         ["; error: bad argument type: consp 1", "; in: CAR", "; at: fails.lsp:3"])

    def test_keep_going_evaluates_the_rest_and_fails(self):
        self.write("fails.lsp", "(car 1)\n(princ \"next form\")\n")
        for option in ("-k", "--keep-going"):
            done = self.lomsh(option, "-s", "fails.lsp", "-e", '(princ "next text")')
            self.assertEqual(done.returncode, FAILED)
            self.assertIn("next form", done.stdout)
            self.assertIn("next text", done.stdout)

    def test_an_error_that_was_caught_is_none(self):
        done = self.lomsh("-e", "(vl-catch-all-error-p (vl-catch-all-apply '/ '(1 0)))")
        self.assertEqual(done.returncode, GOOD)

    def test_an_error_that_the_script_was_told_of_is_one(self):
        done = self.lomsh("-e", '(defun *error* (text) (princ (strcat "told: " text)) (princ))', "-e", "(/ 1 0)")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("told: divide by zero", done.stdout)

    def test_the_innermost_function_comes_first(self):
        done = self.lomsh("-e", "(defun f (x) (g x))(defun g (x) (car x))(f 5)")
        self.assertIn("; in: CAR G F\n", done.stdout)

    def test_deep_recursion_is_an_error(self):
        done = self.lomsh("-k", "-e", "(defun f () (1+ (f)))(f)", "-e", "(+ 1 2)")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("; error: internal stack limit reached", done.stdout)
        self.assertTrue(done.stdout.endswith("Command: (+ 1 2)\n3\n"), done.stdout)


class BatchLine(ShellTest):
    def batch(self, *words):
        done = self.lomsh("--batch", *words)
        self.assertTrue(done.stdout.endswith("\n"))
        self.assertEqual(done.stdout.count("\n"), 1, done.stdout)
        line = json.loads(done.stdout)
        self.assertEqual(line["status"], done.returncode)
        self.assertEqual(list(line), ["file", "functions", "entities_before", "entities_after", "errors", "memory",
                                      "seconds", "status"])
        return line

    def test_every_field_of_a_good_run(self):
        line = self.batch("plan.dxf", "-m", "parts.so", "-m", "plan.so", "-e", "(REMEMBER \"A\" 1)",
                          "-e", "(REMEMBER \"B\" 2)", "-e", "(LAYER-TOTALS)",
                          "-e", "(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))",
                          "-e", "(repeat 3 (entdel (entnext)))")
        self.assertEqual(line["file"], "plan.dxf")
        self.assertEqual(line["functions"], {"LAYER-TOTALS": 1, "REMEMBER": 2})
        self.assertEqual(line["entities_before"], 61)
        self.assertEqual(line["entities_after"], 59)
        self.assertEqual(line["errors"], [])
        self.assertEqual(line["memory"], {"blocks": 0, "bytes": 0})
        self.assertEqual(line["status"], GOOD)
        self.assertGreater(line["seconds"], 0)
        self.assertLess(line["seconds"], lomsh_test_case.PATIENCE)

    def test_nothing_to_do(self):
        line = self.batch()
        self.assertEqual((line["file"], line["functions"], line["entities_before"], line["entities_after"]),
                         ("", {}, 0, 0))
        self.assertEqual((line["errors"], line["status"]), ([], GOOD))

    def test_each_error_is_a_text_with_its_place(self):
        self.write("fails.lsp", "(car 1)\n(cdr\n 2)\n")
        line = self.batch("-k", "-s", "fails.lsp", "-e", "(/ 1 0)")
        self.assertEqual(line["errors"], ["fails.lsp:1: bad argument type: consp 1",
                                          "fails.lsp:2: bad argument type: consp 2", "divide by zero"])
        self.assertEqual(line["status"], FAILED)

    def test_what_is_shown_is_not_on_output(self):
        line = self.batch("-e", '(princ "shown")')
        self.assertEqual(line["status"], GOOD)

    def test_nobody_answers(self):
        done = self.lomsh("--batch", "-e", '(setq line (read-line))', "-e", "(if line (exit))", typed="typed\n")
        self.assertEqual(done.returncode, GOOD, done.stdout)

    def test_texts_of_errors_are_unicode(self):
        line = self.batch("-e", '(strcat "größer 😀" 5)', "-e", "1")
        self.assertEqual(line["errors"], ["bad argument type: stringp 5"])
        self.assertEqual(self.batch("-e", '(car "größer 😀")')["errors"], ['bad argument type: consp "größer 😀"'])

    def test_a_drawing_that_cannot_be_opened_has_a_line_too(self):
        line = self.batch("missing.dxf")
        self.assertEqual((line["file"], line["status"], len(line["errors"])), ("missing.dxf", BAD_INVOCATION, 1))
        self.assertIn("missing.dxf", line["errors"][0])

    def test_memory_that_is_not_released(self):
        line = self.batch("-m", "Misbehaving.so", "-e", "(LEAK)")
        self.assertEqual(line["status"], FAILED)
        self.assertEqual(line["memory"]["blocks"], 3)
        self.assertGreater(line["memory"]["bytes"], 0)
        self.assertEqual(line["functions"], {"LEAK": 1})
        self.assertTrue(all("LEAK" in error for error in line["errors"]), line["errors"])

    def test_a_timeout(self):
        line = self.batch("--timeout", "1", "-e", "(while T)", "-e", '(princ "never")')
        self.assertEqual(line["status"], TIMEOUT)
        self.assertTrue(any("time limit of 1 second" in error for error in line["errors"]), line["errors"])


class Transcript(ShellTest):
    def test_it_has_what_is_shown(self):
        done = self.lomsh("--transcript", "shown.txt", "-m", "parts.so", "-e", '(princ "größer")',
                          "-e", '(LABEL "M" 1 2.0)', "-e", "(car 1)")
        self.assertEqual((self.folder / "shown.txt").read_text(), done.stdout)
        self.assertIn("; error: bad argument type: consp 1", done.stdout)

    def test_a_batch_has_one_as_well(self):
        words = ["-e", "(+ 1 2)", "-e", '(prompt "text")']
        shown = self.lomsh(*words).stdout
        self.lomsh("--batch", "--transcript", "shown.txt", *words)
        self.assertEqual((self.folder / "shown.txt").read_text(), shown)

    def test_it_is_written_anew(self):
        self.write("shown.txt", "old " * 1000)
        done = self.lomsh("--transcript", "shown.txt", "-e", "1")
        self.assertEqual((self.folder / "shown.txt").read_text(), done.stdout)

    def test_it_has_what_was_typed(self):
        self.lomsh("--transcript", "shown.txt", typed="(setq a 5)\n!a\n")
        self.assertEqual((self.folder / "shown.txt").read_text(), "Command: (setq a 5)\n5\nCommand: !a\n5\n")


class Save(ShellTest):
    def test_the_drawing_is_saved_at_the_end(self):
        done = self.lomsh("plan.dxf", "-e", "(entdel (entnext))", "--save", "saved.dxf")
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))
        again = self.lomsh("saved.dxf", "-e", '(sslength (ssget "X"))')
        self.assertTrue(again.stdout.endswith("\n60\n"), again.stdout)

    def test_it_may_be_saved_under_its_own_name(self):
        self.assertEqual(self.lomsh("plan.dxf", "-e", "(entdel (entnext))", "--save", "plan.dxf").returncode, GOOD)
        self.assertTrue(self.lomsh("plan.dxf", "-e", '(sslength (ssget "X"))').stdout.endswith("\n60\n"))

    def test_nothing_is_saved_when_a_form_failed(self):
        before = (self.folder / "plan.dxf").read_bytes()
        for words in ([], ["-k"], ["--batch"]):
            done = self.lomsh("plan.dxf", *words, "-e", "(entdel (entnext))", "-e", "(car 1)", "--save", "plan.dxf")
            self.assertEqual(done.returncode, FAILED)
            self.assertIn("not saved", done.stderr)
            self.assertEqual((self.folder / "plan.dxf").read_bytes(), before)
            self.lomsh("plan.dxf", "-e", "(car 1)", "--save", "new.dxf")
            self.assertFalse((self.folder / "new.dxf").exists())

    def test_nothing_is_saved_after_a_timeout(self):
        before = (self.folder / "plan.dxf").read_bytes()
        done = self.lomsh("plan.dxf", "-e", "(entdel (entnext))", "-e", "(while T)", "--timeout", "1",
                          "--save", "plan.dxf")
        self.assertEqual(done.returncode, TIMEOUT)
        self.assertEqual((self.folder / "plan.dxf").read_bytes(), before)

    def test_without_it_the_file_stays_as_it_is(self):
        before = (self.folder / "plan.dxf").read_bytes()
        self.assertEqual(self.lomsh("plan.dxf", "-m", "plan.so", "-e", "(entdel (entnext))",
                                    "-e", "(REPLACE-TEXTS '(\"Flur\") '(\"Hall\"))").returncode, GOOD)
        self.assertEqual((self.folder / "plan.dxf").read_bytes(), before)

    def test_a_place_where_nothing_can_be_written(self):
        for name in ("no/such/folder/a.dxf", "."):
            with self.subTest(name=name):
                done = self.lomsh("plan.dxf", "--batch", "-e", "1", "--save", name)
                self.assertEqual(done.returncode, NOT_WRITTEN)
                self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
                self.assertIn(name, done.stderr)
                self.assertEqual(json.loads(done.stdout)["status"], NOT_WRITTEN)

    def test_what_is_no_file_is_not_replaced_by_one(self):
        # As a device must not be, which a test had better not try.
        os.mkfifo(self.folder / "pipe.dxf")
        done = self.lomsh("plan.dxf", "-e", "1", "--save", "pipe.dxf")
        self.assertTrue((self.folder / "pipe.dxf").is_fifo())
        self.assertEqual(done.returncode, NOT_WRITTEN)

    def test_a_disk_that_is_full_leaves_the_old_file(self):
        before = (self.folder / "plan.dxf").read_bytes()

        def limit():
            # Where the signal is ignored, writing fails as on a full disk.
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))

        done = self.lomsh("plan.dxf", "-e", "(entdel (entnext))", "--save", "plan.dxf", preexec_fn=limit,
                          restore_signals=False)
        self.assertEqual(done.returncode, NOT_WRITTEN)
        self.assertIn("plan.dxf", done.stderr)
        self.assertEqual((self.folder / "plan.dxf").read_bytes(), before)
        self.assertEqual([file.name for file in self.folder.glob("plan.dxf*")], ["plan.dxf"])


class Names(ShellTest):
    """Names of files with letters beyond ASCII, whatever the language of the system."""

    def test_a_drawing_and_its_folder(self):
        (self.folder / "Größe Ж").mkdir()
        (self.folder / "plan.dxf").rename(self.folder / "Größe Ж" / "Türöffnung.dxf")
        done = self.lomsh("Größe Ж/Türöffnung.dxf", "-e", '(list (getvar "DWGNAME") (sslength (ssget "X")))')
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))
        self.assertTrue(done.stdout.endswith('\n("Türöffnung.dxf" 61)\n'), done.stdout)

    def test_a_batch_that_saves(self):
        done = self.lomsh("--batch", "plan.dxf", "-e", "(entdel (entnext))", "--save", "Möbel.dxf")
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))
        self.assertEqual(json.loads(done.stdout)["status"], GOOD)
        self.assertTrue((self.folder / "Möbel.dxf").exists())

    def test_functions_of_lisp(self):
        done = self.lomsh("plan.dxf", "-e", '(save-drawing "Möbel Ж.dxf")', "-e", "(new-drawing)",
                          "-e", '(open-drawing "Möbel Ж.dxf")', "-e", '(getvar "DWGNAME")')
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith('\n"Möbel Ж.dxf"\n'), done.stdout)

    def test_scripts_and_modules(self):
        (self.folder / "Größe").mkdir()
        (self.folder / "parts.so").rename(self.folder / "Größe" / "Möbel.so")
        self.write("Größe/Tür.lsp", '(LABEL "M" 1 1.0)\n')
        done = self.lomsh("-m", "Größe/Möbel.so", "-s", "Größe/Tür.lsp", "-e", "(arx)", "--transcript", "Ж.txt")
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith('\n("Möbel.so")\n'), done.stdout)
        self.assertEqual((self.folder / "Ж.txt").read_text(), done.stdout)


class FullDisk(ShellTest):
    def test_output(self):
        with open("/dev/full", "wb") as full:
            done = self.lomsh("-e", "(+ 1 2)", stdout=full)
        self.assertEqual(done.returncode, NOT_WRITTEN)
        self.assertEqual(done.stderr, "lomsh: standard output: cannot be written\n")

    def test_output_of_a_batch(self):
        with open("/dev/full", "wb") as full:
            done = self.lomsh("--batch", "-e", "(+ 1 2)", stdout=full)
        self.assertEqual(done.returncode, NOT_WRITTEN)
        self.assertEqual(done.stderr, "lomsh: standard output: cannot be written\n")

    def test_transcript(self):
        for name in ("/dev/full", "no/such/folder/shown.txt", "."):
            with self.subTest(name=name):
                done = self.lomsh("--transcript", name, "-e", "(+ 1 2)")
                self.assertEqual(done.returncode, NOT_WRITTEN)
                self.assertEqual(done.stdout, "Command: (+ 1 2)\n3\n")
                self.assertIn(f"{name}: cannot be written", done.stderr)

    def test_a_reader_that_has_gone(self):
        reading, writing = os.pipe()
        os.close(reading)
        with open(writing, "wb") as pipe:
            done = self.lomsh("-e", "(+ 1 2)", stdout=pipe)
        self.assertEqual(done.returncode, NOT_WRITTEN)


class Memory(ShellTest):
    """What modules do wrong is said with the name of the function."""

    def misbehaves(self, *forms):
        words = [word for form in forms for word in ("-e", form)]
        done = self.lomsh("-k", "-m", "Misbehaving.so", "--check-memory", *words)
        self.assertEqual(done.returncode, FAILED, done.stdout)
        return [line[2:] for line in done.stdout.splitlines() if line.startswith("! ")]

    def test_two_results(self):
        self.assertEqual(self.misbehaves("(TWICE)"), ["TWICE: a second result"])

    def test_no_result_is_noticed_and_allowed(self):
        done = self.lomsh("-m", "Misbehaving.so", "--check-memory", "-e", "(NOT)")
        self.assertEqual(done.stdout.splitlines()[:3], ["Command: (NOT)", "; NOT: no result", "nil"])
        self.assertEqual(done.returncode, GOOD)

    def test_an_argument_chain_that_is_kept_and_used(self):
        reports = self.misbehaves("(KEEP '(1 2))", "(USE-KEPT)")
        self.assertEqual(len(reports), 1, reports)
        self.assertRegex(reports[0], "^USE-KEPT: .*freed")

    def test_an_argument_chain_that_is_kept_and_written(self):
        done = self.lomsh("-k", "-m", "Misbehaving.so", "-e", "(KEEP '(1 2))", "-e", "(WRITE-KEPT)")
        self.assertEqual(done.returncode, FAILED, done.stdout)
        # A sanitizer ends the program at the write.
        told = done.stderr if "AddressSanitizer" in done.stderr else done.stdout
        self.assertRegex(told, r"! .*written after the free: .*during KEEP|use-after-poison[\s\S]*WRITE")

    def test_a_leak(self):
        reports = self.misbehaves("(LEAK)")
        self.assertEqual(len(reports), 3, reports)
        for report in reports:
            self.assertRegex(report, "^Misbehaving.so LEAK: not released: .* bytes")

    def test_a_leak_is_found_without_being_asked_for(self):
        self.assertEqual(self.lomsh("-m", "Misbehaving.so", "-e", "(LEAK)").returncode, FAILED)

    def test_a_double_free(self):
        reports = self.misbehaves("(FREE-TWICE)")
        self.assertEqual(len(reports), 1, reports)
        self.assertRegex(reports[0], "^FREE-TWICE: freed twice: ")

    def test_exceptions(self):
        self.assertEqual(self.misbehaves("(THROW)"), ["THROW: an exception: out of paper"])
        self.assertEqual(self.misbehaves("(THROW-BY-MESSAGE)"), ["THROW-BY-MESSAGE: an exception"])

    def test_a_function_that_gives_an_error(self):
        done = self.lomsh("-m", "Misbehaving.so", "-e", "(FAIL-BY-MESSAGE)")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("; error: the function returned an error: FAIL-BY-MESSAGE\n", done.stdout)

    def test_the_session_goes_on(self):
        done = self.lomsh("-k", "-m", "Misbehaving.so", "-e", "(THROW)", "-e", "(FREE-TWICE)", "-e", "(COUNT)")
        self.assertTrue("Command: (COUNT)\n1\n" in done.stdout, done.stdout)

    def test_modules_that_behave(self):
        done = self.lomsh("plan.dxf", "-m", "parts.so", "-m", "plan.so", "--check-memory", "-e", "(LAYER-TOTALS)",
                          "-e", "(BILL-OF-MATERIALS \"TYPE\")", "-e", "(COUNT-KINDS '(\"a\" \"b\" \"a\"))")
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))
        self.assertIn("Memory: 0 blocks, 0 bytes\n", done.stdout)

    def test_what_a_static_object_holds_is_no_leak(self):
        done = self.lomsh("-m", "Misbehaving.so", "--check-memory", "-e", "(HOLD)")
        self.assertEqual((done.returncode, done.stderr), (GOOD, ""))


class Pictures(ShellTest):
    """ezdxf draws only where matplotlib is installed; where it is not, the message must say so."""
    LINES = """(setq a (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 10.0 5.0 0.0))))
               (repeat 50 (entmake '((0 . "CIRCLE") (10 5.0 5.0 0.0) (40 . 3.0))))"""

    def setUp(self):
        super().setUp()
        has_matplotlib = ["/usr/bin/python3", "-c", "import matplotlib"]
        self.can_draw = subprocess.run(has_matplotlib, stderr=subprocess.DEVNULL, check=False).returncode == 0

    def draw(self, form):
        done = self.lomsh("-e", self.LINES, "-e", form)
        self.assertEqual(done.returncode, 0 if self.can_draw else 1, done.stdout)
        if not self.can_draw:
            self.assertIn("; error: no picture: ezdxf draw failed", done.stdout)
        return done

    def test_the_whole_drawing_and_a_selection(self):
        self.draw('(draw "all.svg")')
        self.draw('(draw (ssadd a) "line.svg")')
        pictures = [self.folder / name for name in ("all.svg", "line.svg")]
        self.assertEqual([picture.exists() for picture in pictures], [self.can_draw] * 2)
        if self.can_draw:
            whole, line = [picture.read_text() for picture in pictures]
            self.assertIn("<svg", line)
            self.assertGreater(len(whole), len(line) + 50 * 50)

    def test_the_name_is_that_of_the_drawing(self):
        self.draw("(draw)")
        self.assertEqual((self.folder / "Drawing1.svg").exists(), self.can_draw)

    def test_a_folder_that_is_not_there(self):
        done = self.lomsh("-e", '(draw "none/all.svg")')
        self.assertEqual(done.returncode, 1)
        self.assertIn("; error: no picture: ezdxf draw failed", done.stdout)

    def test_bad_arguments(self):
        done = self.lomsh("-k", "-e", "(draw 5) (draw nil 5) (draw 1 2 3)")
        self.assertEqual(done.stdout.count("; error: "), 3)
        self.assertIn("bad argument type: lselsetp 5", done.stdout)


class BadInput(ShellTest):
    def refused(self, *words):
        """The one message of a run that does not begin."""
        done = self.lomsh(*words, "-e", '(princ "never")')
        self.assertEqual(done.returncode, BAD_INVOCATION)
        self.assertEqual(done.stdout, "")
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertTrue(done.stderr.startswith("lomsh: "), done.stderr)
        return done.stderr

    def test_drawings_that_are_missing_or_no_files(self):
        for name in ("missing.dxf", "no/such/folder/a.dxf", "."):
            self.assertIn(f"{name}: ", self.refused(name))

    def test_a_drawing_that_is_empty_or_something_else(self):
        self.assertIn("empty.dxf: ", self.refused(self.write("empty.dxf", "")))
        self.assertRegex(self.refused(self.write("letter.dxf", "Dear Sir\nor Madam\n")),
                         r"letter\.dxf: .*\(line 1\)")

    def test_a_damaged_drawing_is_told_with_the_line(self):
        lines = (self.folder / "plan.dxf").read_bytes().split(b"\n")
        lines[1000] = b"no number" if lines[1000].strip().isdigit() else lines[1000]
        lines[1002] = b"no number"
        line = 1001 if lines[1000] == b"no number" else 1003
        damaged = b"\n".join(lines)
        message = self.refused(self.write("damaged.dxf", damaged))
        self.assertRegex(message, rf"damaged\.dxf: .*\(line {line}\)")
        self.assertEqual((self.folder / "damaged.dxf").read_bytes(), damaged)

    def test_a_drawing_that_ends_too_early(self):
        data = (self.folder / "plan.dxf").read_bytes()
        self.assertRegex(self.refused(self.write("short.dxf", data[:len(data) // 2])), r"short\.dxf: .*\(line \d+\)")

    def test_a_message_names_the_file_once(self):
        for name in ("missing.dxf", self.write("empty.dxf", ""), self.write("letter.dxf", "Dear Sir\n")):
            self.assertEqual(self.refused(name).count(name), 1)

    def test_modules_that_do_not_load(self):
        for name in ("missing.so", "NoEntry.so", "Unresolved.so", "plan.dxf", "."):
            self.assertIn(name, self.refused("-m", name))

    def test_a_module_that_refuses_to_be_loaded(self):
        done = self.lomsh("-e", '(setq misdeed "refuse")', "-e", '(arxload "Refusing.so")')
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("; error: ARXLOAD failed: Refusing.so: refuses to be loaded\n", done.stdout)

    def test_a_module_that_is_loaded_twice(self):
        self.assertIn("parts.so", self.refused("-m", "parts.so", "-m", "parts.so"))

    def test_scripts_that_cannot_be_read(self):
        self.assertIn("missing.lsp: ", self.refused("-s", "missing.lsp"))
        self.assertIn(".: ", self.refused("-s", "."))

    def test_every_script_is_looked_for_before_the_first_one_runs(self):
        self.write("one.lsp", '(princ "never")')
        self.assertIn("missing.lsp: ", self.refused("-s", "one.lsp", "-s", "missing.lsp"))

    def failing_script(self, text, *words):
        self.write("script.lsp", text)
        done = self.lomsh(*words, "-s", "script.lsp")
        self.assertEqual(done.returncode, FAILED)
        return done.stdout

    def test_a_parenthesis_that_is_not_closed(self):
        shown = self.failing_script("(setq a 1)\n\n(defun f (x)\n  (list x\n\n")
        self.assertIn("; error: malformed list on input\n", shown)
        self.assertIn("; at: script.lsp:6, opened in line 4, form of line 3\n", shown)

    def test_a_string_that_is_not_closed(self):
        shown = self.failing_script('(setq a 1)\n(setq b\n  "text)\n(setq c 2)\n')
        self.assertIn("; error: malformed string on input\n", shown)
        self.assertIn("; at: script.lsp:5, opened in line 3, form of line 2\n", shown)

    def test_a_parenthesis_too_many(self):
        shown = self.failing_script("(setq a 1)\n(setq b 2))\n(princ \"never\")\n")
        self.assertIn("; error: extra right paren on input\n", shown)
        self.assertIn("; at: script.lsp:2", shown)
        self.assertNotIn("\nnever", shown)

    def test_a_wrong_argument(self):
        shown = self.failing_script("(setq a\n  \"text\")\n\n(strlen\n  (+ 1\n    a))\n")
        self.assertIn('; error: bad argument type: numberp: "text"\n', shown)
        self.assertIn("; at: script.lsp:4\n", shown)

    def test_an_error_in_a_loaded_file_has_its_place(self):
        self.write("loaded.lsp", "(setq a 1)\n(car a)\n")
        shown = self.failing_script('\n(load "loaded")\n')
        self.assertRegex(shown, r"; at: .*loaded\.lsp:2\n")


class Timeouts(ShellTest):
    def test_a_loop_that_never_ends(self):
        for form in ("(repeat 2000000000 (setq a (list 1 2)))",
                     "(while T (vl-catch-all-apply '(lambda () (while T)) nil))"):
            with self.subTest(form=form):
                done = self.lomsh("--timeout", "1", "-e", form, "-e", '(princ "never")')
                self.assertEqual(done.returncode, TIMEOUT)
                self.assertIn("time limit of 1 second", done.stderr)
                self.assertNotIn("\nnever", done.stdout)

    def test_keep_going_does_not_go_on(self):
        done = self.lomsh("-k", "--timeout", "1", "-e", "(while T)", "-e", '(princ "never")')
        self.assertEqual(done.returncode, TIMEOUT)
        self.assertNotIn("\nnever", done.stdout)

    def test_a_function_of_a_module_that_never_ends(self):
        done = self.lomsh("--timeout", "1", "-m", "Misbehaving.so", "-e", "(ENDLESS)")
        self.assertEqual(done.returncode, TIMEOUT)
        self.assertIn("the time limit is over, and what was called does not end", done.stderr)

    def test_a_batch_leaves_its_line_all_the_same(self):
        done = self.lomsh("--batch", "plan.dxf", "--timeout", "1", "-m", "Misbehaving.so", "-e", "(ENDLESS)",
                          "--save", "saved.dxf")
        self.assertEqual(done.returncode, TIMEOUT)
        line = json.loads(done.stdout)
        self.assertEqual((line["file"], line["status"], line["entities_before"]), ("plan.dxf", TIMEOUT, 61))
        self.assertEqual(len(line["errors"]), 1)
        self.assertEqual(line["functions"], {"ENDLESS": 1})
        self.assertFalse((self.folder / "saved.dxf").exists())

    def test_a_run_that_ends_in_time(self):
        self.assertEqual(self.lomsh("--timeout", "200", "-e", "(+ 1 2)").returncode, GOOD)


class ScriptFiles(ShellTest):
    def check_texts(self, data):
        self.write("script.lsp", data)
        done = self.lomsh("-s", "script.lsp")
        self.assertEqual(done.returncode, GOOD, done.stdout)
        values = [line for line in done.stdout.splitlines() if not line.startswith("Command: ")]
        self.assertEqual(values, ["5", "(103 252 228)", "3"])

    TEXT = '(setq größe 5)\n(vl-string->list "güä")\n; Maß\n(strlen "güä")\n'

    def test_utf8(self):
        self.check_texts(self.TEXT.encode())

    def test_a_byte_order_mark(self):
        self.check_texts(self.TEXT.encode("utf-8-sig"))

    def test_an_older_coding(self):
        self.check_texts(self.TEXT.encode("latin-1"))

    def test_lines_that_end_as_elsewhere(self):
        self.check_texts(self.TEXT.replace("\n", "\r\n").encode())

    def test_a_form_over_lines_that_end_as_elsewhere_and_its_line(self):
        self.write("script.lsp", "(setq a\r\n 1)\r\n\r\n(car\r\n a)\r\n")
        done = self.lomsh("-s", "script.lsp")
        self.assertIn("; at: script.lsp:4\n", done.stdout)

    def test_no_end_of_line_at_the_end(self):
        self.write("script.lsp", "(+ 1 2)")
        self.assertEqual(self.lomsh("-s", "script.lsp").stdout, "Command: (+ 1 2)\n3\n")

    def test_an_empty_file(self):
        self.write("script.lsp", "")
        done = self.lomsh("-s", "script.lsp")
        self.assertEqual((done.returncode, done.stdout), (GOOD, ""))

    def test_files_next_to_a_script(self):
        (self.folder / "lib").mkdir()
        self.write("lib/tools.lsp", "(setq tools 7)\n")
        self.write("lib/main.lsp", '(load "tools")\n(load "tools.lsp")\n(findfile "tools.lsp")\ntools\n')
        done = self.lomsh("-s", "lib/main.lsp")
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith("Command: tools\n7\n"), done.stdout)

    def test_a_module_and_a_drawing_next_to_a_script(self):
        (self.folder / "lib").mkdir()
        for name in ("parts.so", "plan.dxf"):
            (self.folder / name).rename(self.folder / "lib" / name)
        self.write("lib/main.lsp", '(arxload "parts.so")\n(open-drawing "plan.dxf")\n(LABEL "M" 1 1.0)\n')
        done = self.lomsh("-s", "lib/main.lsp")
        self.assertEqual(done.returncode, GOOD, done.stdout)


class Pipe(ShellTest):
    """Standard input that is no terminal is taken as if it were typed."""

    def test_forms_and_variables(self):
        done = self.lomsh(typed="(setq a (list 1\n  2))\n!a\n; a comment\n\n(car a)\n")
        self.assertEqual(done.returncode, GOOD)
        self.assertEqual(done.stdout,
                         "Command: (setq a (list 1\n(_>   2))\n(1 2)\nCommand: !a\n(1 2)\nCommand: ; a comment\n"
                         "Command: \nCommand: (car a)\n1\n")

    def test_commands(self):
        done = self.lomsh(typed="(defun c:hello () (princ \"Hello\") (princ))\nhello\nHELLO\n")
        self.assertEqual(done.returncode, GOOD)
        self.assertEqual(done.stdout.count("\nHello"), 2)

    def test_an_unknown_command(self):
        done = self.lomsh(typed="nonsense\n(+ 1 2)\n")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn('Unknown command "NONSENSE".\n', done.stdout)
        self.assertIn("\n3\n", done.stdout)

    def test_an_error_does_not_end_the_input(self):
        done = self.lomsh(typed="(car 1)\n(+ 1 2)\n")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("; error: bad argument type: consp 1", done.stdout)
        self.assertIn("\n3\n", done.stdout)

    def test_quit_ends_it(self):
        for word in ("quit", "QUIT", "exit"):
            done = self.lomsh(typed=f"(+ 1 2)\n{word}\n(+ 3 4)\n")
            self.assertEqual(done.returncode, GOOD)
            self.assertNotIn("7", done.stdout)

    def test_a_question_is_answered_by_the_next_line(self):
        done = self.lomsh(typed='(setq a (read-line))\nMüller & Söhne\n(strlen a)\n')
        self.assertEqual(done.returncode, GOOD)
        self.assertIn('"Müller & Söhne"\n', done.stdout)
        self.assertTrue(done.stdout.endswith("Command: (strlen a)\n14\n"), done.stdout)

    def test_a_command_is_answered_by_what_stands_behind_it(self):
        done = self.lomsh(typed="(defun c:two () (list (read-line) (read-line)))\ntwo first second\n(+ 1 2)\n")
        self.assertEqual(done.returncode, GOOD)
        self.assertIn('("first" "second")\n', done.stdout)
        self.assertTrue(done.stdout.endswith("Command: (+ 1 2)\n3\n"), done.stdout)

    def test_a_question_of_a_script_takes_the_first_line(self):
        done = self.lomsh("-e", "(setq a (read-line))", typed="typed\n")
        self.assertEqual(done.returncode, GOOD)
        self.assertIn('"typed"\n', done.stdout)

    def test_what_is_asked_for_is_answered_by_following_lines(self):
        done = self.lomsh(typed='(setq a (getstring T "Name: "))\nMüller & Söhne\n'
                                '(setq b (getint "Number: "))\n42\n'
                                '(setq c (getreal "Size: "))\n2.5\n'
                                '(setq d (getpoint "Place: "))\n1,2,3\n'
                                '(progn (initget "Yes No") (setq e (getkword "Sure? ")))\ny\n'
                                '(list a b c d e)\n')
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith('\n("Müller & Söhne" 42 2.5 (1.0 2.0 3.0) "Yes")\n'), done.stdout)
        self.assertIn("Number: 42\n", done.stdout)

    def test_a_wrong_answer_is_asked_for_again(self):
        done = self.lomsh(typed='(setq a (getint "Number: "))\nmany\n7\n!a\n')
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith("Command: !a\n7\n"), done.stdout)

    def test_a_script_asks_too(self):
        self.write("asks.lsp", '(setq a (getstring "Name: "))\n(setq b (getint "Number: "))\n')
        done = self.lomsh("-s", "asks.lsp", "-e", "(list a b)", typed="Ada\n5\n")
        self.assertEqual(done.returncode, GOOD, done.stdout)
        self.assertTrue(done.stdout.endswith('\n("Ada" 5)\n'), done.stdout)

    def test_a_question_that_nobody_answers_is_an_error(self):
        for words in (["--batch"], []):
            done = self.lomsh(*words, "-e", '(getstring "Name: ")')
            self.assertEqual(done.returncode, FAILED)

    def test_a_question_at_the_end_of_the_input(self):
        done = self.lomsh(typed="(setq a (read-line))")
        self.assertEqual(done.returncode, GOOD)
        self.assertIn("\nnil\n", done.stdout)

    def test_lines_that_end_as_elsewhere(self):
        done = self.lomsh(typed="(+ 1\r\n2)\r\n(read-line)\r\nanswer\r\n")
        self.assertEqual(done.returncode, GOOD)
        self.assertIn("\n3\n", done.stdout)
        self.assertIn('"answer"\n', done.stdout)

    def test_a_form_that_is_open_at_the_end(self):
        done = self.lomsh(typed="(+ 1\n")
        self.assertEqual(done.returncode, FAILED)
        self.assertIn("; error: malformed list on input", done.stdout)

    def test_the_prompt_after_scripts_when_it_is_asked_for(self):
        self.assertNotIn("7", self.lomsh("-e", "(+ 1 2)", typed="(+ 3 4)\n").stdout)
        for option in ("-i", "--interactive"):
            done = self.lomsh(option, "-e", "(+ 1 2)", typed="(+ 3 4)\n")
            self.assertEqual((done.returncode, done.stdout),
                             (GOOD, "Command: (+ 1 2)\n3\nCommand: (+ 3 4)\n7\n"))


if __name__ == "__main__":
    lomsh_test_case.take_arguments(2)
    unittest.main()
