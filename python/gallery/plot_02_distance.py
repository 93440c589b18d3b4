"""
Distance to an outline
======================

A signed distance tells of every point how far it is from the outline, negative inside. Thickness, offsets, and the
way back to the nearest edge can be read from it.
"""

import matplotlib.pyplot as plt
import numpy as np
from scipy import ndimage
from skimage import data

import quorbin

horse = ~data.horse().astype(bool)  # true inside

# %%
# A mask has no more of its outline than which samples are in. :func:`quorbin.smooth_mask` puts a smooth curve
# between the samples, encloses the same area, and gives the distance to that curve. A transform of the mask itself
# measures from sample to sample, and its lines of equal distance show the steps.

distance = quorbin.smooth_mask(horse)
by_samples = ndimage.distance_transform_edt(~horse) - ndimage.distance_transform_edt(horse)

# %%
# Lines of equal distance, ten samples apart on the left and two on the right:

figure = plt.figure(figsize=(9, 5), layout="constrained")
left, right = figure.subfigures(1, 2, width_ratios=(7, 3))
ax = left.subplots()
view = ax.imshow(distance, cmap="RdBu", vmin=-100, vmax=100)
ax.contour(distance, np.arange(-90, 91, 10), colors="k", linewidths=0.3, linestyles="solid")
ax.contour(distance, [0], colors="k", linewidths=1.5)
ax.set_title("signed distance in samples")
ax.set_axis_off()
left.colorbar(view, ax=ax, orientation="horizontal", shrink=0.6)
for ax, values, title in zip(
    right.subplots(2), (distance, by_samples), ("to the smooth outline", "from sample to sample")
):
    ax.imshow(horse, cmap="Greys", vmax=4)
    ax.contour(values, np.arange(-8, 9, 2), colors="tab:blue", linewidths=0.9, linestyles="solid")
    ax.contour(values, [0], colors="k", linewidths=1.5)
    ax.set(xlim=(345, 400), ylim=(115, 70), title=title)
    ax.set_axis_off()
plt.show()
