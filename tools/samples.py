#!/usr/bin/python3
"""Makes sample drawings: tools/samples.py FOLDER [ROOMS [VERSION...]]

    sample-VERSION.dxf, -bin.dxf  everything that the tests look at, for each version
    plan.dxf                      a house floor, for the examples
    rooms.dxf                     ROOMS rooms of ten entities each (5000 when no number is given)

The same call always makes the same drawings. Needs ezdxf 0.18 (Debian: python3-ezdxf).
"""
import math
import sys
from pathlib import Path

try:
    import ezdxf
except ImportError:
    sys.exit("python3-ezdxf is missing; run tools/setup")

VERSIONS = ["R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"]
UMLAUTS = "Türöffnung, Größe 2 m²"
OUTSIDE = "Δ Ж 中 \N{GRINNING FACE}"  # in no code page of western Europe
APPLICATIONS = ["LOMLISP_A", "LOMLISP_B"]


# --- What all drawings share ---

def new_drawing(version, layers):
    doc = ezdxf.new(version, setup=["linetypes", "styles"])
    for name in APPLICATIONS:
        doc.appids.add(name)
    for name, color, linetype in layers:
        doc.layers.add(name, color=color, linetype=linetype)
    return doc


def add_symbol(doc, name, lines, arcs, tags):
    """A block of lines and arcs with attributes: (tag, place)."""
    block = doc.blocks.new(name, base_point=(0, 0))
    for start, end in lines:
        block.add_line(start, end)
    for center, radius, start, end in arcs:
        block.add_arc(center, radius, start, end)
    for tag, place in tags:
        block.add_attdef(tag, place, dxfattribs={"height": 0.1, "prompt": tag, "flags": 1})
    return block


def insert(layout, name, point, rotation, values, layer, scale=(1, 1)):
    reference = layout.add_blockref(name, point, dxfattribs={
        "rotation": rotation, "layer": layer, "xscale": scale[0], "yscale": scale[1]})
    if values:
        reference.add_auto_attribs(values)
    return reference


def tag(entity, *values):
    """Extended data of two applications."""
    entity.set_xdata(APPLICATIONS[0], [(1000, str(values)), (1070, 7), (1071, 100000), (1040, 2.5),
                                       (1002, "{"), (1010, (1, 2, 3)), (1005, "0"), (1002, "}")])
    entity.set_xdata(APPLICATIONS[1], [(1000, UMLAUTS), (1004, bytes(range(16)))])


# --- The samples ---

def add_plain_entities(layout):
    bulges = [(0, 0, 0.5), (4, 0, 0), (4, 3, -1), (0, 3, 0)]
    tag(layout.add_line((0, 0), (10, 5.5)), "line")
    layout.add_arc((5, 5), 2.5, 30, 200)
    layout.add_circle((0.1, 0.2, 0.3), 1 / 3, dxfattribs={"layer": "Wände", "color": 1, "linetype": "DASHED"})
    layout.add_point((1, 2, 3))
    layout.add_text(UMLAUTS, dxfattribs={"height": 0.25, "insert": (1, 1)})
    layout.add_text(OUTSIDE, dxfattribs={"height": 0.25, "insert": (1, 2)})
    layout.add_text("tab^Iand line^Jbreak", dxfattribs={"height": 0.25, "insert": (1, 3)})
    layout.add_polyline2d(bulges, format="xyb", close=True)
    layout.add_polyline3d([(0, 0, 0), (1, 0, 1), (1, 1, 2)])
    layout.add_polyline2d([(0, 0), (5, 0), (5, 5)], dxfattribs={"extrusion": (0, 0, -1)})
    layout.add_solid([(0, 0), (1, 0), (0, 1), (1, 1)])
    layout.add_3dface([(0, 0, 0), (1, 0, 0), (1, 1, 1), (0, 1, 1)])
    tag(insert(layout, "Door", (3, 3), 45, {"NR": "T1", "TYPE": UMLAUTS}, "Wände", (2, -1)), "door")
    insert(layout, "Door", (6, 3), 0, {}, "0")


