"""Level sets on narrow bands of points around the interface, for those who step by themselves."""

from __future__ import annotations

import math
from collections.abc import Sequence
from typing import Any, ClassVar, Literal, TypeVar, overload

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_count, as_field, as_spacing, nan_is_outside
from ._contours import Region, as_lines, as_regions
from ._level_sets import LevelSet2D, LevelSet3D
from ._measure import Figures2D, Figures3D
from ._mesh import Mesh
from ._progress import Progress, telling
from ._stepping import (
    FlowResult,
    Guard,
    Speed,
    Stepping,
    checked_points,
    checked_spacing,
    explicit_time,
    speeds_and_time,
)

BandMethod = Literal["projection", "fmm"]
Indices = npt.NDArray[np.int32]
_Self = TypeVar("_Self", bound="_Band")


class _Band(Stepping):
    """What bands of two and of three axes have in common."""

    _axes: ClassVar[int]
    _kind: ClassVar[Any]
    _grid: ClassVar[Any]

    def __init__(
        self,
        field: FieldLike,
        spacing: Spacing | None = None,
        *,
        width: float | None = None,
        nan: NanPolicy = "raise",
        progress: Progress = None,
    ) -> None:
        if isinstance(field, self._grid):
            if spacing is not None:
                raise ValueError("a level set has its own spacing; leave spacing out")
            field, spacing = field.values, field.spacing
        values = as_field(field)
        if values.ndim != self._axes:
            raise ValueError(f"{type(self).__name__} takes a field of {self._axes} axes; it has {values.ndim}")
        with telling(progress, "band") as tell:
            band = self._kind.of_field(
                values, as_spacing(1.0 if spacing is None else spacing), nan_is_outside(nan), width or 0.0, tell
            )
        self._set(band)

    def _set(self, band: Any) -> None:
        self._band = band
        self._guard = Guard()

    @classmethod
    def _made(cls: type[_Self], band: Any) -> _Self:
        made = cls.__new__(cls)
        made._set(band)
        return made

    @classmethod
    def from_points(
        cls: type[_Self], indices: npt.ArrayLike, values: npt.ArrayLike, spacing: Spacing = 1.0
    ) -> _Self:
        """Make a band of points and their values, as they are.

        Parameters
        ----------
        indices : array_like
            Whole numbers in the order of the axes, of the shape (n, axes). They may be negative.
        values : array_like
            Finite numbers, of the shape (n,).
        spacing : float or sequence of float, optional
            Distance between neighbouring samples: one for all axes, or one for each in their order.

        Returns
        -------
        Band2D or Band3D
            The band; `reinitialize` gives it its width.
        """
        places, numbers = checked_points(indices, values, cls._axes)
        return cls._made(cls._kind.of_points(places, numbers, list(checked_spacing(spacing, cls._axes))))

    def __len__(self) -> int:
        with self._guard:
            return int(self._band.size())

    def __repr__(self) -> str:
        return f"{type(self).__name__}(points={len(self)}, spacing={self.spacing})"

    def __getstate__(self) -> dict[str, Any]:
        indices, values = self._points()
        return {"indices": indices, "values": values, "spacing": self.spacing}

    def __setstate__(self, state: dict[str, Any]) -> None:
        self._set(self._kind.of_points(state["indices"], state["values"], list(state["spacing"])))

    def __copy__(self: _Self) -> _Self:
        with self._guard:
            return self._made(self._band.copy())

    def _points(self) -> tuple[Indices, Floats]:
        with self._guard:
            points: tuple[Indices, Floats] = self._band.points()
            return points

    @property
    def indices(self) -> Indices:
        """The points that are stored, in the order of the axes: a copy of the shape (n, axes)."""
        return self._points()[0]

    @property
    def values(self) -> Floats:
        """Their values in the same order, a copy."""
        return self._points()[1]

    @property
    def spacing(self) -> tuple[float, ...]:
        """Distances between neighbouring samples along the axes."""
        with self._guard:
            return tuple(self._band.spacing())

    def to_field(self, shape: Sequence[int]) -> Floats:
        """Write the band to an array.

        Parameters
        ----------
        shape : sequence of int
            That of the array, whose first sample has the index 0 on all axes. Points outside are left out.

        Returns
        -------
        numpy.ndarray
            The values. Samples that are not stored get the largest magnitude that is, with the sign of their side;
            of an empty band all are infinite.
        """
        sizes = [int(size) for size in shape]
        if len(sizes) != self._axes or min(sizes) < 0:
            raise ValueError(f"shape is {tuple(shape)}; it must be {self._axes} numbers that are at least 0")
        if max(sizes) > 2**31 - 1:
            raise ValueError("shape has more than 2147483647 samples along an axis")
        with self._guard:
            field: Floats = self._band.to_field(sizes)
            return field

    def reinitialize(
        self, method: BandMethod = "projection", *, width: float | None = None, progress: Progress = None
    ) -> None:
        """Make the values the signed distance to their zero level, of the points around it.

        Parameters
        ----------
        method : {"projection", "fmm"}, optional
            ``"projection"``: third order beside the interface. ``"fmm"``: fast marching, first order.
        width : float, optional
            By projection: how far from the interface points pass their distance on, in units of the spacing; the
            band then has these and their neighbours. By default 2.1 times the largest spacing.
        progress : bool or callable, optional
            True shows a bar where tqdm is installed; a function is called with (done, total).

        Raises
        ------
        NoInterface
            If there is none in the band.
        """
        with self._guard, telling(progress, "distance") as tell:
            self._band.reinitialize(method, width or 0.0, tell)

    def move_along_curvature(self, steps: int = 1, *, progress: Progress = None) -> float:
        """Take explicit steps of φt = Δφ, of 0.95 of the longest stable time.

        Points of which a neighbour is not stored leave the band, so that each step takes off a layer:
        `reinitialize` it after each step or every second one.

        Parameters
        ----------
        steps : int, optional
            How many.
        progress : bool or callable, optional
            True shows a bar where tqdm is installed; a function is called with (done, total).

        Returns
        -------
        float
            The time of these steps: 0.95 · steps / Σ (2 / h²).
        """
        steps = as_count(steps, "steps")
        time = 0.95 * steps * explicit_time(self.spacing)
        with self._guard, telling(progress, "steps") as tell:
            self._band.move_along_curvature(steps, tell)
        return time

    def move_with_speed(self, speed: Speed, *, limit: float = math.inf) -> float:
        """Take an explicit step of ``φt + F |∇φ| = 0``: the interface moves at the speed F outwards.

        By upwind differences of first order (Rouy and Tourin 1992). Points of which a neighbour is not stored stay
        as they are; `reinitialize` the band after each step or every second one.

        Parameters
        ----------
        speed : float, array_like or callable
            F: one number, one for each point in the order of `indices`, or a function that is given the values and
            returns these. Inwards where it is negative.
        limit : float, optional
            The longest time of the step.

        Returns
        -------
        float
            The time of the step: the longest that is stable, ``1 / (max |F| √Σ (1 / h²))``, or the limit; 0 if
            nothing moves and no limit is given.
        """
        told = speed(self.values) if callable(speed) else speed
        speeds, time = speeds_and_time(told, (len(self),), self.spacing, limit)
        with self._guard:
            self._band.move_with_speed(speeds, time)
        return time

    def curvature_flow(self, time: float, *, rate: float = 1.0, progress: Progress = None) -> FlowResult:
        """Move the interface by its curvature for a time, in explicit steps.

        Parameters
        ----------
        time : float
            For how long, in squares of the spacing's unit.
        rate : float, optional
            The factor of the curvature.
        progress : bool or callable, optional
            True shows a bar where tqdm is installed; a function is called with (done, total).

        Returns
        -------
        FlowResult
            How far the flow has come. The band then has four samples to each side, or is empty if the interface
            has vanished.

        Raises
        ------
        NoInterface
            If there is none in the band at the start.
        """
        with self._guard, telling(progress, "curvature flow") as tell:
            return FlowResult(*self._band.curvature_flow(float(time), float(rate), tell))

    def _measured(self, progress: Progress) -> tuple[Any, ...]:
        with self._guard, telling(progress, "measure") as tell:
            figures: tuple[Any, ...] = self._band.measure(tell)
            return figures


