"""Shapes grown and shrunk by true distances."""

from __future__ import annotations

from typing import Callable

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_field, as_number, as_spacing, nan_is_outside
from ._progress import Progress, Tell, told

_Change = Callable[[Floats, "list[float]", bool, float, Tell], Floats]


def _changed(
    change: _Change, field: FieldLike, amount: float, spacing: Spacing, nan: NanPolicy, progress: Progress
) -> Floats:
    values = as_field(field)
    return told(progress, "offset", change, values, as_spacing(spacing), nan_is_outside(nan), amount)


def offset(
    field: FieldLike,
    distance: float,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Move the interface outwards by a true distance, or inwards by a negative one.

    Outwards convex corners become round, and inwards concave ones. What leaves the field is cut off at its border.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0; they need not be a distance. A boolean array is
        inside where it is true.
    distance : float
        How far, in units of the spacing.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    numpy.ndarray
        The signed distance to the moved interface, negative inside. If there is no interface, or none is left,
        all values are of one side.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> larger = quorbin.offset(np.hypot(y - 31.7, x - 32.2) - 20, 5)
    >>> round(quorbin.measure(larger).area / (np.pi * 25**2), 2)
    1.0
    """
    return _changed(_core.offset, field, as_number(distance, "distance"), spacing, nan, progress)


def opened(
    field: FieldLike,
    radius: float,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Take away what a disc or ball of a radius does not fit into, and round convex corners.

    Parameters
    ----------
    field, spacing, nan, progress
        As for `offset`.
    radius : float
        At least 0, in units of the spacing.

    Returns
    -------
    numpy.ndarray
        The signed distance, negative inside; all values are of one side if nothing is left.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> mask = np.zeros((40, 40), dtype=bool)
    >>> mask[10:30, 10:30] = True
    >>> mask[20:22, 30:38] = True  # a spike
    >>> bool(mask[20, 34]), bool(quorbin.opened(mask, 3)[20, 34] <= 0)
    (True, False)
    """
    return _changed(_core.opened, field, as_number(radius, "radius", 0), spacing, nan, progress)


def closed(
    field: FieldLike,
    radius: float,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Fill what a disc or ball of a radius outside cannot reach, and round concave corners.

    What meets the border of the field on the way out stays there.

    Parameters
    ----------
    field, spacing, nan, progress
        As for `offset`.
    radius : float
        At least 0, in units of the spacing.

    Returns
    -------
    numpy.ndarray
        The signed distance, negative inside.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> mask = np.zeros((40, 40), dtype=bool)
    >>> mask[10:30, 10:30] = True
    >>> mask[20:22, 22:30] = False  # a slit
    >>> bool(mask[20, 24]), bool(quorbin.closed(mask, 3)[20, 24] <= 0)
    (False, True)
    """
    return _changed(_core.closed, field, as_number(radius, "radius", 0), spacing, nan, progress)
