"""Connected parts of the inside, and holes in it."""

from __future__ import annotations

import operator
from typing import Any, NamedTuple

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_field, as_spacing, nan_is_outside
from ._measure import Figures2D, Figures3D, as_figures
from ._progress import Progress, told


class Piece2D(NamedTuple):
    """A connected part of the inside of a picture."""

    figures: Figures2D
    """Those of this piece alone."""
    samples: int
    """How many lie in it."""
    inside: tuple[int, int]
    """The index (y, x) of its first sample, in the order of the array."""


class Piece3D(NamedTuple):
    """A connected part of the inside of a volume."""

    figures: Figures3D
    """Those of this piece alone."""
    samples: int
    """How many lie in it."""
    inside: tuple[int, int, int]
    """The index (z, y, x) of its first sample, in the order of the array."""


def pieces(
    field: FieldLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> list[Any]:  # as the number of axes says, which types do not
    """Find the connected parts of the inside, and measure each.

    Samples are connected to their four neighbours, in volumes to six: what touches by a diagonal is apart.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    list of Piece2D or of Piece3D
        In the order of their first samples.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :96]
    >>> field = np.minimum(np.hypot(y - 31, x - 30) - 15, np.hypot(y - 31, x - 70) - 10)
    >>> for piece in quorbin.pieces(field):
    ...     print(piece.inside, piece.samples)
    (16, 30) 709
    (21, 70) 317
    """
    values = as_field(field)
    found = told(progress, "pieces", _core.pieces, values, as_spacing(spacing), nan_is_outside(nan))
    piece: Any = Piece2D if values.ndim == 2 else Piece3D
    return [piece(as_figures(figures), samples, inside) for figures, samples, inside in found]


def largest_pieces(
    field: FieldLike,
    count: int,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Keep the connected parts of the inside that have the largest area or volume.

    Parameters
    ----------
    field, spacing, nan, progress
        As for `pieces`.
    count : int
        How many are kept, of equal ones those that come first.

    Returns
    -------
    numpy.ndarray
        The signed distance to what is kept, negative inside. A copy of the field if no piece is left out; all
        values are outside if none is left.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :96]
    >>> field = np.minimum(np.hypot(y - 31, x - 30) - 15, np.hypot(y - 31, x - 70) - 10)
    >>> [piece.inside for piece in quorbin.pieces(quorbin.largest_pieces(field, 1))]
    [(16, 30)]
    """
    values = as_field(field)
    wanted = operator.index(count)
    if wanted < 0:
        raise ValueError(f"count is {wanted}; it must be at least 0")
    most = min(wanted, values.size)
    return told(progress, "pieces", _core.largest_pieces, values, as_spacing(spacing), nan_is_outside(nan), most)


def without_holes_below(
    field: FieldLike,
    size: float,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Fill the holes whose area or volume is below a size.

    A hole is a part of the outside, connected by diagonals too, that does not reach the border of the field.

    Parameters
    ----------
    field, spacing, nan, progress
        As for `pieces`.
    size : float
        Area or volume in units of the spacing.

    Returns
    -------
    numpy.ndarray
        The signed distance, negative inside. A copy of the field if no hole is filled.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> ring = np.abs(np.hypot(y - 31.7, x - 32.2) - 15) - 5
    >>> len(quorbin.contours(ring)), len(quorbin.contours(quorbin.without_holes_below(ring, 400)))
    (2, 1)
    """
    values = as_field(field)
    steps, outside = as_spacing(spacing), nan_is_outside(nan)
    return told(progress, "holes", _core.without_holes_below, values, steps, outside, float(size))
