"""Signed distances."""

from __future__ import annotations

from typing import Literal

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_field, as_result, as_spacing, nan_is_outside
from ._progress import Progress, told

DistanceMethod = Literal["projection", "fmm", "segments", "brute"]


def reinitialize(
    field: FieldLike,
    *,
    spacing: Spacing = 1.0,
    out: Floats | None = None,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Make a field the signed distance to its zero level, and leave that where it is.

    No value changes its side, and a hundred calls move the outline of a disc of radius 40 by less than a millionth
    of its area. Beside the interface the distance is that to the zero level of cubics through four samples an
    axis (Chopp 2001); it is of third order, so that the field may have any slope. All other points take the
    distance to the nearest of those feet.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    out : numpy.ndarray, optional
        Where the result goes, of the field's shape, float64 and in C order; it may be the field itself. An
        operation that is ended by Ctrl-C or by an error on the way leaves the field's values in it.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative inside.

    Raises
    ------
    NoInterface
        If all values are on one side.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> field = (x - 32.3) ** 2 + (y - 31.8) ** 2 - 20**2
    >>> distance = quorbin.reinitialize(field)
    >>> true = np.hypot(x - 32.3, y - 31.8) - 20
    >>> bool(np.abs(distance - true)[np.abs(true) < 3].max() < 1e-4)
    True
    """
    values = as_field(field)
    result = as_result(out, values)
    outside = nan_is_outside(nan)
    told(progress, "distance", _core.reinitialize, values, result, as_spacing(spacing), outside)
    return result


def signed_distance(
    field: FieldLike,
    *,
    spacing: Spacing = 1.0,
    method: DistanceMethod = "projection",
    out: Floats | None = None,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Floats:
    """Compute the signed distance to the zero level of a field by a method of choice.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    method : {"projection", "fmm", "segments", "brute"}, optional
        ``"projection"``: as `reinitialize`, third order beside the interface, and a mask is marched before.
        ``"fmm"``: fast marching (Sethian 1996), first order. ``"segments"``: to the straight pieces of the
        outline, swept (Danielsson 1980), and ``"brute"``: to the nearest of all pieces; both of two axes with
        equal spacings.
    out, nan, progress
        As for `reinitialize`.

    Returns
    -------
    numpy.ndarray
        The signed distance in units of the spacing, negative inside.

    Raises
    ------
    NoInterface
        If all values are on one side.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> mask = np.zeros((5, 5), dtype=bool)
    >>> mask[1:4, 1:4] = True
    >>> quorbin.signed_distance(mask, method="fmm")[2]
    array([ 0.5       , -0.5       , -1.20710678, -0.5       ,  0.5       ])
    """
    values = as_field(field)
    result = as_result(out, values)
    outside = nan_is_outside(nan)
    if not isinstance(method, str):
        raise TypeError(f"method is {method!r}; it must be a string")
    told(progress, "distance", _core.signed_distance, values, result, as_spacing(spacing), outside, method)
    return result
