"""How GDB shows LISP values, chains of records and single records. Load it with

    (gdb) source lomlisp_gdb.py

A value is its LISP text, its kind and the number of its owners, and has its members as children:

    (gdb) print sizes
    $1 = ("S" 36.5) [list of 2, 2 owners] = {"S" [RTSTR, 1 owner], 36.5 [RTREAL, 1 owner]}

No more is read of a value than GDB's `print elements` and `print max-depth` allow, and what cannot be read, or
makes no sense, is told in angle brackets where it stands. GDB 13 or newer; programs with libstdc++.
"""
import itertools

import gdb
import gdb.printing

RESULT_TYPES = {
    5000: "RTNONE", 5001: "RTREAL", 5002: "RTPOINT", 5003: "RTSHORT", 5004: "RTANG", 5005: "RTSTR",
    5006: "RTENAME", 5007: "RTPICKS", 5008: "RTORINT", 5009: "RT3DPOINT", 5010: "RTLONG", 5014: "RTVOID",
    5016: "RTLB", 5017: "RTLE", 5018: "RTDOTE", 5019: "RTNIL", 5020: "RTDXF0", 5021: "RTT", 5031: "RTINT64",
}

# First code, last code, and the result type of their values.
DXF_RANGES = [
    (-5, -5, "RTENAME"), (-4, -4, "RTSTR"), (-3, -3, "RTSHORT"), (-2, -1, "RTENAME"),
    (0, 9, "RTSTR"), (10, 19, "RT3DPOINT"), (20, 59, "RTREAL"), (60, 79, "RTSHORT"),
    (90, 99, "RTLONG"), (100, 102, "RTSTR"), (105, 105, "RTSTR"), (110, 112, "RT3DPOINT"),
    (113, 149, "RTREAL"), (160, 169, "RTINT64"), (170, 179, "RTSHORT"), (210, 219, "RT3DPOINT"),
    (220, 239, "RTREAL"), (270, 299, "RTSHORT"), (300, 319, "RTSTR"), (320, 369, "RTENAME"),
    (370, 389, "RTSHORT"), (390, 399, "RTENAME"), (400, 409, "RTSHORT"), (410, 419, "RTSTR"),
    (420, 429, "RTLONG"), (430, 439, "RTSTR"), (440, 459, "RTLONG"), (460, 469, "RTREAL"),
    (470, 479, "RTSTR"), (480, 481, "RTENAME"), (999, 1009, "RTSTR"), (1010, 1019, "RT3DPOINT"),
    (1020, 1059, "RTREAL"), (1060, 1070, "RTSHORT"), (1071, 1071, "RTLONG"),
]

# What "unlimited" means here: there may be no end to damaged memory.
MOST_ELEMENTS = 2000
MOST_LEVELS = 100


def plain_type(value_type):
    return value_type.strip_typedefs().unqualified()


class Damage(Exception):
    """What is in memory cannot be a value."""


UNREADABLE = (gdb.error, Damage)


def elements():
    return min(gdb.print_options()["max_elements"] or MOST_ELEMENTS, MOST_ELEMENTS)


def levels():
    chosen = gdb.print_options()["max_depth"]
    return min(chosen, MOST_LEVELS) if chosen >= 0 else MOST_LEVELS


# --- Records ---


def is_group(code):
    return any(first <= code <= last for first, last, _ in DXF_RANGES)


def base_type(code):
    """The name of the result type of a record's value; None for a type that there is not."""
    for first, last, name in DXF_RANGES:
        if first <= code <= last:
            return name
    return RESULT_TYPES.get(code)


def kind_of_record(record):
    code = int(record["restype"])
    base = base_type(code) or "unknown"
    return f"group {code}, {base}" if is_group(code) else base


def decoded(units, width):
    if width == 2:
        return b"".join(unit.to_bytes(2, "little") for unit in units).decode("utf-16-le", "surrogatepass")
    return "".join(chr(unit) if unit <= 0x10FFFF else "\N{REPLACEMENT CHARACTER}" for unit in units)


def escaped(character):
    if character in "\"\\":
        return "\\" + character
    return character if character.isprintable() else character.encode("unicode_escape").decode()


