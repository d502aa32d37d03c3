#!/usr/bin/python3
"""Sessions at a terminal: terminal_test.py PROGRAM MODULES_FOLDER [unittest's arguments]."""
import os
import re
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

try:
    import pexpect
except ImportError:
    sys.exit("python3-pexpect is missing; run tools/setup")

PROGRAM = ""
MODULES = Path()

PROMPT = "Command: "
OPEN_PROMPT = "(_> "
SECONDS = 60  # for a session under sanitizers on a busy machine
START_SECONDS = 5  # where nothing else is done; what it should be is a tenth of that
ESCAPES = re.compile("\x1b\\[[?0-9;]*[A-Za-z]|\x07")

TAB, ENTER, ESCAPE, UP, INTERRUPT, END = "\t", "\r", "\x1b", "\x1b[A", "\x03", "\x04"
PASTE_BEGIN, PASTE_END = "\x1b[200~", "\x1b[201~"
NEW_LINE = "(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 2.0 0.0)))"
NOT_SAVED = "The drawing has changes that are not saved. QUIT again to leave it so."


class TerminalSession:
    """A running program behind a terminal."""

    def __init__(self, folder, arguments=(), term="dumb", **options):
        environment = {"PATH": os.environ["PATH"], "TERM": term, "LANG": "C.UTF-8", "HOME": str(folder / "home"),
                       "XDG_STATE_HOME": str(folder / "state"), "INPUTRC": os.devnull}
        environment.update((name, value) for name, value in os.environ.items() if name.endswith("SAN_OPTIONS"))
        self.child = pexpect.spawn(PROGRAM, list(map(str, arguments)), env=environment, cwd=str(folder),
                                   timeout=SECONDS, encoding="utf-8", dimensions=(50, 500), **options)
        self.child.delaybeforesend = None
        self.child.expect_exact(PROMPT)

    def expect(self, text):
        """What is shown before the text, without what moves the cursor. A prompt is meant that begins a line: a
        dumb terminal shows it again within the line, to point at a parenthesis."""
        if text in [PROMPT, OPEN_PROMPT]:
            self.child.expect("\r\n(?:\x1b\\[\\?2004h)?" + re.escape(text))
        else:
            self.child.expect_exact(text)
        return ESCAPES.sub("", self.child.before).replace("\r\n", "\n").replace("\r", "").replace("\x08", "")

    def type(self, keys):
        self.child.send(keys)

    def ask(self, line, prompt=PROMPT):
        """What comes between the line that is entered and the next prompt."""
        self.type(line + ENTER)
        return self.expect(prompt).partition("\n")[2].strip("\n")

    def end(self):
        """The program's status, once it has ended."""
        self.child.expect(pexpect.EOF)
        self.child.close()
        return self.child.exitstatus if self.child.signalstatus is None else -self.child.signalstatus

    def leave(self):
        self.type("QUIT" + ENTER)
        return self.end()

    def hang_up(self):
        """How the program has ended, without anything but the terminal being gone."""
        self.child.ptyproc.fileobj.close()
        self.child.ptyproc.closed = self.child.closed = True
        limit = time.monotonic() + SECONDS
        while time.monotonic() < limit:
            process, status = os.waitpid(self.child.pid, os.WNOHANG)
            if process:
                self.child.ptyproc.terminated = self.child.terminated = True
                return os.waitstatus_to_exitcode(status)
            time.sleep(0.01)
        os.kill(self.child.pid, signal.SIGKILL)
        raise AssertionError("the program goes on without a terminal")


class TerminalTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()

    def start(self, *arguments, **options):
        session = TerminalSession(self.folder, arguments, **options)
        self.addCleanup(session.child.close, force=True)
        return session

    def check(self, session, cases):
        for line, answer in cases:
            with self.subTest(line):
                self.assertEqual(session.ask(line), answer)


