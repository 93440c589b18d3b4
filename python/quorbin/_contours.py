"""Outlines of regions in pictures."""

from __future__ import annotations

from typing import TYPE_CHECKING, Literal, NamedTuple, overload

from . import _core
from ._arrays import (
    FieldLike,
    Floats,
    NanPolicy,
    Spacing,
    as_field,
    as_level,
    as_number,
    as_spacing,
    nan_is_outside,
)

if TYPE_CHECKING:
    import shapely


class Region(NamedTuple):
    """A connected region: its outline and those of its holes, rings of points (y, x)."""

    outline: Floats
    holes: list[Floats]


@overload
def contours(
    field: FieldLike,
    *,
    level: float = ...,
    closed: bool = ...,
    spacing: Spacing = ...,
    holes: Literal[False] = ...,
    simplify: float = ...,
    nan: NanPolicy = ...,
) -> list[Floats]: ...


@overload
def contours(
    field: FieldLike,
    *,
    level: float = ...,
    closed: bool = ...,
    spacing: Spacing = ...,
    holes: Literal[True],
    simplify: float = ...,
    nan: NanPolicy = ...,
) -> list[Region]: ...


def contours(
    field: FieldLike,
    *,
    level: float = 0.0,
    closed: bool = True,
    spacing: Spacing = 1.0,
    holes: bool = False,
    simplify: float = 0.0,
    nan: NanPolicy = "raise",
) -> list[Floats] | list[Region]:
    """Extract the outlines of the regions where a field is at or below a level.

    Parameters
    ----------
    field : array_like
        Values with the axes (y, x). A boolean array is inside where it is true.
    level : float, optional
        What is at most this is inside. A mask has none but the one there is.
    closed : bool, optional
        Whether regions that reach the border are closed along it. If not, open lines come after the rings.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    holes : bool, optional
        Whether to return regions, each with its holes, instead of all rings in one list. Asks for ``closed``.
    simplify : float, optional
        Leaves out points that are no further than this from the line that takes their place; rings do not come
        to cross (Visvalingam and Whyatt 1993). Asks for ``closed``.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.

    Returns
    -------
    list of numpy.ndarray, or list of Region
        Arrays of the shape (n, 2) with points (y, x), sample index times spacing. The last point of a ring is
        its first one again. Outlines run counterclockwise where x points right and y up, holes clockwise.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> ring = np.abs(np.hypot(y - 31.7, x - 32.2) - 20) - 4
    >>> len(quorbin.contours(ring))
    2
    >>> (region,) = quorbin.contours(ring, holes=True)
    >>> region.outline.shape[1], len(region.holes)
    (2, 1)
    """
    tolerance = as_number(simplify, "simplify", 0)
    if not closed and (holes or tolerance):
        raise ValueError("holes and simplify are for closed contours; leave closed as it is")
    values = as_field(field)
    height = as_level(level, field)
    found = _core.contours(values, as_spacing(spacing), nan_is_outside(nan), height, bool(closed), tolerance, None)
    return as_regions(*found) if holes else as_lines(*found)


def as_lines(points: Floats, starts: list[int], is_outline: list[int], rings: int) -> list[Floats]:
    """Return the rings and open lines that the compiled module has found."""
    lines = [points[start:stop] for start, stop in zip(starts, starts[1:])]
    return [line for line in lines if len(line)]


def as_regions(points: Floats, starts: list[int], is_outline: list[int], rings: int) -> list[Region]:
    """Return the rings as regions with their holes."""
    lines = [points[start:stop] for start, stop in zip(starts, starts[1:])]
    regions: list[Region] = []
    for line, outline in zip(lines[:rings], is_outline):
        if outline:
            regions.append(Region(line, []))
        else:
            regions[-1].holes.append(line)
    return regions


def polygons(
    field: FieldLike,
    *,
    level: float = 0.0,
    spacing: Spacing = 1.0,
    simplify: float = 0.0,
    nan: NanPolicy = "raise",
) -> list[shapely.Polygon]:
    """Extract the regions where a field is at or below a level as polygons of Shapely.

    Parameters
    ----------
    field, level, spacing, simplify, nan
        As for `contours`.

    Returns
    -------
    list of shapely.Polygon
        Regions with their holes. Points are (x, y), as Shapely has them, and not in the order of the axes.

    Raises
    ------
    ImportError
        If Shapely is not installed.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> (polygon,) = quorbin.polygons(np.hypot(y - 31.7, x - 32.2) - 20)
    >>> round(polygon.area / (np.pi * 20**2), 2)
    1.0
    """
    try:
        import shapely
    except ImportError as error:
        raise ImportError("polygons needs Shapely: pip install shapely") from error
    regions = contours(field, level=level, spacing=spacing, holes=True, simplify=simplify, nan=nan)
    return [
        shapely.Polygon(region.outline[:, ::-1], [hole[:, ::-1] for hole in region.holes]) for region in regions
    ]