def showable(text):
    """The text with escapes for what the terminal's encoding does not have: GDB would refuse all of it."""
    try:
        return text.encode(gdb.host_charset(), "backslashreplace").decode(gdb.host_charset())
    except LookupError:
        return text.encode("ascii", "backslashreplace").decode()


def text_of(characters):
    """Zero-terminated wide text in quotes; wchar_t may have 16 bits or 32."""
    if int(characters) == 0:
        return "<no text>"
    width = characters.type.target().sizeof
    units = []
    end = "..."
    try:
        for index in range(elements()):
            unit = int(characters[index]) % (1 << 8 * width)
            if unit == 0:
                end = ""
                break
            units.append(unit)
    except gdb.error as error:
        end = f"<{error}>"
    return showable('"' + "".join(map(escaped, decoded(units, width))) + '"') + end


def point_of(coordinates, dimensions):
    return "(" + " ".join(repr(float(coordinates[i])) for i in range(dimensions)) + ")"


def name_of(words, what):
    return f"<{what}: {int(words[0]) % (1 << 64):x}>"


def real_of(value):
    return repr(float(value["rreal"]))


VALUE_TEXTS = {
    "RTREAL": real_of,
    "RTANG": real_of,
    "RTORINT": real_of,
    "RTPOINT": lambda value: point_of(value["rpoint"], 2),
    "RT3DPOINT": lambda value: point_of(value["rpoint"], 3),
    "RTSHORT": lambda value: str(int(value["rint"])),
    "RTLONG": lambda value: str(int(value["rlong"])),
    "RTINT64": lambda value: str(int(value["mnInt64"])),
    "RTSTR": lambda value: text_of(value["rstring"]),
    "RTDXF0": lambda value: text_of(value["rstring"]),
    "RTENAME": lambda value: name_of(value["rlname"], "Entity name"),
    "RTPICKS": lambda value: name_of(value["rlname"], "Selection set"),
    "RTLB": lambda value: "(",
    "RTLE": lambda value: ")",
    "RTDOTE": lambda value: ".",
    "RTNIL": lambda value: "nil",
    "RTT": lambda value: "T",
}


def value_text(record):
    code = int(record["restype"])
    base = base_type(code)
    if base is None:
        return f"<type {code}>"
    return VALUE_TEXTS[base](record["resval"]) if base in VALUE_TEXTS else base


def record_text(record):
    """A record among others: a group with its code, as LISP has it."""
    code = int(record["restype"])
    text = value_text(record)
    if not is_group(code):
        return text
    return f"({code} {text[1:]}" if base_type(code) == "RT3DPOINT" else f"({code} . {text})"


class RecordPrinter:
    def __init__(self, record):
        self.record = record

    def to_string(self):
        try:
            return f"{value_text(self.record)} [{kind_of_record(self.record)}]"
        except UNREADABLE as error:
            return f"<{error}>"


# --- Chains of records ---


def records(first):
    """The records of a chain, one by one; raises where it breaks, and where it becomes a ring."""
    positions = {}
    while int(first) != 0:
        position = positions.setdefault(int(first), len(positions))
        if position != len(positions) - 1:
            raise Damage(f"back at [{position}]")
        following = first["rbnext"]
        following.fetch_lazy()
        yield first.dereference()
        first = following


def spaced(pieces):
    """The pieces with blanks between, but not within brackets."""
    text = ""
    for piece, following in itertools.zip_longest(pieces, pieces[1:]):
        text += piece if piece == "(" or following in (")", None) else piece + " "
    return text


def chain_text(first):
    pieces = []
    try:
        for record in records(first):
            if len(pieces) == elements():
                pieces.append("...")
                break
            pieces.append(record_text(record))
    except UNREADABLE as error:
        pieces.append(f"<{error}>")
    return spaced(pieces) or "nil"


def chain_children(first):
    position = 0
    try:
        for record in itertools.islice(records(first), MOST_ELEMENTS):
            yield f"[{position}]", record
            position += 1
    except UNREADABLE as error:
        yield f"[{position}]", f"<{error}>"


