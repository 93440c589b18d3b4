"""
How true distances are
======================

The distance to a circle is known. This measures by how much each method misses it, within three samples of the
circle, on finer and finer grids.
"""

import matplotlib.pyplot as plt
import numpy as np
from scipy import ndimage

import quorbin

sizes = (64, 128, 256, 512, 1024)
errors = {"reinitialize": [], "segments": [], "fast marching": [], "transform of the mask (SciPy)": []}

# %%
# The field has its zero level on the circle and the wrong slope everywhere else. A mask has less: which samples
# are in. A transform of it cannot know where between two samples the circle runs.

for n in sizes:
    y, x = np.mgrid[:n, :n]
    radius = 0.3 * n
    true = np.hypot(x - 0.507 * n, y - 0.496 * n) - radius
    field = true * (true + 2 * radius)
    mask = field <= 0
    distances = (
        quorbin.reinitialize(field),
        quorbin.signed_distance(field, method="segments"),
        quorbin.signed_distance(field, method="fmm"),
        ndimage.distance_transform_edt(~mask) - ndimage.distance_transform_edt(mask) - (0.5 - mask),
    )
    for name, distance in zip(errors, distances):
        errors[name].append(np.abs(distance - true)[np.abs(true) < 3].mean())

# %%
# The error of :func:`quorbin.reinitialize` falls with the third power of the size; the others stay at a part of a
# sample.

figure, ax = plt.subplots(figsize=(7.5, 4.5), layout="constrained")
for name, values in errors.items():
    ax.loglog(sizes, values, "o-", label=name)
ax.set(xlabel="samples along each axis", ylabel="mean error in samples", xticks=sizes, xticklabels=sizes)
ax.minorticks_off()
ax.grid(alpha=0.3)
ax.legend()
plt.show()
