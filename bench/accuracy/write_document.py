"""write_document.py FIGURES PEERS: writes docs/accuracy.md and its plots; see scripts/update_accuracy."""
import sys

from plot import plot
from tables import Rows, number, read, table

rows, peers = Rows(read(sys.argv[1])), Rows(read(sys.argv[2]))
machine, peer_machine = rows(flow="machine").lines[0], peers(flow="machine").lines[0]
pictures = "docs/pictures/"
near, far = ("near_mean", "near_largest"), ("far_mean", "far_largest")


def by(key, values, keys, **also):
    """A column for each value of a key."""
    return [(f"{key} {value:g}", {key: value, **also}, keys) for value in values]


def flow(name, **wanted):
    return rows(flow=name, **wanted)


def drift_columns():
    return [(f"{d}D, {calls} times", {"dimensions": d, "calls": calls}, ("change_percent",))
            for d in (2, 3) for calls in (1, 10, 100)]


def plain_circles(source, dimensions):
    return source(flow="circle", dimensions=dimensions, slope=1, stretch=1)


def draw():
    both = Rows(flow("drift", dimensions=3).lines + [
        line for line in peers(flow="drift", dimensions=3).lines if line["method"].split()[0] in
        ("ITK", "OpenVDB", "scikit-fmm,")])
    plot(pictures + "accuracy_drift.svg", "Volume of a ball that is lost or gained", "calls", "per cent",
         {m: both(method=m).points("calls", "change_percent") for m in both.values("method") if "band" not in m})
    circles = plain_circles(rows, 2)
    plot(pictures + "accuracy_near.svg", "Distance beside a circle, mean error in samples", "samples an axis",
         "samples", {m: circles(method=m).points("n", "near_mean") for m in circles.values("method")
                     if "band" not in m})
    discs = flow("curvature", shape="disc", stretch=1)
    plot(pictures + "accuracy_curvature.svg", "Disc under curvature: error of the lost area", "samples an axis",
         "per cent", {m: discs(method=m).points("n", "excess_percent") for m in discs.values("method")})


def curvature_columns(n2, n3, stretch2, stretch3):
    flat = [(name, {"shape": name, "n": n2, "stretch": stretch2}, ("excess_percent",))
            for name in ("disc", "star", "square")]
    return flat + ([("ball", {"shape": "ball", "n": n3, "stretch": stretch3}, ("excess_percent",))]
                   if stretch3 else [])


def order_columns(shape, sizes):
    return [(f"n = {n}", {"shape": shape, "n": n, "stretch": 1}, ("excess_percent",)) for n in sizes]


def halving():
    """By what the error falls each time the spacing is halved."""
    lines = ["| | disc | ball |", "|---|---:|---:|"]
    for method in ("curvatureFlow, explicit", "curvatureFlow, large", "curvatureFlow, band"):
        cells = []
        for shape in ("disc", "ball"):
            errors = dict(flow("curvature", shape=shape, stretch=1, method=method).points("n", "excess_percent"))
            cells.append(", ".join(f"{errors[n] / errors[2 * n]:.1f}" for n in sorted(errors) if 2 * n in errors))
        lines.append(f"| {method} | {cells[0]} | {cells[1]} |")
    return "\n".join(lines) + "\n"


def times():
    lines = ["| | points | part of the old time |", "|---|---:|---:|"]
    lines += [f"| {d['subject']} | {d['n']:g}{'²' if d['dimensions'] == 2 else '³'} | {number(d['ratio'])} |"
              for d in flow("time").lines]
    return "\n".join(lines) + "\n"


def peer_time(key):
    """Times as parts of that of ensureSignedDistanceFMM, or of our band, in the same run."""
    lines = []
    for line in peers.lines:
        if key in line:
            base = "curvatureFlow, band" if line["flow"] == "curvature" else "march"
            same = {k: line[k] for k in ("flow", "dimensions", "n", "calls") if k in line}
            reference = min(d[key] for d in peers(method=base, **same).lines)
            lines.append({**line, "seconds_ratio": line[key] / reference})
    return Rows(lines)


