#!/usr/bin/python3
"""Compiles the library's public headers, each alone, against the stand-ins, and what these must refuse.

    compile_test.py SOURCE_FOLDER COMPILER [OPTION...]
"""
import pathlib
import re
import subprocess
import sys
import unittest

SOURCES = pathlib.Path(sys.argv[1])
COMMAND = sys.argv[2:] + ["-fsyntax-only", "-I", str(SOURCES), "-xc++", "-"]
STAND_INS = ["adslib.h", "rxregsvc.h"]

# Each line alone is a function's body. What the library's own classes would allow, or a host without such macros, is
# refused here; a compiler's message names the line.
FRAME = """#include <lomlisp/lomlisp.h>
#define ARGUMENTS CString& text, CStringArray& texts, CArray<CLOMAdsLispVar, CLOMAdsLispVar&>& values, resbuf& record
"""
TAKEN = [
    "(void)text.GetLength();",
    "texts.Add(text);",
    "values.SetSize(1);",
    "acad_free(record.resval.rbinary.buf);",
    "auto least = (std::min)(1, 2); (void)least;",
]
REFUSED = [
    "(void)text.size();",
    "(void)text.c_str();",
    "text = std::wstring();",
    "auto copy = values;",
    "texts = CStringArray();",
    "CArray<CString, const CString&>& same = texts;",
    "auto least = std::min(1, 2);",
    "int near = 1;",
    "int small = 1;",
    "void (*release)(void*) = acad_free;",
    "static_assert(std::is_same_v<decltype(RTSTR), const short>);",
    "(void)record.resval.rlname.size();",
]


def errors_of(source):
    return subprocess.run(COMMAND, input=source, capture_output=True, text=True).stderr


def refused(statements):
    """Those of the statements in which the compiler sees an error."""
    lines = [f"void Use{i}(ARGUMENTS) {{ {statement} }}" for i, statement in enumerate(statements)]
    errors = errors_of(FRAME + "\n".join(lines) + "\n")
    first = FRAME.count("\n") + 1
    return [statements[line - first] for line in
            sorted({int(line) for line in re.findall(r"<stdin>:(\d+):\d+: error:", errors)})]


def public_headers():
    includes = (SOURCES / "lomlisp/lomlisp.h").read_text()
    platform = [f"lomlisp/platform/{header.name}" for header in SOURCES.glob("lomlisp/platform/*.h")]
    return sorted({"lomlisp/lomlisp.h", *platform, *re.findall(r"#include <(lomlisp/.*)>", includes)})


class Headers(unittest.TestCase):
    def check(self, includes):
        self.assertEqual(errors_of("".join(f"#include <{name}>\n" for name in includes)), "")

    def test_each_alone_and_in_front_of_the_host(self):
        for header in public_headers():
            with self.subTest(header):
                self.check([header] + STAND_INS)

    def test_behind_the_host_and_mfc(self):
        public = ["lomlisp/lomlisp.h", "lomlisp/platform/modules.h"]
        self.check(["afx.h"] + STAND_INS + public)
        self.check(["afxtempl.h", "afxdisp.h", "afxcoll.h"] + public + STAND_INS)


class Refusals(unittest.TestCase):
    def test_the_stand_ins_take_what_they_have_and_nothing_else(self):
        self.assertEqual(refused(TAKEN + REFUSED), REFUSED)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
