"""What callers give, as the arrays and numbers that the compiled module takes."""

from __future__ import annotations

import math
import operator
import os
from collections.abc import Sequence
from typing import Any, Literal, Union

import numpy as np
import numpy.typing as npt

Floats = npt.NDArray[np.float64]
FieldLike = Any
Spacing = Union[float, Sequence[float]]
NanPolicy = Literal["raise", "outside"]

_FLOAT64 = np.dtype(np.float64)
_MAIN_MEMORY = 1  # DLPack's number of the device
_LARGEST_COUNT = 2**31 - 1

_WAYS_OUT = {
    "c": "take the part that is meant, as by field.real",
    "V": "take one of its members, as by field['name']",
    "O": "convert them, as by numpy.asarray(field, dtype=float)",
    "M": "convert them, as by field.astype(float)",
    "m": "convert them, as by field.astype(float)",
}


def as_field(field: FieldLike) -> Floats:
    """Return the field as float64 in C order: itself where it is that already, else a copy."""
    if type(field) is np.ndarray and field.dtype is _FLOAT64 and field.flags.carray:
        return field
    return _converted(field)


def _converted(field: FieldLike) -> Floats:
    if isinstance(field, np.ma.MaskedArray):
        raise TypeError("masked arrays are not taken; fill them first, as by field.filled(numpy.inf) for outside")
    array = _in_main_memory(field)
    kind = array.dtype.kind
    if kind == "b":  # a mask, true inside
        return np.where(array, -0.5, 0.5)
    if kind == "O" and array.ndim == 0:
        raise TypeError(f"the field is of type {type(field).__name__}; give an array of numbers")
    if kind not in "iuf":
        way_out = _WAYS_OUT.get(kind, "give an array of numbers")
        raise TypeError(f"the field has values of type {array.dtype}; {way_out}")
    with np.errstate(over="ignore"):  # a long double may be beyond all others: then it is infinite
        numbers = np.asarray(array, dtype=np.float64, order="C")
    return numbers if numbers.flags.aligned else numbers.copy()


def _in_main_memory(field: FieldLike) -> npt.NDArray[Any]:
    if isinstance(field, np.ndarray):
        return np.asarray(field)
    if isinstance(field, (str, bytes, os.PathLike)):
        raise TypeError(f"the field is {field!r}; if that is a file, read it first, as by quorbin.read")
    device = getattr(field, "__dlpack_device__", None)
    if device is not None:
        if int(device()[0]) != _MAIN_MEMORY:
            raise TypeError("the field is in the memory of another device; bring it here, as by .cpu() or .get()")
        if not hasattr(field, "__array__"):
            return np.from_dlpack(field)
    try:
        return np.asarray(field)
    except ValueError as error:  # rows of several lengths
        raise ValueError(f"the field cannot be made an array: {error}") from error


def as_number(value: Any, name: str, least: float = -math.inf) -> float:
    """Return a finite number, which is called so in messages."""
    if type(value) is float and least <= value < math.inf and value != -math.inf:
        return value
    try:
        if isinstance(value, (str, bytes)):
            raise TypeError
        number = float(value)
    except (TypeError, ValueError, OverflowError):
        raise TypeError(f"{name} is {value!r}; it must be a number") from None
    if not (least <= number < math.inf) or number == -math.inf:
        bound = "" if least == -math.inf else f", and at least {least:g}"
        raise ValueError(f"{name} is {number}; it must be finite{bound}")
    return number


def as_count(value: Any, name: str) -> int:
    """Return an integer from 0, which is called so in messages."""
    try:
        count = operator.index(value)
    except TypeError:
        raise TypeError(f"{name} is {value!r}; it must be an integer") from None
    if not 0 <= count <= _LARGEST_COUNT:
        raise ValueError(f"{name} is {count}; it must be at least 0, and less than 2147483648")
    return count


def as_level(level: float, field: FieldLike) -> float:
    """Return the value of an interface, which in a mask is the one there is."""
    number = as_number(level, "level")
    if number and np.asarray(field).dtype.kind == "b":
        raise ValueError("the field is a mask, inside where it is true; it has no other levels, so leave that out")
    return number


def as_affine(affine: npt.ArrayLike) -> Floats:
    """Return a matrix that takes indices to the world; raise ValueError where it does not."""
    matrix = np.asarray(affine)
    if matrix.shape != (4, 4) or matrix.dtype.kind not in "iuf" or not np.isfinite(matrix).all():
        raise ValueError("affine must be a matrix of 4 × 4 finite numbers")
    if not np.array_equal(matrix[3], (0, 0, 0, 1)):
        raise ValueError(f"the last row of affine is {matrix[3].tolist()}; it must be 0, 0, 0, 1")
    if np.linalg.matrix_rank(matrix[:3, :3].astype(np.float64)) < 3:
        raise ValueError("affine makes the volume flat")
    return matrix.astype(np.float64)


def same_shape(a: Floats, b: Floats) -> tuple[Floats, Floats]:
    """Return two fields, which must have the same shape."""
    if a.shape != b.shape:
        raise ValueError(f"the fields have the shapes {a.shape} and {b.shape}; they must be the same")
    return a, b


def as_spacing(spacing: Spacing) -> list[float]:
    """Return one number, or one for each axis in their order."""
    if isinstance(spacing, (int, float)):
        return [float(spacing)]
    try:
        if isinstance(spacing, (str, bytes)) or spacing is None:
            raise TypeError
        numbers = np.atleast_1d(np.asarray(spacing, dtype=np.float64))
    except (TypeError, ValueError):
        raise TypeError(f"spacing is {spacing!r}; it must be one number, or one for each axis") from None
    if numbers.ndim != 1:
        raise ValueError(
            f"spacing has {numbers.ndim} axes; it must be one number, or one for each axis of the field"
        )
    return [float(h) for h in numbers]


def as_result(out: Floats | None, field: Floats) -> Floats:
    """Return where a result goes: a new array, or out where that will do."""
    if out is None:
        return np.empty(field.shape)
    if not isinstance(out, np.ndarray) or out.dtype != _FLOAT64 or isinstance(out, np.ma.MaskedArray):
        raise TypeError("out must be an array of float64")
    if out.shape != field.shape or not out.flags.carray:
        raise ValueError(f"out must be writable, aligned, in C order and of the shape {field.shape}")
    if out is not field and out.ctypes.data != field.ctypes.data and np.may_share_memory(out, field):
        raise ValueError("out shares memory with the field; give the field itself, or another array")
    return out


def nan_is_outside(nan: NanPolicy) -> bool:
    """Return whether values that are not numbers are taken, as outside."""
    if nan not in ("raise", "outside"):
        raise ValueError(f'nan is {nan!r}; it can be "raise" or "outside"')
    return nan == "outside"
