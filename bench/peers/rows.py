"""The rows of the table: what is measured, with whom, and the goals."""
from dataclasses import dataclass, field

PEERS = {
    "ours": "lomlisp",
    "ecl": "ECL",
    "guile": "Guile",
    "nlohmann": "nlohmann",
    "rapidjson": "RapidJSON",
    "ezdxf": "ezdxf",
    "limit": "limit",
}
# Ours must be faster than these wherever they are in a row.
TO_BEAT = ("ecl", "guile", "nlohmann", "ezdxf")


@dataclass
class Row:
    name: str  # as the programs know it
    work: str
    size: int  # elements, over which the figure is divided
    unit: str
    peers: tuple  # beside ours
    limits: dict = field(default_factory=dict)  # by peer: how many times its figure ours may be
    most_bytes: int = 0  # of a row of memory; 0 without a goal
    nodes: int = 0  # of our value for each element, where the cost is also measured by length
    is_sort: bool = False  # its cost by length is that for each element and doubling

    @property
    def is_memory(self):
        return self.unit == "bytes"

    def program(self, peer):
        """The file of a peer's program, beside the others."""
        if self.name in ("entget", "entmod", "ssget", "call-in-host"):
            return "drawing_ezdxf.py" if peer == "ezdxf" else "drawing_" + peer
        return peer

    def most(self, peer):
        """How many times the peer's figure ours may be; None where there is no goal."""
        if peer in self.limits:
            return self.limits[peer]
        return 1.0 if peer in TO_BEAT and not self.is_memory else None


LISPS = ("ecl", "guile")
VALUES = ("ecl", "guile", "nlohmann")
ALL = ("ecl", "guile", "nlohmann", "rapidjson")
BY_HAND = {"limit": 1.25}
SORTED = {"limit": 2.0}
NEAR_ARENA = {"rapidjson": 2.0}
AHEAD = {"rapidjson": 1.0}

ROWS = [
    Row("chain-to-value", "chain to value", 200_000, "group", VALUES + ("limit",), BY_HAND, nodes=4),
    Row("value-to-plain", "value to plain chain", 200_000, "group", VALUES + ("limit",), BY_HAND, nodes=4),
    Row("value-to-dxf", "value to DXF chain", 200_000, "group", VALUES + ("limit",), BY_HAND, nodes=4),
    Row("call", "call: 5 arguments, list of 3 back", 10_000, "call", LISPS + ("limit",), BY_HAND),
    Row("call-in-host", "the same, embedded host included", 10_000, "call", ("limit",), BY_HAND),
    Row("read", "read (integer real text)", 200_000, "item", ALL, NEAR_ARENA, nodes=4),
    Row("print", "print into a buffer", 200_000, "item", ALL, AHEAD, nodes=4),
    Row("print-debug", "debug text", 200_000, "item", ALL, AHEAD, nodes=4),
    Row("copy-equal", "deep copy, then equal", 200_000, "item", ALL, NEAR_ARENA, nodes=4),
    Row("release", "last handle", 200_000, "item", ("nlohmann", "rapidjson"), NEAR_ARENA, nodes=4),
    Row("cons", "cons in front", 1_000_000, "member", LISPS, nodes=1),
    Row("walk", "walk with car and cdr", 1_000_000, "member", LISPS, nodes=1),
    Row("reverse", "reverse in place", 1_000_000, "member", LISPS, nodes=1),
    Row("append", "append to a copy", 1_000_000, "member", LISPS, nodes=1),
    Row("assoc-text", "assoc, last text key", 1_000, "pair", VALUES, nodes=3),
    Row("assoc-integer", "assoc, last integer key", 1_000, "pair", VALUES, nodes=3),
    Row("member-text", "member, last text", 1_000, "member", VALUES, nodes=1),
    Row("member-integer", "member, last integer", 1_000, "member", VALUES, nodes=1),
    Row("position-text", "position, last text", 1_000, "member", VALUES, nodes=1),
    Row("position-integer", "position, last integer", 1_000, "member", VALUES, nodes=1),
    Row("sort-integers", "sort integers", 200_000, "member", LISPS + ("limit",), SORTED, nodes=1, is_sort=True),
    Row("sort-reals", "sort reals", 200_000, "member", LISPS + ("limit",), SORTED, nodes=1, is_sort=True),
    Row("sort-texts", "sort texts", 200_000, "member", LISPS + ("limit",), SORTED, nodes=1, is_sort=True),
    Row("sort-pairs", "sort pairs", 200_000, "member", LISPS + ("limit",), SORTED, nodes=3, is_sort=True),
    Row("subst", "subst", 100_000, "member", LISPS, nodes=1),
    Row("delete", "delete", 100_000, "member", LISPS, nodes=1),
    Row("addnth", "add in the middle", 100_000, "member", LISPS, nodes=1),
    Row("inherit", "inherit", 100_000, "entry", LISPS, nodes=3),
    Row("format", "format, six directives", 10_000, "call", ("ecl", "limit")),
    Row("entget", "entget, 100,000 entities", 100_000, "entity", ("ezdxf", "limit")),
    Row("entmod", "entmod, 100,000 entities", 100_000, "entity", ("ezdxf", "limit")),
    Row("ssget", "ssget with a filter", 100_000, "entity", ("ezdxf", "limit")),
    Row("memory-integer", "integer atom", 100_000, "bytes", ALL, most_bytes=96),
    Row("memory-text", "text atom of 15 characters", 100_000, "bytes", ALL),
    Row("memory-pair", "dotted pair of integers", 100_000, "bytes", ALL, most_bytes=400),
    Row("memory-entity", "entity list of 12 groups", 10_000, "bytes", ALL),
]

# Cost by length: numbers of nodes, and how many times the cost at the first one may be reached.
NODES = (1_000, 10_000, 100_000, 1_000_000, 10_000_000)
MOST_GROWTH = 1.5
