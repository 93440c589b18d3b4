"""Surfaces in volumes."""

from __future__ import annotations

from typing import NamedTuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import (
    FieldLike,
    Floats,
    NanPolicy,
    Spacing,
    as_affine,
    as_field,
    as_level,
    as_spacing,
    nan_is_outside,
)
from ._progress import Progress, told


class Mesh(NamedTuple):
    """A surface of triangles that share vertices."""

    vertices: Floats
    """Points (z, y, x), or what the affine makes of them; shape (n, 3)."""
    faces: npt.NDArray[np.int32]
    """Indices of vertices, shape (m, 3), counterclockwise seen from outside."""
    normals: Floats
    """One for each vertex: outwards, of length 1, or 0 where there is no gradient."""


def mesh(
    volume: FieldLike,
    *,
    level: float = 0.0,
    spacing: Spacing = 1.0,
    affine: npt.ArrayLike | None = None,
    capped: bool = False,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Mesh:
    """Extract the surface of a volume at a level, by marching cubes (Lorensen and Cline 1987).

    Parameters
    ----------
    volume : array_like
        Values with the axes (z, y, x), inside where at most ``level``. A boolean array is inside where it is true.
    level : float, optional
        The value of the surface. Another one than 0 takes a copy of the volume.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    affine : array_like, optional
        A 4 × 4 matrix that takes sample indices, in the order of the axes, to the world; takes the place of
        ``spacing``, by which gradients are measured all the same.
    capped : bool, optional
        Whether the surface is closed where the inside reaches the faces of the volume.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    Mesh
        Vertices, faces and normals, in the order of the axes.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> z, y, x = np.mgrid[:32, :32, :32]
    >>> surface = quorbin.mesh(np.sqrt((z - 15.7) ** 2 + (y - 16.2) ** 2 + (x - 15.9) ** 2) - 10)
    >>> corners = surface.vertices[surface.faces]
    >>> volume = np.linalg.det(corners).sum() / 6
    >>> round(float(volume / (4 / 3 * np.pi * 10**3)), 2)
    0.99
    """
    matrix = None if affine is None else as_affine(affine)
    values = as_field(volume)
    height = as_level(level, volume)
    if height:
        values = values - height
    steps = as_spacing(spacing)
    outside = nan_is_outside(nan)
    vertices, faces, normals = told(progress, "mesh", _core.mesh, values, steps, outside, bool(capped))
    if matrix is None:
        return Mesh(vertices, faces, normals)
    return _placed(vertices, faces, normals, np.broadcast_to(steps, 3), matrix)


def _placed(
    vertices: Floats, faces: npt.NDArray[np.int32], normals: Floats, spacing: Floats, affine: Floats
) -> Mesh:
    linear = affine[:3, :3] / spacing
    determinant = np.linalg.det(linear)
    # Normals go by the inverse transpose, whose sign a mirroring matrix turns over, as it does that of the faces.
    turned = normals @ np.linalg.inv(linear)
    lengths = np.linalg.norm(turned, axis=1, keepdims=True)
    turned /= np.where(lengths > 0, lengths, 1)
    return Mesh(vertices @ linear.T + affine[:3, 3], faces if determinant > 0 else faces[:, ::-1].copy(), turned)
