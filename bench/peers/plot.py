"""The plot: how many times our figure the others need, in an SVG."""
import math

import rows as table

COLOURS = {"ecl": "#0072b2", "guile": "#56b4e9", "nlohmann": "#d55e00", "rapidjson": "#e69f00",
           "ezdxf": "#cc79a7", "limit": "#009e73"}
LEFT, RIGHT, TOP, LINE = 250, 20, 70, 20
WIDTH = 900
LEAST, MOST = -2, 3  # powers of ten


def x_of(factor):
    position = (min(max(math.log10(factor), LEAST), MOST) - LEAST) / (MOST - LEAST)
    return LEFT + position * (WIDTH - LEFT - RIGHT)


def text(x, y, content, anchor="start"):
    return f'<text x="{x:.0f}" y="{y:.0f}" text-anchor="{anchor}">{content}</text>'


def grid(bottom):
    for power in range(LEAST, MOST + 1):
        x = x_of(10.0**power)
        colour = "#444" if power == 0 else "#ddd"
        yield f'<line x1="{x:.0f}" y1="{TOP - 8}" x2="{x:.0f}" y2="{bottom}" stroke="{colour}"/>'
        yield text(x, TOP - 14, f"{10.0**power:g}", "middle")


def legend():
    x = LEFT
    for peer, colour in COLOURS.items():
        yield f'<circle cx="{x}" cy="20" r="5" fill="{colour}"/>' + text(x + 10, 24, table.PEERS[peer])
        x += 100


def dots(row, medians, y):
    yield text(LEFT - 12, y + 4, row.work, "end")
    for peer, colour in COLOURS.items():
        if medians.get(peer) and medians["ours"]:
            x = x_of(medians[peer] / medians["ours"])
            yield f'<circle cx="{x:.1f}" cy="{y}" r="5" fill="{colour}" fill-opacity="0.85"/>'


def svg(results):
    measured = [row for row in table.ROWS if row.name in results]
    bottom = TOP + LINE * len(measured)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{bottom + 10}" '
             'font-family="sans-serif" font-size="12">',
             f'<rect width="{WIDTH}" height="{bottom + 10}" fill="white"/>',
             text(12, 24, "times our figure (right of 1: more)"),
             *grid(bottom), *legend()]
    for position, row in enumerate(measured):
        parts += dots(row, results[row.name]["medians"], TOP + LINE // 2 + LINE * position)
    return "\n".join(parts) + "\n</svg>\n"
