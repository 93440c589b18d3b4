"""Files out: fields, masks, outlines and meshes."""

from __future__ import annotations

import os
from collections.abc import Sequence
from typing import Any, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import FieldLike, Floats, Spacing, as_affine, as_field, as_spacing
from ._contours import Region
from ._files import PathLike, path_of

Outlines = Sequence[Union[Floats, Region]]

_FIELD, _MASK, _GREYS = range(3)
_OUTLINE, _HOLE, _OPEN = range(3)


def write(
    path: PathLike,
    field: FieldLike | Outlines | tuple[npt.ArrayLike, ...],
    *,
    spacing: Spacing | None = None,
    affine: npt.ArrayLike | None = None,
    float32: bool = False,
    shape: tuple[int, int] | None = None,
) -> None:
    """Write a field, a mask, outlines or a mesh; the ending of the name tells the format.

    A file that is there is replaced once the new one is whole; if anything goes wrong, it stays as it was.

    Parameters
    ----------
    path : str or os.PathLike
        Of a field with two axes FL2D, NPY or TIFF, or the outline of it as SVG, GeoJSON or CSV; where cairo is
        a part of the build, also drawings, PNG and PDF. With three axes FL3D, FR3D (inside and outside alone),
        NIfTI, NPY, TIFF, VTI or raw doubles, and with ITK NRRD and MetaImage. Of a mask PNG or TIFF, or NIfTI; of
        outlines SVG, GeoJSON or CSV; of a mesh PLY, STL, OBJ or VTP.
    field : array_like, list, or tuple
        Numbers are the values of a field, but unsigned bytes, to PNG, the greys of a picture. A boolean array is
        a mask: 255 inside, 1 in NIfTI. A list has outlines, as `contours` gives them: `Region`, or rings, of which
        those that turn the other way are holes of the one before, and open lines. A tuple is a mesh,
        ``(vertices, faces)`` or ``(vertices, faces, normals)``, as `mesh` gives it.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order. By default that of
        the affine, else 1.
    affine : array_like, optional
        Of volumes: a 4 × 4 matrix from indices to the world, in the order of the axes. NIfTI and VTI keep it.
    float32 : bool, optional
        Whether numbers are written as float32; no value changes its side.
    shape : tuple of int, optional
        The shape of the array that outlines are of, which tells the size of an SVG. By default they fill it.

    Raises
    ------
    OSError
        As FileNotFoundError, PermissionError and others, if the file cannot be written.
    ValueError
        If the format has no place for such an object. The message names the file, the fault and the way out.

    Examples
    --------
    >>> import tempfile
    >>> import numpy as np
    >>> import quorbin
    >>> folder = tempfile.TemporaryDirectory()
    >>> y, x = np.mgrid[:64, :64]
    >>> field = np.hypot(y - 31.7, x - 32.2) - 20
    >>> quorbin.write(folder.name + "/field.npy", field, float32=True)
    >>> quorbin.write(folder.name + "/mask.png", field <= 0)
    >>> quorbin.write(folder.name + "/outline.svg", quorbin.contours(field), shape=field.shape)
    >>> folder.cleanup()
    """
    name = path_of(path)
    if isinstance(field, list) and all(isinstance(line, (np.ndarray, Region)) for line in field):
        _write_outlines(name, field, 1.0 if spacing is None else spacing, shape)
        return
    if isinstance(field, tuple) and len(field) in (2, 3) and np.ndim(field[0]) == 2 and np.shape(field[0])[1] == 3:
        _write_mesh(path, name, *field)
        return
    matrix = None if affine is None else as_affine(affine)
    if spacing is None:
        spacing = 1.0 if matrix is None else [float(h) for h in np.linalg.norm(matrix[:3, :3], axis=0)]
    array = np.asarray(field)
    kind = _FIELD
    if array.dtype == np.bool_:
        kind = _MASK
    elif array.dtype == np.uint8 and array.ndim == 2 and os.fsdecode(path).lower().endswith(".png"):
        kind = _GREYS
    values = as_field(field)
    if matrix is not None and values.ndim != 3:
        raise ValueError(f"{os.fsdecode(path)}: affine is of volumes, with three axes; leave it out")
    if not np.isfinite(values).all():
        raise ValueError(f"{os.fsdecode(path)}: the field holds values that are not finite; replace them")
    _core.write_field(
        name, values, as_spacing(spacing), None if matrix is None else matrix.tolist(), kind, float32
    )