def add_newer_entities(layout):
    layout.add_ellipse((2, 2), (3, 1), 0.4, 0.5, 5)
    layout.add_lwpolyline([(0, 0, 0.1, 0.2, 0.5), (4, 0, 0, 0, 0), (4, 3, 0, 0, -1)], close=True)
    layout.add_mtext(UMLAUTS + "\\P" + OUTSIDE, dxfattribs={"char_height": 0.2, "width": 5})
    layout.add_spline([(0, 0, 0), (1, 2, 0), (3, 1, 0), (4, 4, 1)])
    hatch = layout.add_hatch(color=2)
    hatch.paths.add_polyline_path([(0, 0), (4, 0, 0.3), (4, 4), (0, 4)], is_closed=True)
    edges = hatch.paths.add_edge_path()
    edges.add_line((1, 1), (2, 1))
    edges.add_arc((1.5, 1), 0.5, 0, 180)
    hatch.set_pattern_fill("ANSI31", scale=0.1)
    layout.add_linear_dim(base=(0, 6), p1=(0, 0), p2=(4, 0)).render()
    layout.add_leader([(0, 0), (1, 1), (2, 1)])


def add_dictionaries(doc):
    dictionary = doc.rootdict.add_new_dict("LOMLISP")
    record = dictionary.add_xrecord("SETTINGS")
    record.reset([(1, UMLAUTS), (90, -5), (40, 1e-9), (290, 1), (10, (1, 2, 3)), (330, dictionary.dxf.handle),
                  (310, bytes(range(100))), (70, 1), (160, 2 ** 40)])
    line = doc.modelspace().add_line((9, 9), (8, 8))
    own = line.new_extension_dict()
    own.add_xrecord("NOTE").reset([(1, OUTSIDE)])


def add_paper(doc):
    paper = doc.layout("Layout1")
    paper.page_setup(size=(420, 297), margins=(10, 10, 10, 10), units="mm")
    paper.add_viewport(center=(200, 150), size=(300, 200), view_center_point=(5, 5), view_height=20)
    paper.add_text("Blatt 1: " + UMLAUTS, dxfattribs={"height": 5, "insert": (20, 20)})


def make_sample(version):
    doc = new_drawing(version, [("Wände", 3, "CONTINUOUS"), ("Möbel", 5, "DASHED")])
    add_symbol(doc, "Door", [((0, 0), (0, 1))], [((0, 0), 1, 0, 90)], [("NR", (0.2, 0.4)), ("TYPE", (0.2, 0.2))])
    add_plain_entities(doc.modelspace())
    if version != "R12":
        add_newer_entities(doc.modelspace())
        add_dictionaries(doc)
        add_paper(doc)
    return doc


# --- A house floor, in metres ---

LAYERS = [("WALLS", 7, "CONTINUOUS"), ("DOORS", 1, "CONTINUOUS"), ("WINDOWS", 5, "CONTINUOUS"),
          ("FURNITURE", 8, "CONTINUOUS"), ("TEXT", 3, "CONTINUOUS"), ("AREAS", 6, "DASHED"),
          ("COLUMNS", 4, "CONTINUOUS")]

# name, area from (x, y) to (x, y)
ROOMS = [("Wohnzimmer", (0.3, 0.3), (6.0, 4.9)), ("Küche", (6.2, 0.3), (9.7, 4.9)),
         ("Flur", (0.3, 5.1), (9.7, 6.5)), ("Schlafzimmer", (0.3, 6.7), (4.4, 10.2)),
         ("Bad", (4.6, 6.7), (6.6, 10.2)), ("Arbeitsräume", (6.8, 6.7), (9.7, 10.2))]

