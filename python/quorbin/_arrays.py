"""What callers give, as the arrays that the compiled module takes."""

from __future__ import annotations

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


def as_field(field: FieldLike) -> Floats:
    """Return the field as float64 in C order: itself where it is that already, else a copy."""
    if type(field) is np.ndarray and field.dtype is _FLOAT64 and field.flags.c_contiguous:
        return field
    return _converted(field)


def _converted(field: FieldLike) -> Floats:
    if isinstance(field, np.ma.MaskedArray):
        raise TypeError("masked arrays are not taken; fill them first, as by field.filled(numpy.inf) for outside")
    array = _in_main_memory(field)
    kind = array.dtype.kind
    if kind == "b":  # a mask, true inside
        return np.where(array, -0.5, 0.5)
    if kind not in "iuf":
        raise TypeError(f"the field has values of type {array.dtype}; convert them, as by field.astype(float)")
    return np.ascontiguousarray(array, dtype=np.float64)


def _in_main_memory(field: FieldLike) -> npt.NDArray[Any]:
    if isinstance(field, np.ndarray):
        return np.asarray(field)
    device = getattr(field, "__dlpack_device__", None)
    if device is not None:
        if int(device()[0]) != _MAIN_MEMORY:
            raise TypeError("the field is in the memory of another device; bring it here, as by .cpu() or .get()")
        if not hasattr(field, "__array__"):
            return np.from_dlpack(field)
    return np.asarray(field)


def same_shape(a: Floats, b: Floats) -> tuple[Floats, Floats]:
    """Return two fields, which must have the same shape."""
    if a.shape != b.shape:
        raise ValueError(f"the fields have the shapes {a.shape} and {b.shape}; they must be the same")
    return a, b


def as_spacing(spacing: Spacing) -> list[float]:
    """Return one number, or one for each axis in their order."""
    if isinstance(spacing, (int, float)):
        return [spacing]
    return [float(h) for h in np.atleast_1d(np.asarray(spacing, dtype=np.float64))]


def as_result(out: Floats | None, field: Floats) -> Floats:
    """Return where a result goes: a new array, or out where that will do."""
    if out is None:
        return np.empty(field.shape)
    if not isinstance(out, np.ndarray) or out.dtype != _FLOAT64:
        raise TypeError("out must be an array of float64")
    if out.shape != field.shape or not out.flags.c_contiguous or not out.flags.writeable:
        raise ValueError(f"out must be writable, in C order and of the shape {field.shape}")
    if out is not field and np.may_share_memory(out, field):
        raise ValueError("out shares memory with the field; give the field itself, or another array")
    return out


def nan_is_outside(nan: NanPolicy) -> bool:
    """Return whether values that are not numbers are taken, as outside."""
    if nan not in ("raise", "outside"):
        raise ValueError(f'nan is {nan!r}; it can be "raise" or "outside"')
    return nan == "outside"
