#!/usr/bin/python3
"""Compares what the debuggers' views know of the library with its headers: types, group codes, members."""
import ast
import itertools
import pathlib
import re
import unittest
import xml.etree.ElementTree as xml

ROOT = pathlib.Path(__file__).resolve().parents[2]
NATVIS = ROOT / "debuggers" / "lomlisp.natvis"
HEADERS = ["platform/ads.h", "platform/suite.h", "resbuf/ResBuf.h", "resbuf/ADSList.h", "lisp/CLOMLispElement.h",
           "lisp/CLOMAdsLispVar.h", "lisp/ChildSeq.h"]
NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"

# The elements of the documented schema that serve here, with their attributes and what may be in them.
SCHEMA = {
    "AutoVisualizer": ([], ["Type"]),
    "Type": (["Name", "Priority"], ["AlternativeType", "Intrinsic", "DisplayString", "StringView", "Expand"]),
    "AlternativeType": (["Name"], []),
    "Intrinsic": (["Name", "Expression"], []),
    "DisplayString": (["Condition", "IncludeView", "ExcludeView"], []),
    "StringView": (["Condition"], []),
    "Expand": ([], ["Item", "Synthetic", "ArrayItems", "LinkedListItems", "ExpandedItem"]),
    "Item": (["Name", "Condition"], []),
    "Synthetic": (["Name", "Condition"], ["DisplayString", "Expand"]),
    "ArrayItems": (["Condition"], ["Size", "ValuePointer"]),
    "LinkedListItems": (["Condition"], ["HeadPointer", "NextPointer", "ValueNode"]),
    "ExpandedItem": (["Condition"], []),
    "Size": ([], []),
    "ValuePointer": ([], []),
    "HeadPointer": ([], []),
    "NextPointer": ([], []),
    "ValueNode": ([], []),
}
FORMATS = {"d", "x", "g", "su"}
# A shared pointer's, in Microsoft's standard library.
STANDARD_MEMBERS = {"_Ptr", "_Rep", "_Uses"}
WORDS = {"this", "int", "std", "shared_ptr", "u"}

# As if the library were an archive, which exports nothing.
header_text = "\n".join((ROOT / "lomlisp" / name).read_text() for name in HEADERS).replace("LOMLISP_API ", "")
views = {statement.targets[0].id: ast.literal_eval(statement.value)
         for statement in ast.parse((ROOT / "debuggers" / "lomlisp_gdb.py").read_text()).body
         if isinstance(statement, ast.Assign) and statement.targets[0].id in ("RESULT_TYPES", "DXF_RANGES")}
natvis = xml.parse(NATVIS).getroot()


def tag(element):
    return element.tag.removeprefix(NAMESPACE)


def of_kind(kind, within=natvis):
    return list(within.iter(NAMESPACE + kind))


def base_type(code):
    for first, last, name in views["DXF_RANGES"]:
        if first <= code <= last:
            return name
    return views["RESULT_TYPES"].get(code)


def expressions():
    """Every expression, with its type's element."""
    for each in of_kind("Type"):
        for element in each.iter():
            for attribute in ("Condition", "Expression"):
                if attribute in element.attrib:
                    yield each, element.get(attribute)
            if tag(element) == "DisplayString":
                for inner in re.findall(r"\{(.*?)\}", element.text):
                    yield each, inner
            elif len(element) == 0 and element.text:
                yield each, element.text


def without_format(expression):
    return re.sub(r",(view\(\w+\)|\w+)$", "", expression)


def declared_members():
    code = re.sub(r"//.*", "", header_text)
    return set(re.findall(r"\b(\w+)(?:\[\d\])?(?: = [^;,()]+|\{\})?;", code))


class Tables(unittest.TestCase):
    def test_result_types_are_those_of_the_header(self):
        declared = re.findall(r"constexpr short (RT\w+) = (\d+);", header_text)
        self.assertEqual({int(code): name for name, code in declared}, views["RESULT_TYPES"])

    def test_group_codes_are_those_of_the_header(self):
        table = header_text.split("kDxfRanges[] = {")[1].split("};")[0]
        declared = re.findall(r"\{(-?\d+), (-?\d+), (RT\w+)\}", table)
        self.assertEqual([(int(first), int(last), name) for first, last, name in declared], views["DXF_RANGES"])


