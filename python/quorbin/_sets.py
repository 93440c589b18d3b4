"""Sets of points inside: unions, intersections, differences and complements."""

from __future__ import annotations

from typing import Callable

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_field, as_spacing, nan_is_outside, same_shape
from ._progress import Progress, Tell, told

_Combination = Callable[[Floats, Floats, "list[float]", bool, Tell], Floats]


def _combined(
    combine: _Combination, a: FieldLike, b: FieldLike, spacing: Spacing, nan: NanPolicy, progress: Progress
) -> Floats:
    first, second = same_shape(as_field(a), as_field(b))
    return told(progress, "sets", combine, first, second, as_spacing(spacing), nan_is_outside(nan))


def union(
    a: FieldLike,
    b: FieldLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Compute the signed distance to what is inside of one field or of both.

    Parameters
    ----------
    a, b : array_like
        Values of the same shape with the axes (y, x) or (z, y, x), inside where ≤ 0. A boolean array is inside
        where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative inside. If there is no interface, because nothing
        or everything is inside, the values are the smaller of the two.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :96]
    >>> left, right = np.hypot(y - 31.7, x - 30.2) - 15, np.hypot(y - 31.7, x - 65.2) - 15
    >>> both = quorbin.union(left, right)
    >>> len(quorbin.pieces(both))
    2
    """
    return _combined(_core.union, a, b, spacing, nan, progress)


def intersection(
    a: FieldLike,
    b: FieldLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Compute the signed distance to what is inside of both fields.

    Parameters
    ----------
    a, b, spacing, nan, progress
        As for `union`.

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative inside. If there is no interface, as where the two
        are apart, the values are the larger of the two.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> disc = np.hypot(y - 31.7, x - 32.2) - 20
    >>> half = quorbin.intersection(disc, x - 32.2)  # what of it lies at x ≤ 32.2
    >>> round(quorbin.measure(half).area / (np.pi * 20**2), 2)
    0.5
    """
    return _combined(_core.intersection, a, b, spacing, nan, progress)


def difference(
    a: FieldLike,
    b: FieldLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Compute the signed distance to what is inside of the first field and not of the second.

    Parameters
    ----------
    a, b, spacing, nan, progress
        As for `union`.

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative inside. If there is no interface, the values are
        the larger of the first and the negated second.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> distance = np.hypot(y - 31.7, x - 32.2)
    >>> ring = quorbin.difference(distance - 20, distance - 10)
    >>> round(quorbin.measure(ring).area / (np.pi * (20**2 - 10**2)), 2)
    1.0
    """
    return _combined(_core.difference, a, b, spacing, nan, progress)


def complement(
    field: FieldLike, *, spacing: Spacing = 1.0, nan: NanPolicy = "raise", progress: Progress = None
) -> Floats:
    """Compute the signed distance to what is not inside of a field.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing, nan, progress
        As for `union`.

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative where the field is outside. If there is no
        interface, the negated values.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> disc = np.hypot(y - 31.7, x - 32.2) - 20
    >>> bool(quorbin.complement(disc)[32, 32] > 19)
    True
    """
    values = as_field(field)
    return told(progress, "complement", _core.complement, values, as_spacing(spacing), nan_is_outside(nan))
