"""
Offsets of a part
=================

A part is put together from simple shapes, its sharp corners are rounded, and the path of a milling cutter is the
outline moved outwards by the cutter's radius. Lengths are in millimetres, by ``spacing``.
"""

import matplotlib.pyplot as plt
import numpy as np

import quorbin

spacing = 0.11
y, x = np.mgrid[0:60:spacing, 0:100:spacing]


def box(low, high):
    """Return a field of a rectangle with the corners (y, x)."""
    middle, half = np.add(low, high) / 2, np.subtract(high, low) / 2
    return np.maximum(np.abs(y - middle[0]) - half[0], np.abs(x - middle[1]) - half[1])


def disc(centre, radius):
    """Return the signed distance to a disc."""
    return np.hypot(y - centre[0], x - centre[1]) - radius


# %%
# An angle bracket with a slot and two holes. Inside is where a field is at most zero.

plate = quorbin.union(box((10, 10), (28, 90)), box((10, 10), (50, 30)), spacing=spacing)
part = plate
for hole in (disc((40, 20), 4), disc((19, 20), 4), box((16, 50), (22, 80))):
    part = quorbin.difference(part, hole, spacing=spacing)

# %%
# Opening rounds the corners that stick out, closing those that go in, with the radius given. Offsets come from the
# distance: outwards for a positive number, inwards for a negative one. Where between samples a corner lies, they
# do not tell, so that arcs around corners err by up to half a sample: take fine ones.

rounded = quorbin.opened(quorbin.closed(part, 2, spacing=spacing), 2, spacing=spacing)
shapes = {
    "part": (part, "tab:gray"),
    "rounded by 2 mm": (rounded, "k"),
    "path of a cutter of 6 mm": (quorbin.offset(rounded, 3, spacing=spacing), "tab:blue"),
    "2 mm within": (quorbin.offset(rounded, -2, spacing=spacing), "tab:orange"),
}

# %%
# Outlines are in millimetres, too.

figure, ax = plt.subplots(figsize=(8.5, 5.2), layout="constrained")
ax.contourf(x, y, rounded, [-100, 0], colors=["0.9"])
for name, (field, colour) in shapes.items():
    for i, outline in enumerate(quorbin.contours(field, spacing=spacing)):
        ax.plot(outline[:, 1], outline[:, 0], color=colour, linewidth=1.2, label=None if i else name)
ax.set(aspect="equal", xlabel="mm", ylabel="mm", xlim=(0, 100), ylim=(0, 60))
ax.set_title(f"area {quorbin.measure(rounded, spacing=spacing).area:.0f} mm²")
ax.legend(loc="upper right")
plt.show()
