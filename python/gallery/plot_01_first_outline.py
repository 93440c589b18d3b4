"""
A first outline
===============

A picture becomes a field, and the field has an outline: the curve where its values change their sign. Nothing else
is ever moved, measured or drawn.
"""

import matplotlib.pyplot as plt
from skimage import data

import quorbin

coins = data.coins()

# %%
# Inside is where a field is at most zero. So the coins, which are bright, are inside of *level − picture*. Otsu's
# method finds the level between two kinds of grey.

level = quorbin.otsu(coins)
field = level - coins

# %%
# The outline at that level follows every grain of the picture. Motion by curvature for a short time takes the
# grain away: what is left of it after the time *t* is about √(2 *t*) samples wide or wider.

smooth = quorbin.curvature_flow(field, time=4).field

# %%
# Contours are arrays of points (y, x), as everything in NumPy is; Matplotlib wants x first.

figure, axes = plt.subplots(1, 2, figsize=(9, 3.9), layout="constrained")
for ax, values, title in zip(axes, (field, smooth), (f"level {level:.0f}", "after motion by curvature")):
    outlines = quorbin.contours(values)
    ax.imshow(coins, cmap="gray")
    for outline in outlines:
        ax.plot(outline[:, 1], outline[:, 0], color="tab:orange", linewidth=1.2)
    ax.set_title(f"{title}: {len(outlines)} curves")
    ax.set_axis_off()
plt.show()