class Band2D(_Band):
    """A level set on a narrow band of a plane: memory and time follow the length of the outline.

    A band has no border, and indices may be negative. It is made of a field by `signed_distance`; an outline that
    reaches the border of the field ends there.

    Parameters
    ----------
    field : array_like or LevelSet2D
        Values with the axes (y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order. By default 1, or
        that of the level set.
    width : float, optional
        How far from the interface points pass their distance on, in units of the spacing; the band then has these
        and their neighbours. By default 2.1 times the largest spacing.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Raises
    ------
    NoInterface
        If all values are on one side.

    Notes
    -----
    An object can be used from one thread at a time: while an operation is under way, others raise RuntimeError.
    Different objects can be used at once. Operations may change the order of the points.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> band = quorbin.Band2D(np.hypot(y - 31.7, x - 32.2) - 20)
    >>> flow = band.curvature_flow(50)
    >>> round((np.pi * 20**2 - band.measure().area) / 50 / (2 * np.pi), 2)
    1.0
    >>> len(band) == len(band.indices) == len(band.values)
    True
    >>> band.to_field((64, 64)).shape
    (64, 64)
    """

    _axes = 2
    _kind = _core.Band2D
    _grid = LevelSet2D

    @overload
    def contours(self, *, holes: Literal[False] = ..., simplify: float = ...) -> list[Floats]: ...

    @overload
    def contours(self, *, holes: Literal[True], simplify: float = ...) -> list[Region]: ...

    def contours(self, *, holes: bool = False, simplify: float = 0.0) -> list[Floats] | list[Region]:
        """Extract the closed outlines of the inside.

        Parameters
        ----------
        holes, simplify
            As for `contours`.

        Returns
        -------
        list of numpy.ndarray, or list of Region
            Arrays of points (y, x), index times spacing. If the band is inside beyond its outermost outlines,
            these are the holes of a region whose outline is empty.
        """
        with self._guard:
            found = self._band.contours(simplify)
        return as_regions(*found) if holes else as_lines(*found)

    def measure(self, *, progress: Progress = None) -> Figures2D:
        """Measure the inside, which must be bounded, as `measure` does."""
        return Figures2D(*self._measured(progress))


