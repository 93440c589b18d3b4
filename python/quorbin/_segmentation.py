"""Regions of pictures."""

from __future__ import annotations

import logging
from typing import Literal, NamedTuple

import numpy as np

from . import _core
from ._arrays import FieldLike, Floats, Spacing, as_field, as_spacing
from ._progress import Progress, telling


class Segmentation(NamedTuple):
    """What `segment` has come to."""

    field: Floats
    """The signed distance to the outline, negative inside."""
    mean_inside: float
    """The mean of the image inside, and that outside, at the last step."""
    mean_outside: float
    steps: int
    """How many steps it took."""
    still: bool
    """Whether the outline has come to rest: it moves by less than a tenth of a sample in ten steps."""


def otsu(image: FieldLike) -> float:
    """Compute Otsu's threshold (1979): the level that splits the values into the two most distinct classes.

    Parameters
    ----------
    image : array_like
        Values of any shape.

    Returns
    -------
    float
        The level, half way between the values on its two sides. ``otsu(image) - image`` is a field, inside where
        the image is bright.

    Examples
    --------
    >>> import quorbin
    >>> quorbin.otsu([[10, 12, 200], [11, 210, 190]])
    101.0
    """
    return float(_core.otsu(_as_image(image)))


def segment(
    image: FieldLike,
    *,
    weight: float = 0.2,
    level: float | None = None,
    inside: Literal["above", "below"] = "above",
    init: FieldLike | None = None,
    spacing: Spacing = 1.0,
    max_steps: int = 5000,
    implicit: bool = False,
    band: bool = False,
    progress: Progress = None,
) -> Segmentation:
    """Split a picture into two regions of about constant grey with a short outline between them.

    The outline moves by weight · curvature + (I - c_in)² - (I - c_out)², with the image I scaled to 0..1 and its
    means on both sides, until it is still (Chan and Vese 2001).

    Parameters
    ----------
    image : array_like
        Values with the axes (y, x).
    weight : float, optional
        Of the curvature: the larger, the smoother the outline and the more specks go.
    level : float, optional
        The value at whose outline it starts; by default Otsu's threshold.
    inside : {"above", "below"}, optional
        What is inside at the start.
    init : array_like, optional
        The start, instead of a level: a mask, true inside, or a field, inside where ≤ 0.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    max_steps : int, optional
        Stops after so many steps.
    implicit : bool, optional
        Semi-implicit steps, in which the outline moves by up to a sample.
    band : bool, optional
        Explicit steps on a narrow band around the outline: faster, but finds nothing far from the start.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    Segmentation
        The field, the means of the image on both sides, the number of steps, and whether the outline is still. If
        it is not, a warning is logged.

    Raises
    ------
    NoInterface
        If the start has no outline, or nothing is left of it.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> disc = np.hypot(y - 31.7, x - 32.2) <= 20
    >>> noise = np.random.default_rng(1).normal(0, 30, disc.shape)
    >>> result = quorbin.segment(np.where(disc, 180, 80) + noise)
    >>> bool(np.mean((result.field <= 0) == disc) > 0.995)
    True
    """
    values = _as_image(image)
    if values.ndim != 2:
        raise ValueError(f"the image has {values.ndim} axes; segment takes 2, (y, x)")
    if not 1e-6 <= weight <= 1e6:
        raise ValueError(f"weight is {weight}; give a number from 1e-6 to 1e6")
    if max_steps < 1:
        raise ValueError(f"max_steps is {max_steps}; give a number from 1")
    if inside not in ("above", "below"):
        raise ValueError(f'inside is {inside!r}; it can be "above" or "below"')
    if implicit and band:
        raise ValueError("implicit and band exclude each other; give one of them")
    if init is not None and level is not None:
        raise ValueError("level and init exclude each other; give one of them")
    if init is not None:
        field = np.array(as_field(init))
        if field.shape != values.shape:
            raise ValueError(f"init has the shape {field.shape}; the image has {values.shape}")
    else:
        start = otsu(values) if level is None else float(level)
        field = start - values if inside == "above" else values - start
    outside = field > 0
    if np.isnan(field).any():
        raise ValueError("the start holds values that are not numbers; replace them")
    if outside.all() or not outside.any():
        raise _core.NoInterface("the start has no outline; choose another level or init")
    with telling(progress, "segment") as tell:
        mean_inside, mean_outside, steps, still = _core.segment(
            values, field, as_spacing(spacing), float(weight), max_steps, implicit, band, tell
        )
    if not still:
        logging.getLogger("quorbin").warning("segment: still moving after %d steps; give more max_steps", steps)
    low, high = float(values.min()), float(values.max())
    span = high - low or 1.0
    return Segmentation(field, low + span * mean_inside, low + span * mean_outside, steps, still)


def _as_image(image: FieldLike) -> Floats:
    values = np.asarray(image)
    values = values.astype(np.float64) if values.dtype == np.bool_ else as_field(image)
    if not values.size:
        raise ValueError("the image is empty")
    bad = ~np.isfinite(values)
    if bad.any():
        index = list(map(int, np.argwhere(bad)[0]))
        raise ValueError(f"the value at {index} is not finite; replace it")
    return values
