"""
Polygons for Shapely and maps
=============================

Regions leave as polygons with their holes, to be counted, measured, cut and joined by Shapely, and to be written
as GeoJSON, which geographic information systems read.
"""

import json

import matplotlib.pyplot as plt
import shapely
from skimage import data

import quorbin

sky = data.hubble_deep_field()[:400, :500].mean(axis=2)

# %%
# Galaxies are bright. A little motion by curvature takes single samples away, and ``simplify`` leaves points out
# that are no further than a quarter of a sample from the line that takes their place.

field = quorbin.curvature_flow(60 - sky, time=1).field
galaxies = [region for region in quorbin.polygons(field, simplify=0.25) if region.area > 20]

# %%
# Shapely knows the rest: here, what lies within 6 samples of each other.

groups = shapely.union_all([region.buffer(6) for region in galaxies])

# %%
# GeoJSON is a dictionary. :func:`quorbin.write` writes outlines in one call; this is how to add properties of your
# own.

document = {
    "type": "FeatureCollection",
    "features": [
        {"type": "Feature", "geometry": shapely.geometry.mapping(region), "properties": {"area": region.area}}
        for region in galaxies
    ],
}
print(len(galaxies), "galaxies in", len(groups.geoms), "groups,", len(json.dumps(document)) // 1000, "kB")

# %%
# Polygons are the one thing here whose points are (x, y).

figure, ax = plt.subplots(figsize=(7.5, 6), layout="constrained")
ax.imshow(sky, cmap="gray")
for group in groups.geoms:
    ax.plot(*group.exterior.xy, color="tab:blue", linewidth=0.8)
for region in galaxies:
    ax.fill(*region.exterior.xy, facecolor="none", edgecolor="tab:orange", linewidth=1.2)
ax.set(xlim=(0, 500), ylim=(400, 0))
ax.set_title(f"{len(galaxies)} galaxies in {len(groups.geoms)} groups")
ax.set_axis_off()
plt.show()
