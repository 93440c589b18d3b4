"""Line plots with two logarithmic axes, as small SVG files."""
import math

WIDTH, HEIGHT, LEFT, TOP, RIGHT, BOTTOM = 640, 360, 70, 34, 230, 46
COLOURS = ["#1b6ca8", "#c8502d", "#3b8f4a", "#8a4fa3", "#b58900", "#444444", "#d16ba5", "#2aa198",
           "#99a020", "#705040", "#7090d0"]


def power(exponent):
    return f"1e{exponent}" if not -2 <= exponent <= 3 else f"{10.0 ** exponent:g}"


def plot(path, title, x_name, y_name, curves):
    """curves: {name: [(x, y), ...]}; points whose y is not positive are left out."""
    curves = {name: [p for p in points if p[1] and p[1] > 0] for name, points in curves.items()}
    curves = {name: sorted(points) for name, points in curves.items() if points}
    xs = sorted({x for points in curves.values() for x, _ in points})
    ys = [y for points in curves.values() for _, y in points]
    low, high = math.floor(math.log10(min(ys))), math.ceil(math.log10(max(ys)))
    inner_width, inner_height = WIDTH - LEFT - RIGHT, HEIGHT - TOP - BOTTOM

    def place_x(x):
        return LEFT + inner_width * math.log(x / xs[0]) / math.log(xs[-1] / xs[0])

    def place_y(y):
        return TOP + inner_height * (high - math.log10(y)) / (high - low)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
           'font-family="sans-serif" font-size="12">',
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           f'<text x="{LEFT}" y="20" font-size="14">{title}</text>',
           f'<text x="{LEFT + inner_width / 2}" y="{HEIGHT - 8}" text-anchor="middle">{x_name}</text>',
           f'<text transform="translate(14 {TOP + inner_height / 2}) rotate(-90)" '
           f'text-anchor="middle">{y_name}</text>']
    for exponent in range(low, high + 1):
        y = place_y(10.0 ** exponent)
        out.append(f'<path d="M{LEFT} {y:.1f}h{inner_width}" stroke="#ddd"/>'
                   f'<text x="{LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{power(exponent)}</text>')
    for x in xs:
        out.append(f'<path d="M{place_x(x):.1f} {TOP}v{inner_height}" stroke="#ddd"/>'
                   f'<text x="{place_x(x):.1f}" y="{HEIGHT - 28}" text-anchor="middle">{x:g}</text>')
    for i, (name, points) in enumerate(curves.items()):
        colour = COLOURS[i % len(COLOURS)]
        places = [(place_x(x), place_y(y)) for x, y in points]
        line = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
        out.append(f'<polyline points="{line}" fill="none" stroke="{colour}" stroke-width="2"/>')
        out += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>' for x, y in places]
        y = TOP + 10 + 20 * i
        out.append(f'<path d="M{WIDTH - RIGHT + 12} {y - 4}h18" stroke="{colour}" stroke-width="2"/>'
                   f'<text x="{WIDTH - RIGHT + 36}" y="{y}">{name}</text>')
    with open(path, "w") as file:
        file.write("\n".join(out + ["</svg>"]) + "\n")