class Natvis(unittest.TestCase):
    def test_elements_are_those_of_the_schema(self):
        self.assertEqual(tag(natvis), "AutoVisualizer")
        for element in natvis.iter():
            attributes, children = SCHEMA[tag(element)]
            self.assertLessEqual(set(element.attrib), set(attributes), element.attrib)
            self.assertLessEqual({tag(child) for child in element}, set(children))

    def test_types_are_declared(self):
        for name in (each.get("Name") for each in of_kind("Type")):
            for word in re.findall(r"[A-Z]\w+|resbuf", name):
                self.assertRegex(header_text, rf"\b(class|struct) {word}\b(?!;)")

    def test_members_are_declared(self):
        members = declared_members()
        self.assertLessEqual({"restype", "rlname", "m_block", "start", "deleteMode", "m_element"}, members)
        classes = set(re.findall(r"\b(?:class|struct) (\w+)", header_text))
        for each, expression in expressions():
            known = members | classes | WORDS | STANDARD_MEMBERS
            known |= {intrinsic.get("Name") for intrinsic in of_kind("Intrinsic", each)}
            for word in re.findall(r"\b[A-Za-z_]\w*", without_format(expression)):
                self.assertIn(word, known, expression)

    def test_formats_and_views_exist(self):
        used = {match for _, expression in expressions() for match in re.findall(r",(\w+)$", expression)}
        self.assertEqual(used, FORMATS)
        offered = {view for string in of_kind("DisplayString") for attribute in ("IncludeView", "ExcludeView")
                   if (view := string.get(attribute))}
        asked = {match for _, expression in expressions() for match in re.findall(r",view\((\w+)\)", expression)}
        # "record" is a record as it is, whatever the view of the chain.
        self.assertEqual(asked - {"record"}, offered - {"chain6"})

    def test_brackets_match(self):
        for _, expression in expressions():
            self.assertEqual(expression.count("("), expression.count(")"), expression)

    def test_each_code_has_the_string_of_its_type(self):
        kinds = {"RTREAL": "IsReal", "RTANG": "IsReal", "RTORINT": "IsReal", "RTPOINT": "IsFlatPoint",
                 "RT3DPOINT": "IsPoint", "RTSHORT": "IsShort", "RTLONG": "IsLong", "RTINT64": "IsInt64",
                 "RTSTR": "IsText", "RTDXF0": "IsText", "RTENAME": "IsName", "RTPICKS": "IsSet"}
        record = next(each for each in of_kind("Type") if each.get("Name") == "resbuf")
        tests = {each.get("Name"): each.get("Expression") for each in of_kind("Intrinsic", record)}
        constants = set(re.findall(r"^restype == (\d+)$", "\n".join(
            string.get("Condition", "") for string in of_kind("DisplayString", record)), re.MULTILINE))
        self.assertEqual({int(code) for code in constants},
                         {code for code, name in views["RESULT_TYPES"].items() if name not in kinds})
        for code in itertools.chain(range(-40, 1200), range(4990, 5050)):
            holding = {name for name in tests if name != "IsGroup" and evaluated(tests, name, code)}
            base = base_type(code)
            self.assertEqual(holding, {kinds[base]} if base in kinds else set(), code)
            is_group = any(first <= code <= last for first, last, _ in views["DXF_RANGES"])
            self.assertEqual(evaluated(tests, "IsGroup", code), is_group, code)


def evaluated(tests, name, code):
    expression = " ".join(tests[name].split()).replace("&&", "and").replace("||", "or")
    calls = {other: (lambda other=other: evaluated(tests, other, code)) for other in tests}
    return eval(expression, {"restype": code, **calls})


if __name__ == "__main__":
    unittest.main()