# of the walls between the rooms: start and end, without the doors
WALLS = [((6.0, 0.3), (6.0, 4.9)), ((6.2, 0.3), (6.2, 4.9)),
         ((0.3, 4.9), (2.5, 4.9)), ((3.4, 4.9), (6.0, 4.9)), ((6.2, 4.9), (7.5, 4.9)), ((8.4, 4.9), (9.7, 4.9)),
         ((0.3, 5.1), (2.5, 5.1)), ((3.4, 5.1), (7.5, 5.1)), ((8.4, 5.1), (9.7, 5.1)),
         ((0.3, 6.5), (2.0, 6.5)), ((2.9, 6.5), (5.0, 6.5)), ((5.8, 6.5), (7.8, 6.5)), ((8.7, 6.5), (9.7, 6.5)),
         ((0.3, 6.7), (2.0, 6.7)), ((2.9, 6.7), (4.4, 6.7)), ((4.6, 6.7), (5.0, 6.7)), ((5.8, 6.7), (6.6, 6.7)),
         ((6.8, 6.7), (7.8, 6.7)), ((8.7, 6.7), (9.7, 6.7)),
         ((4.4, 6.7), (4.4, 10.2)), ((4.6, 6.7), (4.6, 10.2)), ((6.6, 6.7), (6.6, 10.2)), ((6.8, 6.7), (6.8, 10.2))]

# number, type, hinge, scale, rotation
DOORS = [("T01", "Zimmertür", (2.5, 4.9), (0.9, 0.9), 0), ("T02", "Zimmertür", (7.5, 4.9), (0.9, 0.9), 0),
         ("T03", "Zimmertür", (2.9, 6.7), (-0.9, 0.9), 0), ("T04", "Badtür", (5.8, 6.7), (-0.8, 0.8), 0),
         ("T05", "Zimmertür", (8.7, 6.7), (-0.9, 0.9), 0), ("T06", "Haustür", (0.3, 5.35), (0.9, -0.9), 90)]

# number, type, place, width, rotation
WINDOWS = [("F01", "zweiflüglig", (1.5, 0.0), 2.0, 0), ("F02", "einflüglig", (7.2, 0.0), 1.2, 0),
           ("F03", "einflüglig", (1.5, 10.2), 1.5, 0), ("F04", "Milchglas", (5.2, 10.2), 0.8, 0),
           ("F05", "einflüglig", (7.5, 10.2), 1.5, 0), ("F06", "zweiflüglig", (10.0, 1.5), 2.0, 90)]

CHAIRS = [("S%02d" % number, kind, place, rotation) for number, (kind, place, rotation) in enumerate([
    ("Esszimmer", (2.0, 2.2), 0), ("Esszimmer", (3.2, 2.2), 0), ("Esszimmer", (2.45, 4.15), 180),
    ("Esszimmer", (3.65, 4.15), 180), ("Küche", (7.3, 2.0), 90), ("Büro", (8.0, 8.6), 0)], start=1)]

COLUMNS = [(0.9, 4.2), (5.4, 4.2), (0.9, 0.9), (5.4, 0.9)]


def rectangle(low, high):
    return [low, (high[0], low[1]), high, (low[0], high[1])]


def add_floor_symbols(doc):
    tags = [("NR", (0.1, 0.3)), ("TYPE", (0.1, 0.1))]
    add_symbol(doc, "DOOR", [((0, 0), (0, 1))], [((0, 0), 1, 0, 90)], tags)
    add_symbol(doc, "WINDOW", [((0, 0), (1, 0)), ((0, 0.15), (1, 0.15)), ((0, 0.3), (1, 0.3)),
                               ((0, 0), (0, 0.3)), ((1, 0), (1, 0.3))], [], tags)
    seat = rectangle((0, 0), (0.45, 0.45))
    add_symbol(doc, "CHAIR", list(zip(seat, seat[1:] + seat[:1])) + [((0, 0.05), (0.45, 0.05))], [], tags)


