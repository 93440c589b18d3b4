"""Level sets on grids, for those who step by themselves."""

from __future__ import annotations

import math
from typing import Any, Literal, TypeVar, overload

import numpy as np

from . import _core
from ._arrays import FieldLike, Floats, NanPolicy, Spacing, as_count, as_field, nan_is_outside
from ._contours import Region, contours
from ._distance import DistanceMethod, signed_distance
from ._flows import curvature_flow
from ._measure import Figures2D, Figures3D, measure
from ._mesh import Mesh, mesh
from ._progress import Progress, telling
from ._stepping import (
    FlowResult,
    Guard,
    Speed,
    Stepping,
    checked_spacing,
    explicit_time,
    speeds_and_time,
)

_Self = TypeVar("_Self", bound="_LevelSet")


class _LevelSet(Stepping):
    """What level sets of two and of three axes have in common."""

    _axes: int

    def __init__(self, field: FieldLike, spacing: Spacing = 1.0, *, nan: NanPolicy = "raise") -> None:
        values = as_field(field)
        if values.ndim != self._axes:
            raise ValueError(f"{type(self).__name__} takes a field of {self._axes} axes; it has {values.ndim}")
        sizes = checked_spacing(spacing, self._axes)
        if nan_is_outside(nan):
            values = np.where(np.isnan(values), _outside_of(values), values)
        _core.check(values, list(sizes))
        self._set(values.copy(), sizes)

    def _set(self, values: Floats, spacing: tuple[float, ...]) -> None:
        self._values = values
        self._spacing = spacing
        self._guard = Guard()

    def __repr__(self) -> str:
        return f"{type(self).__name__}(shape={self.shape}, spacing={self.spacing})"

    def __getstate__(self) -> dict[str, Any]:
        with self._guard:
            return {"values": self._values, "spacing": self._spacing}

    def __setstate__(self, state: dict[str, Any]) -> None:
        self._set(np.require(state["values"], np.float64, ["C", "W"]), state["spacing"])

    def __copy__(self: _Self) -> _Self:
        copy = type(self).__new__(type(self))
        with self._guard:
            copy._set(self._values.copy(), self._spacing)
        return copy

    @property
    def values(self) -> Floats:
        """The values, as an array that lies over the memory of the level set and can be written to."""
        return self._values.view()

    @values.setter
    def values(self, values: Floats) -> None:
        with self._guard:
            self._values[...] = values

    @property
    def shape(self) -> tuple[int, ...]:
        """Numbers of samples along the axes."""
        return self._values.shape

    @property
    def spacing(self) -> tuple[float, ...]:
        """Distances between neighbouring samples along the axes."""
        return self._spacing

    def move_along_curvature(self, steps: int = 1, *, progress: Progress = None) -> float:
        """Take explicit steps of φt = Δφ, as long as they are stable.

        Where the field is close to a signed distance this moves the interface by its curvature; `reinitialize` it
        from time to time. An interruption leaves the steps that are done.

        Parameters
        ----------
        steps : int, optional
            How many.
        progress : bool or callable, optional
            True shows a bar where tqdm is installed; a function is called with (done, total).

        Returns
        -------
        float
            The time of these steps: steps / Σ (2 / h²).
        """
        steps = as_count(steps, "steps")
        with self._guard, telling(progress, "steps") as tell:
            _core.move_along_curvature(self._values, self._values, list(self._spacing), steps, tell)
        return steps * explicit_time(self._spacing)

    def move_along_curvature_implicit(self) -> None:
        """Take an implicit step of φt = Δφ over the time 1 (backward Euler), whatever the spacing.

        Of three axes at most 15 sweeps are done (Gauss and Seidel), and the spacings along z and y should be
        equal.
        """
        with self._guard:
            _core.move_along_curvature_implicit(self._values, self._values, list(self._spacing))

    def move_with_speed(self, speed: Speed, *, limit: float = math.inf) -> float:
        """Take an explicit step of ``φt + F |∇φ| = 0``: the interface moves at the speed F outwards.

        By upwind differences of first order (Rouy and Tourin 1992).

        Parameters
        ----------
        speed : float, array_like or callable
            F: one number, one for each sample, or a function that is given the values and returns these. Inwards
            where it is negative.
        limit : float, optional
            The longest time of the step.

        Returns
        -------
        float
            The time of the step: the longest that is stable, ``1 / (max |F| √Σ (1 / h²))``, or the limit; 0 if
            nothing moves and no limit is given.
        """
        told = speed(self.values) if callable(speed) else speed
        speeds, time = speeds_and_time(told, self.shape, self._spacing, limit)
        with self._guard:
            _core.move_with_speed(self._values, self._values, list(self._spacing), speeds, time)
        return time

    def reinitialize(self, method: DistanceMethod = "projection", *, progress: Progress = None) -> None:
        """Make the values the signed distance to their zero level.

        Parameters
        ----------
        method : {"projection", "fmm", "segments", "brute"}, optional
            As for `signed_distance`.
        progress : bool or callable, optional
            True shows a bar where tqdm is installed; a function is called with (done, total).

        Raises
        ------
        NoInterface
            If all values are on one side.
        """
        with self._guard:
            signed_distance(
                self._values, spacing=self._spacing, method=method, out=self._values, progress=progress
            )

    def curvature_flow(
        self,
        time: float,
        *,
        implicit: bool | None = None,
        rate: float = 1.0,
        constant_volume: bool = False,
        noise_radius: int = 0,
        progress: Progress = None,
    ) -> FlowResult:
        """Move the interface by its curvature for a time, and make the values a signed distance.

        Parameters
        ----------
        time, implicit, rate, constant_volume, noise_radius, progress
            As for `curvature_flow`.

        Returns
        -------
        FlowResult
            How far the flow has come.

        Raises
        ------
        NoInterface
            If all values are on one side at the start.
        """
        with self._guard:
            flow = curvature_flow(
                self._values,
                time,
                spacing=self._spacing,
                implicit=implicit,
                rate=rate,
                constant_volume=constant_volume,
                noise_radius=noise_radius,
                out=self._values,
                progress=progress,
            )
        return FlowResult(flow.time, flow.steps, flow.vanished)

    def _measured(self, progress: Progress) -> Any:
        with self._guard:
            return measure(self._values, spacing=self._spacing, progress=progress)