def _write_outlines(name: bytes, outlines: Outlines, spacing: Spacing, shape: tuple[int, int] | None) -> None:
    lines: list[Floats] = []
    roles: list[int] = []

    def add(line: npt.ArrayLike, role: int) -> None:
        points = np.ascontiguousarray(line, dtype=np.float64)
        if points.ndim != 2 or points.shape[1] != 2 or not np.isfinite(points).all():
            raise ValueError("an outline must be an array of finite points (y, x), of the shape (n, 2)")
        lines.append(points if role == _OPEN else points[:-1])
        roles.append(role)

    for outline in outlines:
        if isinstance(outline, Region):
            add(outline.outline, _OUTLINE)
            for hole in outline.holes:
                add(hole, _HOLE)
        elif len(outline) and not np.array_equal(outline[0], outline[-1]):
            add(outline, _OPEN)
        elif len(outline):
            is_hole = _OUTLINE in roles and _area(outline) < 0
            add(outline, _HOLE if is_hole else _OUTLINE)
    steps = np.broadcast_to(as_spacing(spacing), 2)
    if shape is None:
        reach = np.max([line.max(axis=0) for line in lines if len(line)], axis=0, initial=0) / steps
        shape = (int(np.ceil(reach[0])) + 1, int(np.ceil(reach[1])) + 1)
    _core.write_outlines(name, lines, roles, int(shape[1]), int(shape[0]), steps.tolist())


def _area(ring: Floats) -> float:
    y, x = ring[:, 0], ring[:, 1]
    return float(np.sum(x[:-1] * y[1:] - x[1:] * y[:-1])) / 2


def _write_mesh(
    path: PathLike, name: bytes, vertices: Any, faces: Any, normals: npt.ArrayLike | None = None
) -> None:
    points = np.ascontiguousarray(vertices, dtype=np.float64)
    corners = np.asarray(faces)
    if corners.ndim != 2 or corners.shape[1] != 3 or corners.dtype.kind not in "iu":
        raise ValueError(f"{os.fsdecode(path)}: faces must be an array of whole numbers of the shape (m, 3)")
    if corners.size and not 0 <= corners.min() <= corners.max() < len(points):
        indices = f"{corners.min()} to {corners.max()}"
        raise ValueError(
            f"{os.fsdecode(path)}: faces have the indices {indices} of vertices, of which there are {len(points)}"
        )
    across = _normals(points, corners) if normals is None else np.ascontiguousarray(normals, dtype=np.float64)
    if across.shape != points.shape:
        raise ValueError(f"{os.fsdecode(path)}: there must be as many normals as vertices, of the same shape")
    if not (np.isfinite(points).all() and np.isfinite(across).all()):
        raise ValueError(f"{os.fsdecode(path)}: the mesh holds values that are not finite; replace them")
    _core.write_mesh(name, points, np.ascontiguousarray(corners, dtype=np.int32), across)


def _normals(points: Floats, faces: npt.NDArray[Any]) -> Floats:
    """Return those of the faces at each vertex, by their area; (z, y, x) turns their direction over."""
    a, b, c = (points[faces[:, corner]] for corner in range(3))
    across = np.cross(b - a, c - a)
    sums = np.zeros_like(points)
    for corner in range(3):
        np.add.at(sums, faces[:, corner], across)
    lengths = np.linalg.norm(sums, axis=1, keepdims=True)
    normals: Floats = sums / np.where(lengths > 0, lengths, 1)
    return normals