def make_plan():
    doc = new_drawing("R2000", LAYERS)
    doc.units = ezdxf.units.M
    add_floor_symbols(doc)
    space = doc.modelspace()
    for low, high in [((0, 0), (10, 10.5)), ((0.3, 0.3), (9.7, 10.2))]:
        space.add_lwpolyline(rectangle(low, high), close=True, dxfattribs={"layer": "WALLS"})
    for start, end in WALLS:
        space.add_line(start, end, dxfattribs={"layer": "WALLS"})
    for name, low, high in ROOMS:
        space.add_lwpolyline(rectangle(low, high), close=True, dxfattribs={"layer": "AREAS"})
        place = ((low[0] + high[0]) / 2 - 0.1 * len(name), low[1] + 0.3 * (high[1] - low[1]))
        space.add_text(name, dxfattribs={"layer": "TEXT", "height": 0.25, "insert": place})
    for number, kind, place, scale, rotation in DOORS:
        insert(space, "DOOR", place, rotation, {"NR": number, "TYPE": kind}, "DOORS", scale)
    for number, kind, place, width, rotation in WINDOWS:
        insert(space, "WINDOW", place, rotation, {"NR": number, "TYPE": kind}, "WINDOWS", (width, 1))
    for number, kind, place, rotation in CHAIRS:
        insert(space, "CHAIR", place, rotation, {"NR": number, "TYPE": kind}, "FURNITURE")
    space.add_lwpolyline(rectangle((1.8, 2.7), (4.0, 3.6)), close=True, dxfattribs={"layer": "FURNITURE"})
    for place in COLUMNS:
        space.add_circle(place, 0.15, dxfattribs={"layer": "COLUMNS"})
    space.add_arc((9.7, 10.2), 1.5, 180, 270, dxfattribs={"layer": "FURNITURE"})  # a desk in the corner
    return doc


# --- A large plan ---

def add_room(space, number, low, width=5.0, height=4.0):
    """Ten entities: walls and lines, texts, a door with attributes."""
    high = (low[0] + width, low[1] + height)
    corners = rectangle(low, high)
    space.add_lwpolyline(corners, close=True, dxfattribs={"layer": "WALLS"})
    for index, corner in enumerate(corners):
        end = (corner[0] + math.cos(number + index) / 3, corner[1] + math.sin(number + index) / 3)
        space.add_line(corner, end, dxfattribs={"layer": "FURNITURE"})
    for index, text in enumerate(["Raum %d" % number, "%.2f m²" % (width * height)]):
        space.add_text(text, dxfattribs={"layer": "TEXT", "height": 0.2, "insert": (low[0] + 1, low[1] + 1 + index)})
    space.add_circle((low[0] + 1, low[1] + 3), 0.2, dxfattribs={"layer": "COLUMNS"})
    space.add_arc(high, 1.0, 180, 270, dxfattribs={"layer": "FURNITURE"})
    insert(space, "DOOR", low, 90 * (number % 4), {"NR": "T%05d" % number, "TYPE": "Tür"}, "DOORS")


def make_rooms(count):
    doc = new_drawing("R2018", LAYERS)
    add_floor_symbols(doc)
    columns = max(math.isqrt(count), 1)
    for number in range(count):
        add_room(doc.modelspace(), number, (6.0 * (number % columns), 5.0 * (number // columns)))
    return doc


def main(arguments):
    ezdxf.options.write_fixed_meta_data_for_testing = True  # no dates, no new identifiers
    folder = Path(arguments[0])
    folder.mkdir(parents=True, exist_ok=True)
    rooms = int(arguments[1]) if len(arguments) > 1 else 5000
    for version in arguments[2:] or VERSIONS:
        doc = make_sample(version)
        doc.saveas(folder / f"sample-{version}.dxf")
        doc.saveas(folder / f"sample-{version}-bin.dxf", fmt="bin")
    make_plan().saveas(folder / "plan.dxf")
    make_rooms(rooms).saveas(folder / "rooms.dxf")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(sys.argv[1:])
