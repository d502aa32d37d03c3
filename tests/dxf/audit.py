#!/usr/bin/python3
"""Looks at what was saved with another program: tests/dxf/audit.py [--changed] IN OUT

IN and OUT are files or folders; for each IN/x.dxf there must be OUT/x.dxf and OUT/x.binary.dxf, or with
--changed for each OUT/x.dxf the IN/x.dxf that it was. Fails when
ezdxf finds an error in what is in OUT that it does not find in what is in IN, and when a section has not the
same groups in the same order with the same values. Comments and $HANDSEED may differ, and with --changed, when
OUT was worked on, everything. The groups are read here,
by the numbering of the format alone, so that nothing is put right on the way.
"""
import functools
import re
import struct
import sys
from pathlib import Path

try:
    import ezdxf
except ImportError:
    sys.exit("python3-ezdxf is missing; run tools/setup")

SENTINEL = 22  # bytes before the first tag of a binary file
REAL, INTEGER, HANDLE, BINARY, TEXT = range(5)
# Up to this code, from the one before on: the kind, and in binary files the format of it.
KINDS = [(9, TEXT, None), (59, REAL, "<d"), (79, INTEGER, "<h"), (89, TEXT, None), (99, INTEGER, "<i"),
         (109, TEXT, None), (149, REAL, "<d"), (159, TEXT, None), (169, INTEGER, "<q"), (179, INTEGER, "<h"),
         (209, TEXT, None), (239, REAL, "<d"), (269, TEXT, None), (289, INTEGER, "<h"), (299, INTEGER, "<B"),
         (309, TEXT, None), (319, BINARY, None), (369, HANDLE, None), (389, INTEGER, "<h"), (399, HANDLE, None),
         (409, INTEGER, "<h"), (419, TEXT, None), (429, INTEGER, "<i"), (439, TEXT, None), (459, INTEGER, "<i"),
         (469, REAL, "<d"), (479, TEXT, None), (481, HANDLE, None), (1003, TEXT, None), (1004, BINARY, None),
         (1009, TEXT, None), (1059, REAL, "<d"), (1070, INTEGER, "<h"), (1071, INTEGER, "<i")]


@functools.cache
def kind_of(code):
    return next((kind, form) for last, kind, form in KINDS if code <= last)


def ascii_tags(data):
    lines = re.split(b"\r\n|\n|\r", data)
    for code, value in zip(lines[0::2], lines[1::2]):
        kind = kind_of(int(code))[0]
        read = {REAL: float, INTEGER: int, HANDLE: lambda text: int(text, 16), BINARY: bytes.upper, TEXT: bytes}
        yield int(code), read[kind](value)


def binary_tags(data):
    at = SENTINEL
    short_codes = data[at + 1] != 0
    while at < len(data):
        width = 1 if short_codes and data[at] != 255 else 2
        at += short_codes and data[at] == 255
        code = int.from_bytes(data[at:at + width], "little")
        at += width
        kind, form = kind_of(code)
        if form:
            yield code, struct.unpack_from(form, data, at)[0]
            at += struct.calcsize(form)
        elif kind == BINARY:
            yield code, data[at + 1:at + 1 + data[at]].hex().upper().encode()
            at += 1 + data[at]
        else:
            end = data.index(0, at)
            yield code, int(data[at:end], 16) if kind == HANDLE else data[at:end]
            at = end + 1


def character(match):
    return chr(int(match[1], 16))


def read_text(text, coding):
    """What a text stands for: the surrogates of a pair are joined, and a caret is what it stands for."""
    text = text.decode(coding, "surrogateescape")
    if "\\" not in text and "^" not in text:
        return text
    text = re.sub(r"\\U\+([0-9A-Fa-f]{4})", character, text)
    for letter, control in zip("IJM", "\t\n\r"):
        text = text.replace("^" + letter, control)
    return text.encode("utf-16", "surrogatepass").decode("utf-16", "surrogatepass")


def read_tags(path):
    data = path.read_bytes()
    is_binary = data[:SENTINEL].endswith(b"\r\n\x1a\0")
    tags = [tag for tag in (binary_tags if is_binary else ascii_tags)(data) if tag[0] != 999]
    facts = {name: tags[index + 1][1] for index, (code, name) in enumerate(tags[:2000]) if code == 9}
    page = facts.get(b"$DWGCODEPAGE", b"ANSI_1252").decode().lower().replace("ansi_", "cp")
    coding = page if facts[b"$ACADVER"] < b"AC1021" else "utf-8"
    return [(code, read_text(value, coding) if isinstance(value, bytes) else value) for code, value in tags]


@functools.cache
def read_file(path):
    return without_next_handle(read_tags(path))


def without_next_handle(tags):
    return [tag for before, tag in zip([None] + tags, tags) if before != (9, "$HANDSEED")]


def compare(old, new):
    """The first difference, or nothing."""
    old, new = read_file(old), read_file(new)
    for index, (one, other) in enumerate(zip(old, new)):
        if one != other or (one[1] == 0 and repr(one) != repr(other)):  # 0.0 and -0.0 are equal
            return f"group {index + 1}: {one} became {other}, behind {old[max(index - 3, 0):index]}"
    return None if len(old) == len(new) else f"{len(old)} groups became {len(new)}"


@functools.cache
def errors_of(path):
    return {(error.code, error.message) for error in ezdxf.readfile(path).audit().errors}


def check(old, new, is_changed):
    problems = [f"error {code}: {message}" for code, message in sorted(errors_of(new) - errors_of(old))]
    difference = None if is_changed else compare(old, new)
    return problems + ([difference] if difference else [])


def main(old, new, is_changed):
    pairs = [(old, new)]
    if old.is_dir() and is_changed:
        pairs = [(old / path.name, path) for path in sorted(new.glob("*.dxf"))]
    elif old.is_dir():
        pairs = [(path, (new / path.name).with_suffix(suffix))
                 for path in sorted(old.glob("*.dxf")) for suffix in (".dxf", ".binary.dxf")]
    failed = [f"{two}: {problem}" for one, two in pairs for problem in check(one, two, is_changed)]
    print(f"{len(pairs)} files, {len(failed)} problems")
    return "\n".join(failed) if failed or not pairs else 0


if __name__ == "__main__":
    files = [argument for argument in sys.argv[1:] if argument != "--changed"]
    if len(files) != 2:
        sys.exit(__doc__)
    sys.exit(main(Path(files[0]), Path(files[1]), "--changed" in sys.argv))