class ChainPrinter:
    """A pointer to a record: the chain that begins there."""

    def __init__(self, first):
        self.first = first
        # A front end shows the text only of what has no children.
        if int(first) != 0:
            self.children = lambda: chain_children(first)

    def to_string(self):
        return f"{int(self.first):#x}: {chain_text(self.first)}" if int(self.first) != 0 else "nil"

    def display_hint(self):
        return "array" if int(self.first) != 0 else None


class ListPrinter:
    """A cursor over a chain."""

    def __init__(self, cursor):
        self.cursor = cursor

    def first(self):
        start = self.cursor["start"]
        return start["rbnext"] if int(start) else start

    def to_string(self):
        try:
            return f"{chain_text(self.first())} [{self.description()}]"
        except UNREADABLE as error:
            return f"<{error}>"

    def description(self):
        name = plain_type(self.cursor.type).name
        size, place = self.size_and_place()
        return f"{name} of {size}, cursor at {place}{self.ownership()}"

    def size_and_place(self):
        current = int(self.cursor["current"])
        place = "the start" if current == int(self.cursor["start"]) else hex(current)
        size = 0
        try:
            for record in records(self.first()):
                if size == elements():
                    return f"more than {size}", place
                if int(record.address) == current:
                    place = f"[{size}]"
                size += 1
        except UNREADABLE:
            return f"at least {size}", place
        return size, place

    def ownership(self):
        fields = (field.name for field in plain_type(self.cursor.type).fields())
        return ", Keep" if "deleteMode" in fields and int(self.cursor["deleteMode"]) == 2 else ""

    def children(self):
        try:
            return chain_children(self.first())
        except UNREADABLE:
            return iter(())

    def display_hint(self):
        return "array"


# --- Values ---


