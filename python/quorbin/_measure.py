"""Figures of insides, and how two of them differ."""

from __future__ import annotations

from typing import Any, NamedTuple

from . import _core
from ._arrays import FieldLike, NanPolicy, Spacing, as_field, as_level, as_spacing, nan_is_outside, same_shape
from ._progress import Progress, told

Point2D = tuple[float, float]
Point3D = tuple[float, float, float]


class Figures2D(NamedTuple):
    """Figures of the inside of a picture, in units of the spacing. Points are (y, x)."""

    area: float
    """What is inside."""
    perimeter: float
    """Length of all outlines, those of holes and those along the border included."""
    centroid: Point2D
    """The centre of the area; not a number where nothing is inside."""
    lowest: Point2D
    """The corner of the bounding box with the smallest coordinates."""
    highest: Point2D
    """The corner with the largest."""
    total_curvature: float
    """Integral of the curvature along all outlines: 2π for each region, −2π for each hole."""


class Figures3D(NamedTuple):
    """Figures of the inside of a volume, in units of the spacing. Points are (z, y, x)."""

    volume: float
    """What is inside."""
    surface_area: float
    """Of the closed surface, what lies in the faces of the volume included."""
    centroid: Point3D
    """The centre of the volume; not a number where nothing is inside."""
    lowest: Point3D
    """The corner of the bounding box with the smallest coordinates."""
    highest: Point3D
    """The corner with the largest."""
    total_mean_curvature: float
    """Integral of the mean of the principal curvatures over the closed surface: 4πr for a ball."""


class InterfaceDistance(NamedTuple):
    """Distances from one interface to another, in units of the spacing."""

    mean: float
    """Over its length or area."""
    largest: float
    """Of any of its points."""


class Comparison(NamedTuple):
    """How two fields differ, in units of the spacing."""

    dice: float
    """Twice the common area or volume over the sum of both: 1 if they agree, 0 if they are apart."""
    symmetric_difference: float
    """Area or volume of what is inside of one alone."""
    mean_distance: float
    """The mean of the two mean distances."""
    hausdorff_distance: float
    """The larger of the two largest distances."""
    from_first: InterfaceDistance
    """From the interface of the first to that of the second."""
    from_second: InterfaceDistance
    """From the interface of the second to that of the first."""


def as_figures(figures: tuple[Any, ...]) -> Any:
    """Return the figures that the compiled module has told one after the other."""
    return Figures2D(*figures) if len(figures[2]) == 2 else Figures3D(*figures)


def measure(
    field: FieldLike,
    *,
    level: float = 0.0,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Any:  # as the number of axes says, which types do not
    """Measure the inside of a field: its size, its interface, where it lies and how it bends.

    The figures are those of the closed outlines that `contours` gives, or of the surface that `mesh` gives with
    ``capped``. Errors are of second order in the spacings where the interface is smooth.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x) or (z, y, x). A boolean array is inside where it is true.
    level : float, optional
        What is at most this is inside. Another one than 0 takes a copy of the field.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    Figures2D or Figures3D
        By the number of axes (for type checkers any; those of `LevelSet2D.measure` and its like are known). Where
        nothing is inside sizes are 0, and points are not numbers.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> figures = quorbin.measure(np.hypot(y - 31.7, x - 32.2) - 20)
    >>> round(figures.area / (np.pi * 20**2), 2), round(figures.perimeter / (2 * np.pi * 20), 2)
    (1.0, 1.0)
    >>> [round(c, 1) for c in figures.centroid]  # (y, x)
    [31.7, 32.2]
    """
    values = as_field(field)
    height = as_level(level, field)
    if height:
        values = values - height
    return as_figures(told(progress, "measure", _core.measure, values, as_spacing(spacing), nan_is_outside(nan)))


def compare(
    a: FieldLike,
    b: FieldLike,
    *,
    spacing: Spacing = 1.0,
    nan: NanPolicy = "raise",
    progress: Progress = None,
) -> Comparison:
    """Compare the insides of two fields, and measure how far apart their interfaces are.

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
    Comparison
        Overlap and distances. Distances are not numbers where a field has no interface.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> distance = np.hypot(y - 31.7, x - 32.2)
    >>> comparison = quorbin.compare(distance - 20, distance - 18)
    >>> round(comparison.dice, 3), round(comparison.hausdorff_distance, 2)
    (0.895, 2.0)
    """
    first, second = same_shape(as_field(a), as_field(b))
    found = told(progress, "compare", _core.compare, first, second, as_spacing(spacing), nan_is_outside(nan))
    return Comparison(*found[:4], InterfaceDistance(*found[4]), InterfaceDistance(*found[5]))
