#!/usr/bin/python3
"""Compares what lomlisp.dll exports with what the library's public headers declare.

    exports_test.py DLL COMPILER CLANG SOURCE_FOLDER

Each function and each object that the headers declare without defining it must be exported, and nothing that
they do not declare. CLANG reads the headers for the system of COMPILER, the one that made the DLL.
"""
import json
import re
import subprocess
import sys

HEADERS = ["lomlisp.h", "lisp/SlabHeap.h", "text/DebugLayout.h", "text/UpperCase.h"]
# Clang prints the declarations whose names hold one of these.
NAMES = ["CLOM", "ADS", "ResBuf", "lomlisp::"]
FUNCTIONS = {"CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl", "FunctionDecl"}


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def library_folders(compiler):
    report = subprocess.run([compiler, "-xc++", "-E", "-v", "-"], input="", check=True, capture_output=True,
                            text=True).stderr
    listed = re.search(r"#include <\.\.\.> search starts here:\n(.*?)End of search list", report, re.DOTALL)
    # The standard library's, in whose version's name Clang would not look; it finds the others by itself.
    return [folder for folder in listed.group(1).split() if "/c++" in folder]


def declarations(compiler, clang, sources):
    """The outermost declarations of the public headers, as Clang's syntax tree."""
    includes = "".join(f"#include <lomlisp/{header}>\n" for header in HEADERS)
    folders = [option for folder in library_folders(compiler) for option in ("-isystem", folder)]
    decoder = json.JSONDecoder()
    for name in NAMES:
        text = output_of(clang, "--target=x86_64-w64-windows-gnu", "-std=c++20", "-fsyntax-only", "-I", sources,
                         *folders, "-Xclang", "-ast-dump=json", "-Xclang", f"-ast-dump-filter={name}",
                         "-xc++", "-", input=includes).strip()
        while text:
            declaration, end = decoder.raw_decode(text)
            yield declaration
            text = text[end:].lstrip()


def is_defined(declaration):
    """Whether the declaration itself is all that a user needs."""
    if declaration.get("inline") or declaration.get("constexpr") or declaration.get("isImplicit"):
        return True
    if declaration.get("explicitlyDeleted") or declaration.get("explicitlyDefaulted"):
        return True
    if declaration["kind"] == "VarDecl":
        return declaration.get("storageClass") not in ("static", "extern")
    return any(part["kind"] == "CompoundStmt" for part in declaration.get("inner", []))


def walk(declaration, declared, needed):
    if declaration["kind"] in ("CXXRecordDecl", "NamespaceDecl"):
        for member in declaration.get("inner", []):
            walk(member, declared, needed)
    elif declaration["kind"] in FUNCTIONS or declaration["kind"] == "VarDecl":
        name = declaration.get("mangledName")
        if name is not None:
            declared.add(name)
            if not is_defined(declaration):
                needed.add(name)


def exported(compiler, dll):
    objdump = output_of(compiler, "-print-prog-name=objdump").strip()
    table = output_of(objdump, "-p", dll).split("[Ordinal/Name Pointer] Table", 1)[1]
    return set(re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+(?:[0-9a-f]+\s+)?)?(\S+)$", table, re.MULTILINE))


def readable(names):
    """Names as in the source, where the variants of a constructor are one."""
    return set(output_of("c++filt", input="\n".join(sorted(names))).split("\n")) - {""}


def is_of_class(name, functions):
    """Whether this is what the compiler adds to a class with such functions."""
    parts = re.fullmatch(r"(?:vtable|typeinfo|typeinfo name) for (.+)", name)
    return parts is not None and any(function.startswith(parts[1] + "::") for function in functions)


def main(dll, compiler, clang, sources):
    declared, needed = set(), set()
    for declaration in declarations(compiler, clang, sources):
        walk(declaration, declared, needed)
    found = readable(exported(compiler, dll))
    missing = readable(needed) - found
    surplus = {name for name in found - readable(declared) if not is_of_class(name, readable(declared))}
    for name in sorted(missing):
        print("declared, but not exported:", name)
    for name in sorted(surplus):
        print("exported, but not declared:", name)
    print(f"{len(found)} exports, {len(needed)} needed, {len(missing)} missing, {len(surplus)} surplus")
    # The library has hundreds of functions: fewer mean that the headers were not read.
    return 1 if missing or surplus or len(needed) < 200 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
