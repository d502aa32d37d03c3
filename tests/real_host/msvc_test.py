#!/usr/bin/python3
"""Compiles the library and the example modules as much like MSVC as Clang can: for Windows, with MSVC's language and
predefined macros, with what corresponds to its warnings of level 4, against the system's real headers and the
stand-ins for MFC's and the host's. Any finding fails.

    msvc_test.py CLANG MINGW_COMPILER SOURCE_FOLDER
"""
import pathlib
import re
import subprocess
import sys
import unittest

CLANG, MINGW, SOURCES = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
HERE = SOURCES / "tests/real_host"
LANGUAGE = [
    "--target=x86_64-w64-windows-gnu", "-std=c++20", "-fms-extensions", "-fms-compatibility",
    "-fms-compatibility-version=19.38",
    # The system's headers here are for a compiler that knows GNU's extensions, and that is not MSVC.
    "-fgnuc-version=12.2", "-U_MSC_VER", "-U_MSC_FULL_VER", "-U_MSC_BUILD",
]
WARNINGS = [
    "-Werror", "-ferror-limit=0", "-Wall", "-Wextra", "-Wpedantic",
    # What MSVC does otherwise, and what it takes although it is none of the language.
    "-Wmicrosoft", "-Wgnu", "-Wdll-attribute-on-redeclaration",
    "-Winconsistent-dllimport", "-Wcast-qual",
    # C4244, C4245, C4267, C4305, C4365 and C4838.
    "-Wconversion", "-Wsign-conversion", "-Wshorten-64-to-32", "-Wsign-compare",
    # C4456 to C4459.
    "-Wshadow-all",
    # C4061, C4062, C4065, C4100, C4101, C4189, C4263, C4265, C4505, C4668, C4702.
    "-Wswitch", "-Wunused", "-Woverloaded-virtual", "-Wnon-virtual-dtor", "-Wundef", "-Wunreachable-code",
    "-Wold-style-cast", "-Wextra-semi",
    # __int64 is a keyword there.
    "-Wno-language-extension-token",
]
MACROS = [
    "LOMLISP_HOST_SDK", "LOMLISP_HOST_HEADER=<adslib.h>", "LOMLISP_HOST_MODULE_HEADER=<rxregsvc.h>",
    "__STRICT_ANSI__", "LOMLISP_MFC", "UNICODE", "_UNICODE", "LOMLISP_SHARED", "LOMLISP_BUILDING",
    # C4996: functions of the run-time library that MSVC warns of.
    "__MINGW_MSVC_COMPAT_WARNINGS",
]


def library_folders():
    report = subprocess.run([MINGW, "-xc++", "-E", "-v", "-"], input="", check=True, capture_output=True,
                            text=True).stderr
    listed = re.search(r"#include <\.\.\.> search starts here:\n(.*?)End of search list", report, re.DOTALL)
    return [folder for folder in listed.group(1).split() if "/c++" in folder]


def findings(source):
    system = library_folders() + [str(HERE / "sdk"), str(HERE / "mfc")]
    command = [CLANG, *LANGUAGE, *WARNINGS, "-fsyntax-only", "-I", str(SOURCES)]
    command += [option for folder in system for option in ("-isystem", folder)]
    command += [f"-D{macro}" for macro in MACROS] + ["-xc++", "-"]
    result = subprocess.run(command, input=source, capture_output=True, text=True)
    found = re.findall(r".*(?:error|warning): .*", result.stderr)
    if not found and result.returncode != 0:
        return [result.stderr]
    # Of these the headers warn, but not MSVC.
    return [line for line in found if not re.search(r"'(w?mem(cpy|move)|hypot)' is deprecated", line)]


def includes(files):
    return "".join(f"#include <{file.relative_to(SOURCES)}>\n" for file in sorted(files))


class Msvc(unittest.TestCase):
    def test_library(self):
        for folder in sorted(path for path in (SOURCES / "lomlisp").iterdir() if path.is_dir()):
            with self.subTest(folder.name):
                self.assertEqual(findings(includes(folder.glob("*.cpp")) or includes(folder.glob("*.h"))), [])

    def test_examples(self):
        for folder in ["parts", "plan"]:
            with self.subTest(folder):
                self.assertEqual(findings(includes((SOURCES / "examples" / folder).glob("*.cpp"))), [])

    def test_what_msvc_would_not_take_is_found(self):
        for source in ["int f(int n) { return n ?: 1; }\n", "void f(int n) { int a[n]; (void)a; }\n",
                       "int f() { return ({ 1; }); }\n", "typeof(1) a = 1;\n",
                       "int f(long long n) { return n; }\n", "unsigned int f(int n) { return n; }\n",
                       "struct S { int n; void f(int n) { (void)n; } };\n", "struct S { struct { int n; }; };\n",
                       "#include <cwchar>\nvoid f(wchar_t* text) { std::wcscpy(text, L\"\"); }\n"]:
            with self.subTest(source):
                self.assertNotEqual(findings(source), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
