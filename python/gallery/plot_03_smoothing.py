"""
Smoothing without shrinking
===========================

Motion by curvature takes noise away and makes shapes smaller: any closed curve loses an area of 2π in unit time.
There are two ways to keep the size.
"""

import matplotlib.pyplot as plt
from skimage import data

import quorbin

coins = data.coins()[88:228, 12:].astype(float)
field = quorbin.otsu(coins) - coins

# %%
# ``constant_volume`` moves the whole outline outwards by as much as it has lost, so that the area in all stays the
# same. ``noise_radius`` moves only what bends within that many samples: grain goes, and the coins keep their rims.

time = 80
fields = {
    "level of Otsu": field,
    "motion by curvature": quorbin.curvature_flow(field, time).field,
    "at constant area": quorbin.curvature_flow(field, time, constant_volume=True).field,
    "noise within 3 samples": quorbin.curvature_flow(field, time, noise_radius=3).field,
}

# %%
# By plain motion the rims of twelve coins lose 12 · 2π · 80 = 6032 square samples, of which the holes within them,
# which close, give some back.

figure, axes = plt.subplots(2, 2, figsize=(9, 4), layout="constrained")
for ax, (title, values) in zip(axes.flat, fields.items()):
    ax.imshow(coins, cmap="gray")
    for outline in quorbin.contours(values):
        ax.plot(outline[:, 1], outline[:, 0], color="tab:orange", linewidth=1.2)
    ax.set_title(f"{title}: area {quorbin.measure(values).area:.0f}")
    ax.set_axis_off()
plt.show()
