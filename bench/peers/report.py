"""The table and what came of the goals."""
import rows as table

COLUMNS = tuple(table.PEERS)
HEADINGS = ("work", "unit", *table.PEERS.values(), "ours / best", "ours / limit", "goals")


def ratio(medians, peer):
    return medians["ours"] / medians[peer] if medians.get(peer) else None


def is_met(found, most):
    """As fast as another one is not faster."""
    return found < most if most == 1.0 else found <= most


def misses(row, medians):
    """What is missed, as texts; None for a row without goals."""
    found = []
    goals = 0
    for peer in row.peers:
        most = row.most(peer)
        if most is None or peer not in medians:
            continue
        goals += 1
        if not is_met(ratio(medians, peer), most):
            goal = f" (goal {most:g})" if most != 1.0 else ""
            found.append(f"{ratio(medians, peer):.2f} × {table.PEERS[peer]}{goal}")
    if row.most_bytes:
        goals += 1
        if medians["ours"] > row.most_bytes:
            found.append(f"{medians['ours']:.0f} bytes (goal {row.most_bytes})")
    return found if goals else None


def verdict(missed):
    if missed is None:
        return "none"
    return "MISSED: " + ", ".join(missed) if missed else "met"


def number(value):
    if value is None:
        return ""
    if value >= 100:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def line_of(row, medians):
    others = [medians[peer] for peer in row.peers if peer in medians and peer != "limit"]
    best = min(others, default=0)
    to_best = medians["ours"] / best if best else None
    return [row.work, row.unit, *(number(medians.get(peer)) for peer in COLUMNS), number(to_best),
            number(ratio(medians, "limit")), verdict(misses(row, medians))]


def markdown(headings, lines, texts):
    """`texts` says which columns are no numbers."""
    widths = [max(len(line[i]) for line in [headings, *lines]) for i in range(len(headings))]

    def joined(cells):
        padded = (cell.ljust(width) if i in texts else cell.rjust(width)
                  for i, (cell, width) in enumerate(zip(cells, widths)))
        return "| " + " | ".join(padded) + " |"

    rule = ["-" * width if i in texts else "-" * (width - 1) + ":" for i, width in enumerate(widths)]
    return "\n".join([joined(headings), joined(rule), *map(joined, lines)])


def comparison(results):
    """Nanoseconds, or bytes, for each element."""
    lines = [line_of(row, results[row.name]["medians"]) for row in table.ROWS if row.name in results]
    return markdown(HEADINGS, lines, (0, 1, len(HEADINGS) - 1))


def growth_factor(costs):
    found = list(costs.values())
    return max(found) / found[0]


def growth_verdict(costs):
    return "met" if growth_factor(costs) <= table.MOST_GROWTH else "MISSED"


def growth(results):
    """Nanoseconds for each element, by the number of nodes."""
    lines = []
    for row in table.ROWS:
        costs = results.get(row.name)
        if costs:
            unit = row.unit + " and doubling" if row.is_sort else row.unit
            lines.append([row.work, unit, *map(number, costs.values()), number(growth_factor(costs)),
                          growth_verdict(costs)])
    nodes = max((results[row.name] for row in table.ROWS if results.get(row.name)), key=len, default=())
    lengths = [f"{count:,}" for count in table.NODES[:len(nodes)]]
    return markdown(("work", "unit", *lengths, "factor", f"goal {table.MOST_GROWTH}"), lines,
                    (0, 1, 3 + len(lengths)))


def summary(results, growths):
    missed = sum(bool(misses(row, results[row.name]["medians"])) for row in table.ROWS if row.name in results)
    grown = sum(growth_verdict(costs) != "met" for costs in growths.values())
    return (f"Goals: {missed} of {len(results)} rows miss one or more, "
            f"and {grown} of {len(growths)} rows grow with the length.")


def write_between(path, begin, end, text):
    """Puts the text between two lines of a file."""
    old = path.read_text(encoding="utf-8")
    head, rest = old.split(begin + "\n", 1)
    tail = rest.split(end, 1)[1]
    path.write_text(f"{head}{begin}\n\n{text}\n\n{end}{tail}", encoding="utf-8")
