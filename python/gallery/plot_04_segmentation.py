"""
Regions of coins and of a head
==============================

A level splits grey values, sample by sample. :func:`quorbin.segment` moves an outline until the two regions are
each of about one grey and the curve between them is short, so that grain does not count.
"""

import os
from pathlib import Path

import matplotlib.pyplot as plt
from skimage import data

import quorbin

folder = Path(os.environ.get("QUORBIN_DATA", "."))
coins = data.coins()[88:228, 180:]
head = quorbin.read(folder / "BrainProtonDensitySliceBorder20.png").values[20:240, 15:207]

# %%
# ``weight`` says how much a short curve counts beside the greys: with enough of it a coin has no marks, with less
# the thin skull stays.

figure, axes = plt.subplots(2, 2, figsize=(9, 7.6), layout="constrained", width_ratios=(204 / 140, 192 / 220))
for column, picture, weight in zip(axes.T, (coins, head), (0.4, 0.1)):
    level = quorbin.otsu(picture)
    found = quorbin.segment(picture, weight=weight)
    titles = f"level of Otsu: {level:.0f}", f"weight {weight}, {found.steps} steps"
    for ax, field, title in zip(column, (level - picture, found.field), titles):
        outlines = quorbin.contours(field)
        ax.imshow(picture, cmap="gray")
        for outline in outlines:
            ax.plot(outline[:, 1], outline[:, 0], color="tab:orange", linewidth=1.2)
        ax.set_title(f"{title}, {len(outlines)} curves")
        ax.set_axis_off()
plt.show()