class Evaluation(TerminalTest):
    def test_values_are_shown(self):
        session = self.start()
        self.check(session, [("(+ 1 2)", "3"), ("(strcat \"a\" \"\\n\")", "\"a\\n\""),
                             ("(setq a '(1 . 2.5))", "(1 . 2.5)"),
                             ("!a", "(1 . 2.5)"), ("!unknown", "nil"), ("'(a b)", "(A B)"), ("(princ)", ""),
                             ("(princ \"x\")", "x\n\"x\""),
                             ("(strlen \"Größe 中\")", "7"), ("", ""), ("; nothing", "")])
        self.assertEqual(session.leave(), 0)

    def test_forms_go_on_over_lines(self):
        session = self.start()
        self.assertEqual(session.ask("(list 1", OPEN_PROMPT), "")
        self.assertEqual(session.ask("", OPEN_PROMPT), "")
        self.assertEqual(session.ask("  2 ; two)", OPEN_PROMPT), "")
        self.assertEqual(session.ask("\"a", OPEN_PROMPT), "")
        self.assertEqual(session.ask("b\")"), "(1 2 \"a\\nb\")")
        self.assertEqual(session.ask("!(list", OPEN_PROMPT), "")
        self.assertEqual(session.ask("3)"), "(3)")

    def test_errors_show_the_calls_and_keep_the_session(self):
        session = self.start()
        session.ask("(setq kept 7)")
        session.ask("(defun inner (x) (car x))")
        session.ask("(defun outer (x) (+ 1 (inner x)))")
        self.check(session, [("(outer 5)", "; error: bad argument type: consp 5\n; in: CAR INNER OUTER"),
                             ("(nothing)", "; error: no function definition: NOTHING"),
                             (")", "Unknown command \")\"."), ("!kept", "7")])
        self.assertEqual(session.leave(), 0)

    def test_the_script_s_own_error_function_is_called(self):
        session = self.start()
        session.ask("(defun *error* (text) (princ (strcat \"caught: \" text \", \" (itoa x))))")
        session.ask("(defun f (x) (/ x 0))")
        self.check(session, [("(f 4)", "caught: divide by zero, 4"), ("(setq *error* nil)", "nil")])
        self.assertIn("; error: divide by zero", session.ask("(f 4)"))

    def test_scripts_come_before_the_prompt(self):
        session = self.start("-e", "(setq a 1)", "-i")
        self.assertEqual(session.expect(PROMPT), "(setq a 1)\n1")
        self.assertEqual(session.ask("!a"), "1")

    def test_a_module_s_functions_are_called(self):
        session = self.start("-m", MODULES / "parts.so")
        self.assertIn("parts", session.ask("(arx)").lower())


class Commands(TerminalTest):
    def test_a_bare_name_calls_the_command(self):
        session = self.start()
        session.ask("(defun c:foo () (setq count (1+ (if count count 0))) (princ))")
        self.check(session, [("FOO", ""), ("foo", ""), (" Foo ", ""), ("!count", "3"), ("(c:foo)", ""), ("!count", "4"),
                             ("bar", "Unknown command \"BAR\"."), ("count", "Unknown command \"COUNT\".")])

    def test_what_stands_behind_the_name_answers_questions(self):
        session = self.start()
        session.ask("(defun c:two () (setq answers (list (read-line) (read-line))) (princ))")
        session.ask("TWO one two")
        self.assertEqual(session.ask("!answers"), "(\"one\" \"two\")")
        session.type("TWO one" + ENTER + "typed" + ENTER)
        session.expect("typed")
        session.expect(PROMPT)
        self.assertEqual(session.ask("!answers"), "(\"one\" \"typed\")")

    def test_read_line_takes_a_line(self):
        session = self.start()
        session.type("(strcat (read-line) \"!\")" + ENTER)
        session.expect("\r\n")
        session.type("some (text" + ENTER)
        session.expect("\"some (text!\"")
        session.expect(PROMPT)

    def test_help_tells_what_can_be_entered(self):
        self.assertIn("QUIT", self.start().ask("HELP"))


