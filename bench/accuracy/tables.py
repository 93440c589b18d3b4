"""Lines of JSON, and Markdown tables of them."""
import json


def read(path):
    with open(path) as file:
        return [json.loads(line) for line in file]


class Rows:
    """Measured lines; called with keys and values it gives those that have them."""

    def __init__(self, lines):
        self.lines = lines

    def __call__(self, **wanted):
        return Rows([d for d in self.lines if all(d.get(k) == v for k, v in wanted.items())])

    def values(self, key):
        return list(dict.fromkeys(d[key] for d in self.lines if key in d))

    def points(self, x, y):
        return list(dict.fromkeys((d[x], abs(d[y])) for d in self.lines if d.get(y) is not None))


def number(value):
    """Three significant digits, or as many as whole numbers have."""
    if value is None:
        return "–"
    if value == 0 or 0.001 <= abs(value) < 1000:
        return f"{value:.3g}".replace("-", "−")
    if float(value).is_integer() and abs(value) < 1e6:
        return f"{int(value)}".replace("-", "−")
    return f"{value:.1e}".replace("e-0", "e-").replace("e+0", "e+").replace("-", "−")


def cell(lines, keys):
    """Figures under keys, a dash where there are none; of times, the smallest of several rounds."""
    found = [[line.get(key) for key in keys] for line in lines]
    if not found:
        return "–"
    best = [min((v for v in column if v is not None), default=None) if key.startswith("seconds") else column[0]
            for key, column in zip(keys, zip(*found))]
    return " / ".join(number(value) for value in best)


def table(rows, columns, first="method", head=""):
    """columns: [(title, conditions, keys)]; a row for each value of `first`."""
    out = ["| " + " | ".join([head] + [title for title, _, _ in columns]) + " |",
           "|---|" + "---:|" * len(columns)]
    for name in rows.values(first):
        mine = rows(**{first: name})
        cells = [cell(mine(**conditions).lines, keys) for _, conditions, keys in columns]
        if any(c != "–" for c in cells):
            out.append("| " + " | ".join([name] + cells) + " |")
    return "\n".join(out) + "\n"