def _outside_of(values: Floats) -> float:
    """Return what stands for not-a-number: the largest number among the values, at least 1."""
    return float(np.max(values, initial=1.0, where=np.isfinite(values)))


class LevelSet2D(_LevelSet):
    """A level set on a grid of the axes (y, x), which operations change in place.

    Parameters
    ----------
    field : array_like
        Values, inside where ≤ 0, which are copied. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.

    Notes
    -----
    An object can be used from one thread at a time: while an operation is under way, others raise RuntimeError.
    Different objects can be used at once.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> y, x = np.mgrid[:64, :64]
    >>> disc = quorbin.LevelSet2D(np.hypot(y - 31.7, x - 32.2) - 20)
    >>> disc
    LevelSet2D(shape=(64, 64), spacing=(1.0, 1.0))
    >>> time = 0.0
    >>> while time < 50:
    ...     time += disc.move_along_curvature(steps=10)
    ...     disc.reinitialize()
    >>> area = disc.measure().area
    >>> round((np.pi * 20**2 - area) / time / (2 * np.pi), 1)
    1.0
    >>> disc.values -= 5  # all of it moves outwards by 5
    """

    _axes = 2

    @overload
    def contours(
        self, *, closed: bool = ..., holes: Literal[False] = ..., simplify: float = ...
    ) -> list[Floats]: ...

    @overload
    def contours(self, *, closed: bool = ..., holes: Literal[True], simplify: float = ...) -> list[Region]: ...

    def contours(
        self, *, closed: bool = True, holes: bool = False, simplify: float = 0.0
    ) -> list[Floats] | list[Region]:
        """Extract the outlines of the inside.

        Parameters
        ----------
        closed, holes, simplify
            As for `contours`.

        Returns
        -------
        list of numpy.ndarray, or list of Region
            Arrays of points (y, x), sample index times spacing.
        """
        with self._guard:
            if holes:
                return contours(self._values, spacing=self._spacing, closed=closed, holes=True, simplify=simplify)
            return contours(self._values, spacing=self._spacing, closed=closed, simplify=simplify)

    def measure(self, *, progress: Progress = None) -> Figures2D:
        """Measure the inside, as `measure` does."""
        figures: Figures2D = self._measured(progress)
        return figures


class LevelSet3D(_LevelSet):
    """A level set on a grid of the axes (z, y, x), which operations change in place.

    Parameters
    ----------
    field : array_like
        Values, inside where ≤ 0, which are copied. A boolean array is inside where it is true.
    spacing : float or sequence of float, optional
        Distance between neighbouring samples: one for all axes, or one for each in their order.
    nan : {"raise", "outside"}, optional
        Whether a value that is not a number is refused or taken for outside.

    Notes
    -----
    An object can be used from one thread at a time: while an operation is under way, others raise RuntimeError.
    Different objects can be used at once.

    Examples
    --------
    >>> import numpy as np
    >>> import quorbin
    >>> z, y, x = np.mgrid[:32, :40, :48]
    >>> ball = quorbin.LevelSet3D(np.sqrt((z - 15.7) ** 2 + (y - 20.2) ** 2 + (x - 23.9) ** 2) - 8)
    >>> time = 0.0
    >>> while time < 4:  # grows at the speed 1
    ...     time += ball.move_with_speed(1, limit=4 - time)
    ...     ball.reinitialize()
    >>> round((ball.measure().volume * 3 / 4 / np.pi) ** (1 / 3))
    12
    """

    _axes = 3

    def mesh(self, *, capped: bool = False, progress: Progress = None) -> Mesh:
        """Extract the surface of the inside.

        Parameters
        ----------
        capped, progress
            As for `mesh`.

        Returns
        -------
        Mesh
            Vertices, faces and normals, in the order of the axes.
        """
        with self._guard:
            return mesh(self._values, spacing=self._spacing, capped=capped, progress=progress)

    def measure(self, *, progress: Progress = None) -> Figures3D:
        """Measure the inside, as `measure` does."""
        figures: Figures3D = self._measured(progress)
        return figures
