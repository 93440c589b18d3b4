"""
A narrow band beside the whole grid
===================================

Where the outline alone matters, the values beside it are enough. A band holds these, so that a step costs what the
outline is long, not what the picture is large.
"""

import time

import matplotlib.pyplot as plt
import numpy as np
from skimage import data, transform

import quorbin

horse = ~data.horse().astype(bool)


def enlarged(size):
    """Return the field of the horse on a grid of size × size."""
    return 0.5 - transform.resize(horse.astype(float), (size, size), order=3)


def seconds(level_set, steps=5):
    """Return what a step of motion by curvature takes, with a new distance after each."""
    start = time.perf_counter()
    for _ in range(steps):
        level_set.move_along_curvature()
        level_set.reinitialize()
    return (time.perf_counter() - start) / steps


# %%
# Both classes are for those who step by themselves, and both take the same steps.

sizes = (128, 256, 512, 1024, 2048)
fields = [enlarged(size) for size in sizes]
dense = [seconds(quorbin.LevelSet2D(field)) for field in fields]
band = [seconds(quorbin.Band2D(field)) for field in fields]

# %%
# The points of a band on a small grid, and the times.

few = quorbin.Band2D(fields[0])
figure, axes = plt.subplots(1, 2, figsize=(9, 4.3), layout="constrained")
axes[0].scatter(few.indices[:, 1], few.indices[:, 0], c=few.values, s=4, marker="s", cmap="RdBu")
axes[0].set(aspect="equal", xlim=(0, 127), ylim=(127, 0), title=f"{len(few)} of {128 * 128} points")
axes[0].set_axis_off()
axes[1].loglog(sizes, 1000 * np.array(dense), "o-", label="whole grid")
axes[1].loglog(sizes, 1000 * np.array(band), "o-", label="narrow band")
axes[1].set(xlabel="samples along each axis", ylabel="milliseconds a step", xticks=sizes, xticklabels=sizes)
axes[1].minorticks_off()
axes[1].grid(alpha=0.3)
axes[1].legend()
plt.show()