def peer_tables():
    drift = peer_time("seconds_a_call")(flow="drift", calls=100)
    circle = peer_time("seconds")(flow="circle")
    motion = peer_time("seconds")(flow="curvature")
    columns = [(f"{d}D, {title}", {"dimensions": d}, keys) for d in (2, 3)
               for title, keys in (("change in %", ("change_percent",)), ("time", ("seconds_ratio",)))]
    sizes = [(f"{d}D, {n}", {"dimensions": d, "n": n}, near) for d, n in ((2, 128), (2, 512), (3, 64), (3, 128))]
    circle_times = [(f"time, {d}D, {n}", {"dimensions": d, "n": n}, ("seconds_ratio",))
                    for d, n in ((2, 512), (3, 128))]
    motions = [(f"{shape}, {title}", {"shape": shape}, keys) for shape in ("disc", "ball")
               for title, keys in (("too fast by %", ("excess_percent",)), ("time", ("seconds_ratio",)))]
    rods = [(f"{direction}, {kind}", {"direction": direction, "input": kind}, ("sign_changes", "after_50_percent"))
            for direction in ("axis", "diagonal") for kind in ("distance", "mask")]
    return {"peer_drift": table(drift, columns), "peer_circle": table(circle, sizes + circle_times),
            "peer_rods": table(peers(flow="rod"), rods), "peer_motion": table(motion, motions)}


def document():
    ellipsoids = flow("ellipsoid")
    slopes = [(f"slope {slope:g}, 1 : {stretch:g}", {"slope": slope, "stretch": stretch, "n": max(
        flow("circle", slope=0.01).values("n"))}, near) for slope in (0.01, 1, 100) for stretch in (1, 10)]
    rods = [(f"{direction}, {kind}", {"direction": direction, "input": kind},
             ("sign_changes", "first_percent", "later_percent"))
            for direction in ("axis", "diagonal") for kind in ("distance", "mask")]
    constant = [(shape, {"shape": shape}, ("change_percent",))
                for shape in ("disc", "star", "square", "ball", "cube")]
    carried = [(title, {}, (key,)) for title, key in (
        ("change", "change_percent"), ("wrong side", "wrong_percent"), ("difference", "difference_percent"),
        ("wrong half way", "wrong_at_half_percent"), ("steps", "steps"), ("MB", "megabytes"), ("s", "seconds"))]
    steps = [(shape, {"shape": shape, "n": n, "stretch": 1}, ("steps", "mean_step_limits"))
             for shape, n in (("disc", 128), ("star", 128), ("square", 128), ("ball", 64))]
    figures = {
        "processor": machine["processor"], "date": machine["date"],
        "peer_processor": peer_machine["processor"], "peer_date": peer_machine["date"],
        "versions": peer_machine["versions"], "rounds": f"{peer_machine['rounds']:g} rounds".replace("1 rounds", "one round"),
        "drift": table(flow("drift"), drift_columns()),
        "circle_near": table(plain_circles(rows, 2), by("n", (128, 256, 512, 1024), near)),
        "circle_far": table(plain_circles(rows, 2), by("n", (128, 256, 512, 1024), far)),
        "sphere_near": table(plain_circles(rows, 3), by("n", (32, 64, 128), near)),
        "sphere_far": table(plain_circles(rows, 3), by("n", (32, 64, 128), far)),
        "ellipse": table(ellipsoids(dimensions=2), by("n", (128, 512), near) + [
            (f"beyond, n {n}", {"n": n}, far) for n in (128, 512)]),
        "ellipsoid": table(ellipsoids(dimensions=3), by("n", (64, 128), near) + [
            (f"beyond, n {n}", {"n": n}, far) for n in (64, 128)]),
        "slopes": table(flow("circle", dimensions=2), slopes),
        "square": table(flow("square"), [("distance", {}, near), ("first call, %", {}, ("first_percent",)),
                                         ("after 50, %", {}, ("after_50_percent",))]),
        "rods": table(flow("rod"), rods),
        "curvature": table(flow("curvature"), curvature_columns(128, 64, 1, 1)),
        "steps": table(Rows([d for d in flow("curvature").lines if d["method"].startswith("curvatureFlow")]), steps),
        "unequal2": table(flow("curvature"), curvature_columns(128, 64, 2, None)),
        "unequal3": table(flow("curvature"), curvature_columns(128, 64, 3, 3)),
        "order": table(flow("curvature"), order_columns("disc", (32, 64, 128, 256))),
        "order3": table(flow("curvature"), order_columns("ball", (24, 48, 96))),
        "halving": halving(),
        "carried": table(flow("carried"), carried, first="shape"),
        "constant": table(flow("constant size"), constant),
        "pinch": table(flow("pinch"), [("apart after", {}, ("apart_after",)), ("most pieces", {}, ("most_pieces",)),
                                       ("at the end", {}, ("pieces_at_end",)), ("holes", {}, ("most_holes",)),
                                       ("all numbers", {}, ("is_finite",))]),
        "times": times(), "long": number(flow("long flow").lines[0]["excess_percent"]), **peer_tables(),
    }
    with open("bench/accuracy/accuracy.md.in") as file:
        return file.read().format_map(figures)


text = document()
draw()
with open("docs/accuracy.md", "w") as out:
    out.write(text)