class Editing(TerminalTest):
    def test_history_is_kept_in_the_session_and_over_sessions(self):
        session = self.start()
        session.ask("(setq first 1)")
        session.ask("(list 10", OPEN_PROMPT)
        session.ask("20)")
        session.ask("!first")
        self.assertEqual(session.ask(UP), "1")
        self.assertEqual(session.leave(), 0)
        self.assertTrue((self.folder / "state/lomsh/history").is_file())

        session = self.start()
        session.type(UP)
        session.expect("QUIT")
        session.type(UP)
        session.expect("!first")
        session.type(UP)
        session.expect("(list 10")
        session.type(ENTER)
        session.expect("(10 20)")
        session.expect(PROMPT)
        self.assertEqual(session.leave(), 0)

    def test_a_history_that_cannot_be_written_does_no_harm(self):
        (self.folder / "state").write_text("a file where a folder should be")
        session = self.start()
        self.assertEqual(session.ask("(+ 1 1)"), "2")
        self.assertEqual(session.leave(), 0)

    def test_tab_completes_names(self):
        session = self.start()
        session.ask("(setq long-variable 5)")
        session.ask("(defun own-function () 6)")
        session.ask("(defun c:measure () 7)")
        self.check(session, [(f"(strl{TAB}\"abc\")", "3"), (f"(STRL{TAB}\"abc\")", "3"), (f"(+ 1 long-v{TAB})", "6"),
                             (f"!long-v{TAB}", "5"), (f"(own-f{TAB})", "6"), (f"meas{TAB}", "7"),
                             (f"(c:meas{TAB})", "7")])

    def test_tab_twice_shows_the_choices(self):
        session = self.start()
        session.type(f"(vl-string-s{TAB}{TAB}")
        shown = session.expect("(vl-string-s")
        shown += session.expect("(vl-string-s")
        for name in ["vl-string-search", "vl-string-subst"]:
            self.assertIn(name, shown)

    def test_tab_in_a_string_completes_file_names(self):
        (self.folder / "some-drawing.dxf").touch()
        session = self.start()
        self.assertEqual(session.ask(f"(strlen \"some-d{TAB})"), "16")

    def test_parenthesis_matching_does_not_disturb(self):
        session = self.start(term="xterm")
        for keys in ["(list (+ 1 2) '(3 (4)) \")\")", "(list (+ 1 2) '(3 (4)) \")\"" + ")"]:
            for key in keys:
                session.type(key)
            self.assertEqual(session.ask(""), "(3 (3 (4)) \")\")")

    def test_pasted_lines_wait_for_enter_and_are_entered_one_by_one(self):
        session = self.start(term="xterm")
        session.ask("(defun c:ask () (setq answer (read-line)) (princ))")
        text = "(setq a 1)\n(list a\n 2)\n!a\nASK\nan answer\n"
        session.type(PASTE_BEGIN + text + PASTE_END)
        session.expect("an answer")
        session.type(INTERRUPT)
        session.expect(PROMPT)
        self.assertEqual(session.ask("!a"), "nil")
        session.type(PASTE_BEGIN + text + PASTE_END + ENTER)
        session.expect("(1 2)")
        session.expect(PROMPT + "!a")
        session.expect(PROMPT + "ASK")
        session.expect(PROMPT)
        self.assertEqual(session.ask("!answer"), "\"an answer\"")


class Interrupts(TerminalTest):
    def interrupt(self, session):
        session.type(INTERRUPT)
        return session.expect(PROMPT)

    def test_at_the_prompt_the_line_is_dropped(self):
        for term in ["dumb", "xterm"]:
            session = self.start(term=term)
            session.ask("(setq kept 7)")
            session.type("(setq kept 8)")
            session.expect("(setq kept 8)")
            self.interrupt(session)
            self.interrupt(session)
            self.interrupt(session)
            self.interrupt(session)
            self.assertEqual(session.ask("!kept"), "7")
            self.assertEqual(session.leave(), 0)

    def test_in_an_open_form_all_of_it_is_dropped(self):
        session = self.start()
        session.ask("(setq kept 7", OPEN_PROMPT)
        session.type("more")
        session.expect("more")
        self.assertEqual(self.interrupt(session).strip(), "^C")
        self.assertEqual(session.ask("!kept"), "nil")

    def test_behind_an_escape_key_and_in_a_search(self):
        session = self.start()
        session.ask("(setq kept 7)")
        session.type("abc" + ESCAPE)
        session.expect("abc")
        self.interrupt(session)
        session.type("\x12kep")
        session.expect("kep")
        self.interrupt(session)
        self.assertEqual(session.ask("!kept"), "7")

    def test_an_evaluation_ends(self):
        session = self.start()
        session.ask("(setq kept 7)")
        for form in ["(while T)", "(repeat 2000000000)",
                     "(mapcar '(lambda (x) (while T)) '(1 2))"]:
            with self.subTest(form):
                session.type(f"(progn (princ \"begun\\n\") {form})" + ENTER)
                session.expect("begun\r\n")
                self.assertIn("\n; error: Function cancelled", self.interrupt(session))
                self.assertEqual(session.ask("!kept"), "7")
        self.assertEqual(session.leave(), 0)

    def test_a_question_is_no_way_round(self):
        session = self.start()
        session.type("(while T (princ \"name?\\n\") (read-line))" + ENTER)
        session.expect("name?\r\n")
        session.type("one" + ENTER)
        session.expect("name?\r\n")
        self.assertIn("; error: Function cancelled", self.interrupt(session))
        self.assertEqual(session.ask("(+ 1 1)"), "2")


