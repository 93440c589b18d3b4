"""Fields whose answers are known."""

import numpy as np


def grid(shape, spacing):
    """Coordinates along each axis, in units of the spacing."""
    return np.meshgrid(*(h * np.arange(n) for n, h in zip(shape, spacing)), indexing="ij")


def ball(shape, centre, radius, spacing=None):
    """The distance to a disc or ball."""
    axes = grid(shape, spacing or (1,) * len(shape))
    return np.sqrt(sum((c - at) ** 2 for c, at in zip(axes, centre))) - radius


def box(shape, lowest, highest, spacing=None):
    """A field whose zero level is the surface of a box."""
    axes = grid(shape, spacing or (1,) * len(shape))
    return np.max([np.maximum(low - c, c - high) for c, low, high in zip(axes, lowest, highest)], axis=0)