def part(pointer, name):
    """A member of the object at a pointer. By its place: GDB itself asks the object for its class before, and
    warns of what it does not find in damaged memory."""
    members_of_class = plain_type(pointer.type).target().strip_typedefs().fields()
    member = next(member for member in members_of_class if member.name == name)
    return gdb.Value(int(pointer) + member.bitpos // 8).cast(member.type.pointer()).dereference()


def members(node):
    """The number of a node's members, and their slots as a pointer to shared pointers."""
    block = part(node, "children")["m_block"]
    if int(block) == 0:
        return 0, None
    count, first, capacity = (int(block[name]) for name in ("count", "first", "capacity"))
    if first + count > capacity:
        raise Damage(f"{count} members behind {first} in a block for {capacity}")
    slot = gdb.lookup_type("std::shared_ptr<CLOMLispElement>")
    return count, (block + 1).cast(slot.pointer()) + first


def is_dotted(node):
    dotted = int(part(node, "dotted"))
    if dotted > 1:
        raise Damage(f"a node with {dotted} for dotted")
    return dotted == 1


def is_atom(node):
    return not is_dotted(node) and base_type(int(part(node, "atom")["restype"])) != "RTNONE"


def kind_of_node(node):
    if is_atom(node):
        return kind_of_record(part(node, "atom"))
    return f"{'dotted list' if is_dotted(node) else 'list'} of {members(node)[0]}"


class LispText:
    """Writes a value as LISP text, as much of it as may be read."""

    def __init__(self):
        self.left = elements()
        self.deepest = levels()

    def of(self, node, above=()):
        """`node` is a pointer, null for nil; `above` are the addresses of the lists that it is in."""
        try:
            address = int(node)
            if address == 0:
                return "nil"
            if address in above:
                return "<a list within itself>"
            if is_atom(node):
                return value_text(part(node, "atom"))
            return self.list_text(node, above + (address,))
        except UNREADABLE as error:
            return f"<{error}>"

    def list_text(self, node, above):
        count, slots = members(node)
        if count > 0 and len(above) > self.deepest:
            return "(...)"
        pieces = []
        for index in range(count):
            if self.left <= 0:
                pieces.append("...")
                break
            self.left -= 1
            if index == count - 1 and index > 0 and is_dotted(node):
                pieces.append(".")
            pieces.append(self.of(element_of(slots[index]), above))
        return "(" + " ".join(pieces) + ")"


def element_of(handle):
    return handle["_M_ptr"]


def owners_of(handle):
    """The number of the handles on a node, those in lists included."""
    owners = int(part(handle["_M_refcount"]["_M_pi"], "_M_use_count"))
    if owners <= 0:
        raise Damage("a node that was released")
    return owners


class NodePrinter:
    """A node, or a pointer to one."""

    # Where the child stands that GDB is showing. Its own children are in its text, and in theirs again, which
    # would take time without end; a front end asks for them when it is done with the child.
    shown = None

    def __init__(self, value):
        self.is_pointer = plain_type(value.type).code == gdb.TYPE_CODE_PTR
        self.node = value if self.is_pointer else value.address
        if self.is_list():
            self.children = self.members

    def is_list(self):
        try:
            return int(self.node) != 0 and not is_atom(self.node)
        except UNREADABLE:
            return False

    def to_string(self):
        try:
            if int(self.node) == 0:
                return "nil"
            text = self.description()
            return f"{int(self.node):#x}: {text}" if self.is_pointer else text
        except UNREADABLE as error:
            return f"<{error}>"

    def description(self):
        try:
            return f"{LispText().of(self.node)} [{kind_of_node(self.node)}{self.owners()}]"
        except UNREADABLE as error:
            return f"<{error}>"

    def owners(self):
        return ""

    def members(self):
        try:
            count, slots = members(self.node)
            for index in range(min(count, MOST_ELEMENTS)):
                NodePrinter.shown = int(slots + index)
                yield f"[{index}]", slots[index]
        except UNREADABLE:
            return
        finally:
            NodePrinter.shown = None

    def display_hint(self):
        return "array" if self.is_list() else None


class HandlePrinter(NodePrinter):
    """A shared pointer to a node."""

    def __init__(self, handle):
        super().__init__(element_of(handle))
        self.is_pointer = False
        self.handle = handle

    def owners(self):
        owners = owners_of(self.handle)
        return f", {owners} owner{'s' if owners != 1 else ''}"

    def members(self):
        if self.handle.address is not None and int(self.handle.address) == NodePrinter.shown:
            return iter(())
        return super().members()


class ValuePrinter(HandlePrinter):
    def __init__(self, value):
        super().__init__(value["m_element"])


# --- Registration ---

PRINTERS = {
    "CLOMAdsLispVar": ValuePrinter,
    "std::shared_ptr<CLOMLispElement>": HandlePrinter,
    "std::shared_ptr<CLOMLispElement const>": HandlePrinter,
    "std::shared_ptr<const CLOMLispElement>": HandlePrinter,
    "CLOMLispElement": NodePrinter,
    "resbuf": RecordPrinter,
    "ResBuf": RecordPrinter,
    "ADSBaseList": ListPrinter,
    "ADSList": ListPrinter,
}

POINTER_PRINTERS = {
    "CLOMLispElement": NodePrinter,
    "resbuf": ChainPrinter,
    "ResBuf": ChainPrinter,
}


def view_of(value):
    """The printer of a value; none for what was optimised away, and for a copy of a node, which GDB made."""
    if plain_type(value.type).code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value()
    seen_type = plain_type(value.type)
    if seen_type.code == gdb.TYPE_CODE_PTR:
        printer = POINTER_PRINTERS.get(plain_type(seen_type.target()).name)
    else:
        printer = PRINTERS.get(seen_type.name)
    if printer is None or value.is_optimized_out or (printer is NodePrinter and value.address is None):
        return None
    return printer(value)


class Views(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("lomlisp")

    def __call__(self, value):
        try:
            return view_of(value)
        except gdb.error:
            return None


def add_views(objfile):
    """GDB asks the printers of the program first, so that these come before the standard library's own."""
    if objfile.filename == gdb.current_progspace().filename:
        gdb.printing.register_pretty_printer(objfile, Views(), replace=True)


for each in gdb.objfiles():
    add_views(each)
gdb.events.new_objfile.connect(lambda event: add_views(event.new_objfile))
