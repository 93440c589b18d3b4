"""What level sets on grids and on bands have in common."""

from __future__ import annotations

import math
import threading
from collections.abc import Sequence
from typing import Any, Callable, NamedTuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import Floats, Spacing, as_spacing

Speed = Union[float, npt.ArrayLike, Callable[[Floats], npt.ArrayLike]]


class FlowResult(NamedTuple):
    """How far a flow has come."""

    time: float
    """Less than asked where the interface has vanished."""
    steps: int
    """How many steps it took."""
    vanished: bool
    """Whether the last piece has shrunk away."""


class Guard:
    """Lets one operation on an object be under way at a time."""

    def __init__(self) -> None:
        self._lock = threading.Lock()

    def __enter__(self) -> None:
        if not self._lock.acquire(blocking=False):
            raise RuntimeError(
                "the level set is in use by another thread, or by an operation that is under way; wait for that, "
                "or work on a copy that is made before"
            )

    def __exit__(self, *_: object) -> None:
        self._lock.release()


class Stepping:
    """What has a guard, and is copied whole."""

    _guard: Guard
    __array_ufunc__ = None  # comparisons with arrays are those of objects, not of elements

    def __copy__(self) -> Any:
        raise NotImplementedError

    def __deepcopy__(self, memo: dict[int, Any]) -> Any:
        return self.__copy__()


def checked_spacing(spacing: Spacing, axes: int) -> tuple[float, ...]:
    """Return the spacing of each axis; raise ValueError where it is none."""
    told = as_spacing(spacing)
    _core.check(np.zeros((1,) * axes), told)
    return tuple(np.broadcast_to(told, axes).tolist())


def checked_points(
    indices: npt.ArrayLike, values: npt.ArrayLike, axes: int
) -> tuple[npt.NDArray[np.int32], Floats]:
    """Return indices of points and their values; raise where they do not fit together."""
    places = np.asarray(indices)
    numbers = np.ascontiguousarray(values, dtype=np.float64)
    if places.size == 0:
        places = places.reshape(numbers.size, axes).astype(np.int32)
    if places.dtype.kind not in "iu":
        raise TypeError(f"indices are of type {places.dtype}; they must be whole numbers")
    if numbers.ndim != 1 or places.shape != (numbers.size, axes):
        raise ValueError(
            f"indices have the shape {places.shape} and values {numbers.shape}; they must be (n, {axes}) and (n,)"
        )
    if not np.isfinite(numbers).all():
        raise ValueError("values must be finite numbers")
    if places.size and (places.min() < -(2**31) or places.max() >= 2**31):
        raise ValueError("indices must lie between -2147483648 and 2147483647")
    return np.ascontiguousarray(places, dtype=np.int32), numbers


def explicit_time(spacing: Sequence[float]) -> float:
    """Return the longest stable time of an explicit step by curvature."""
    return 1 / sum(2 / h**2 for h in spacing)


def speeds_and_time(
    speed: Any, shape: tuple[int, ...], spacing: Sequence[float], limit: float
) -> tuple[Floats, float]:
    """Return one speed for each value, and the longest step that is stable and within the limit."""
    if not limit > 0:
        raise ValueError(f"limit is {limit}; it must be above 0")
    speeds = np.ascontiguousarray(np.broadcast_to(np.asarray(speed, dtype=np.float64), shape))
    fastest = max(speeds.max(initial=0), -speeds.min(initial=0))
    if not math.isfinite(fastest) or np.isnan(speeds).any():
        raise ValueError("speeds must be finite numbers")
    slope = math.sqrt(sum(1 / h**2 for h in spacing))
    time = min(float(limit), 1 / (fastest * slope) if fastest > 0 else math.inf)
    return speeds, time if math.isfinite(time) else 0.0
