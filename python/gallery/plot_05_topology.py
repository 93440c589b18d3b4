"""
A surface that comes apart
==========================

An outline kept as a list of points has to be cut and joined by hand where it meets itself. As the zero level of a
field it comes apart by itself: two balls joined by a thin bar, moved by the curvature of their surface.
"""

import matplotlib.pyplot as plt
import numpy as np

import quorbin

z, y, x = np.mgrid[:48, :48, :96] - np.array([23.7, 23.6, 47.4])[:, None, None, None]
balls = np.minimum(np.hypot(np.hypot(z, y), x - 26), np.hypot(np.hypot(z, y), x + 26)) - 17
bar = np.maximum(np.hypot(z, y) - 7, np.abs(x) - 26)
field = np.minimum(balls, bar)

# %%
# The bar bends more around itself than the balls do, so it shrinks first. In the plane nothing of the kind
# happens: a closed curve becomes round before it is gone.
#
# Vertices are (z, y, x). Matplotlib wants (x, y, z), which mirrors the surface, so its triangles are turned over.

times = (0, 20, 29, 50)
figure, axes = plt.subplots(2, 2, figsize=(9, 5), layout="constrained", subplot_kw={"projection": "3d"})
for ax, begin, end in zip(axes.flat, (0, *times), times):
    if end:
        field = quorbin.curvature_flow(field, end - begin).field
    surface = quorbin.mesh(field)
    ax.plot_trisurf(
        *surface.vertices.T[::-1],
        triangles=surface.faces[:, ::-1],
        color="tab:orange",
        antialiased=False,
        clip_on=False,
    )
    ax.set(xlim=(0, 95), ylim=(0, 47), zlim=(7, 41))
    ax.set_title(f"time {end}, pieces: {len(quorbin.pieces(field))}", y=0.95)
    ax.set_box_aspect((95, 47, 34), zoom=1.9)
    ax.view_init(elev=15, azim=-90)
    ax.set_axis_off()
plt.show()