class Band3D(_Band):
    """A level set on a narrow band of space: memory and time follow the area of the surface.

    A band has no border, and indices may be negative. It is made of a field by `signed_distance`; a surface that
    reaches the border of the field ends there.

    Parameters
    ----------
    field : array_like or LevelSet3D
        Values with the axes (z, y, x), inside where ≤ 0. A boolean array is inside where it is true.
    spacing, width, nan, progress
        As for `Band2D`.

    Raises
    ------
    NoInterface
        If all values are on one side.

    Notes
    -----
    An object can be used from one thread at a time: while an operation is under way, others raise RuntimeError.
    Different objects can be used at once. Operations may change the order of the points.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> z, y, x = np.mgrid[:32, :40, :48]
    >>> band = quorbin.Band3D(np.sqrt((z - 15.7) ** 2 + (y - 20.2) ** 2 + (x - 23.9) ** 2) - 12)
    >>> flow = band.curvature_flow(9)
    >>> round((band.measure().volume * 3 / 4 / np.pi) ** (1 / 3), 1)  # √(12² − 4 · 9)
    10.4
    """

    _axes = 3
    _kind = _core.Band3D
    _grid = LevelSet3D

    def mesh(self, *, progress: Progress = None) -> Mesh:
        """Extract the surface of the inside.

        Parameters
        ----------
        progress
            As for `mesh`.

        Returns
        -------
        Mesh
            Vertices, faces and normals, in the order of the axes.
        """
        with self._guard, telling(progress, "mesh") as tell:
            return Mesh(*self._band.mesh(tell))

    def measure(self, *, progress: Progress = None) -> Figures3D:
        """Measure the inside, which must be bounded, as `measure` does."""
        return Figures3D(*self._measured(progress))
