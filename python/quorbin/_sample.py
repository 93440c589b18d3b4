"""What a field is between its samples."""

from __future__ import annotations

from typing import NamedTuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_field, as_spacing, nan_is_outside
from ._progress import Progress, told


class Samples(NamedTuple):
    """What `sample` has found at points, with the axes of those before the last one."""

    values: Floats
    """Values of the field."""
    gradients: Floats
    """Gradients in the order of the axes, in value per unit of the spacing."""
    closest: Floats
    """The nearest points of the interface, in the order of the axes."""


def sample(
    field: FieldLike,
    points: npt.ArrayLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Samples:
    """Compute values, gradients and closest points of the interface at any points.

    By cubics through four samples an axis. The closest point is that of a signed distance, so `reinitialize` other
    fields first; it is found by Newton's method, and is the point itself where that finds none, as at corners.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x), inside where ≤ 0.
    points : array_like
        Points (y, x) or (z, y, x), sample index times spacing, along the last axis.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken. In cells beside one nothing is a number.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    Samples
        Arrays; not numbers at points outside the field.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> disc = np.hypot(y - 32, x - 32) - 20
    >>> found = quorbin.sample(disc, [(32, 47.5)])
    >>> found.values.round(2), found.gradients.round(2) + 0.0, found.closest.round(2)
    (array([-4.5]), array([[0., 1.]]), array([[32., 52.]]))
    """
    values = as_field(field)
    at = np.ascontiguousarray(points, dtype=np.float64)
    if at.ndim == 0 or at.shape[-1] != values.ndim:
        raise ValueError(
            f"points have the shape {at.shape}; the last axis must have {values.ndim} coordinates, "
            "in the order of the field's axes"
        )
    points_of_all = at.reshape(-1, values.ndim)
    found = told(progress, "sample", _core.sample, values, as_spacing(spacing), nan_is_outside(nan), points_of_all)
    return Samples(found[0].reshape(at.shape[:-1]), found[1].reshape(at.shape), found[2].reshape(at.shape))