class Leaving(TerminalTest):
    def test_the_end_of_input_ends_the_session(self):
        session = self.start()
        session.type(END)
        self.assertEqual(session.end(), 0)

    def test_the_end_of_input_in_an_open_form_is_an_error_of_that_form(self):
        session = self.start()
        session.ask("(list 1", OPEN_PROMPT)
        session.type(END)
        self.assertIn("; error: malformed list on input", session.expect(PROMPT))
        self.assertEqual(session.leave(), 0)

    def test_an_error_of_the_user_is_no_failure(self):
        session = self.start()
        session.ask("(car 1)")
        self.assertEqual(session.leave(), 0)

    def test_changes_that_are_not_saved_are_asked_about(self):
        for keys in ["QUIT" + ENTER, "exit" + ENTER, END]:
            with self.subTest(keys):
                session = self.start()
                session.ask(NEW_LINE)
                session.type(keys)
                session.expect(NOT_SAVED)
                session.expect(PROMPT)
                self.assertEqual(session.ask("(+ 1 1)"), "2")
                session.type(keys)
                session.expect(NOT_SAVED)
                session.expect(PROMPT)
                session.type(keys)
                self.assertEqual(session.end(), 0)

    def test_saved_changes_are_not_asked_about(self):
        session = self.start()
        session.ask(NEW_LINE)
        session.ask("(save-drawing \"saved.dxf\")")
        self.assertEqual(session.leave(), 0)
        self.assertTrue((self.folder / "saved.dxf").is_file())

    def test_a_terminal_that_hangs_up_ends_the_program(self):
        session = self.start()
        session.ask(NEW_LINE)
        self.assertEqual(session.hang_up(), -signal.SIGHUP)

        session = self.start()
        session.type("(progn (princ \"begun\\n\") (while T))" + ENTER)
        session.expect("begun\r\n")
        self.assertEqual(session.hang_up(), -signal.SIGHUP)

    def test_who_ignores_the_hang_up_gets_the_end_of_input(self):
        session = self.start(ignore_sighup=True)
        session.ask(NEW_LINE)
        self.assertGreaterEqual(session.hang_up(), 0)


class Transcripts(TerminalTest):
    def test_the_transcript_has_what_was_typed_and_shown(self):
        session = self.start("--transcript", "transcript.txt")
        session.ask("(setq a", OPEN_PROMPT)
        session.ask(" 5)")
        session.ask("!a")
        session.ask("nothing")
        session.ask("(car a)")
        session.type("(read-line)" + ENTER)
        session.expect("\r\n")
        session.ask("typed")
        self.assertEqual(session.leave(), 0)
        self.assertEqual((self.folder / "transcript.txt").read_text(encoding="utf-8"),
                         "Command: (setq a\n(_>  5)\n5\nCommand: !a\n5\nCommand: nothing\n"
                         "Unknown command \"NOTHING\".\n"
                         "Command: (car a)\n; error: bad argument type: consp 5\n; in: CAR\n"
                         "Command: (read-line)\ntyped\n\"typed\"\nCommand: QUIT\n")


class Start(TerminalTest):
    def seconds(self, action):
        begin = time.monotonic()
        action()
        return time.monotonic() - begin

    def test_the_prompt_is_soon_there(self):
        starts, interpreters = [], []
        for _ in range(5):
            session = []
            starts.append(self.seconds(lambda: session.append(self.start())))
            session[0].leave()
            interpreters.append(self.seconds(
                lambda: subprocess.run(["ecl", "--norc", "--eval", "(ext:quit)"], check=True, capture_output=True)))
        start, interpreter = statistics.median(starts), statistics.median(interpreters)
        print(f"start to prompt: {start:.2f} s, {start / interpreter:.1f} times ecl's {interpreter:.2f} s")
        self.assertLess(start, START_SECONDS)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    PROGRAM, MODULES = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2]).resolve()
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
