"""Files: pictures and volumes in, fields, masks, outlines and meshes out."""

from __future__ import annotations

import logging
import os
from collections.abc import Sequence
from typing import Any, Literal, NamedTuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arrays import Floats
from ._progress import Progress, telling

PathLike = Union[str, "os.PathLike[str]"]
RawSamples = tuple[Sequence[int], npt.DTypeLike]
Side = Literal["above", "below"]

_log = logging.getLogger("quorbin")


class Image(NamedTuple):
    """What a file holds."""

    values: Floats
    """Grey values, or those of a field; the axes (y, x), with row 0 at the top, or (z, y, x)."""
    spacing: tuple[float, ...]
    """The distance between neighbouring samples along each axis; 1 where the file does not say."""
    affine: Floats | None
    """A 4 × 4 matrix from indices (z, y, x) to the world, (z, y, x) too, if the file has one; for `mesh`."""
    is_field: bool
    """Whether the values are those of a field, ≤ 0 inside."""
    format: str
    """The format's name."""
    notes: list[str]
    """What there is to know of the reading."""


def path_of(path: PathLike) -> bytes:
    """Return the path as the compiled module takes it, to which - is a file as any other."""
    name = os.fsencode(path)
    if b"\0" in name:
        raise ValueError(f"{os.fsdecode(path)!r}: a path has no zeros in it; name a file")
    return b"./-" if name == b"-" else name


def read(
    path: PathLike,
    *,
    channel: str | int | None = None,
    frame: int | None = None,
    series: int | None = None,
    nan: float | None = None,
    raw: RawSamples | None = None,
    progress: Progress = None,
) -> Image:
    """Read a picture or a volume; its content tells the format.

    PNG, JPEG, TIFF, WebP, PGM, NIfTI, NPY, FL2D, FL3D, FR3D; where ITK is a part of the build, also NRRD,
    MetaImage, MRC, BMP and DICOM, of which a folder is read, too.

    Parameters
    ----------
    path : str or os.PathLike
        The file.
    channel : {"r", "g", "b", "a", "luma"} or int, optional
        What to read of colours, whose luminance is read else, or of several channels.
    frame : int, optional
        Which of the pictures or volumes of a file in time, from 0.
    series : int, optional
        Which series of a folder of DICOM files that has several, from 0.
    nan : float, optional
        What to take for values that are not finite. By default they are refused.
    raw : tuple, optional
        ``(shape, dtype)`` of a volume without a header, as ``((64, 128, 128), "int16")``: little-endian.
    progress : bool or callable, optional
        True shows a bar where tqdm is installed; a function is called with (done, total).

    Returns
    -------
    Image
        The values as float64, with spacing and affine in the order of the axes.

    Raises
    ------
    OSError
        As FileNotFoundError, PermissionError and others, if the file cannot be read.
    ValueError
        If it is of no known format, or not whole. The message names the file, the fault and the way out.

    Examples
    --------
    >>> import tempfile
    >>> import numpy as np
    >>> import quorbin
    >>> folder = tempfile.TemporaryDirectory()
    >>> path = folder.name + "/field.fl2d"
    >>> quorbin.write(path, np.arange(6).reshape(2, 3) - 2, spacing=(2, 1))
    >>> image = quorbin.read(path)
    >>> image.values
    array([[-2., -1.,  0.],
           [ 1.,  2.,  3.]])
    >>> image.spacing, image.is_field
    ((2.0, 1.0), True)
    >>> folder.cleanup()
    """
    return _read(path, channel, frame, series, nan, raw, None, progress)


def read_field(
    path: PathLike,
    *,
    level: float | None = None,
    inside: Side | None = None,
    between: tuple[float, float] | None = None,
    label: float | None = None,
    channel: str | int | None = None,
    frame: int | None = None,
    series: int | None = None,
    nan: float | None = None,
    raw: RawSamples | None = None,
    progress: Progress = None,
) -> Image:
    """Read a picture or a volume and make its field, as the command-line tool does.

    Parameters
    ----------
    path : str or os.PathLike
        The file.
    level : float, optional
        The grey value of the outline; by default half way between the two values of a mask, else Otsu's threshold
        (1979). Of a file that holds a field, the value of the outline, by default 0.
    inside : {"above", "below"}, optional
        What is inside: above (by default of greys) or below the level (of fields).
    between : tuple of float, optional
        ``(low, high)``: inside are values of this range.
    label : float, optional
        Inside are the samples of this whole number.
    channel, frame, series, nan, raw, progress
        As for `read`.

    Returns
    -------
    Image
        The values of the field, ≤ 0 inside: level - grey, or ∓0.5 for a label. A note says which level was taken.

    Examples
    --------
    >>> import tempfile
    >>> import numpy as np
    >>> import quorbin
    >>> folder = tempfile.TemporaryDirectory()
    >>> path = folder.name + "/picture.png"
    >>> quorbin.write(path, np.array([[10, 90, 200]], dtype=np.uint8))
    >>> image = quorbin.read_field(path, level=100)
    >>> image.values
    array([[  90.,   10., -100.]])
    >>> folder.cleanup()
    """
    if inside not in (None, "above", "below"):
        raise ValueError(f'inside is {inside!r}; it can be "above" or "below"')
    if sum(given is not None for given in (between, label, level if level is not None else inside)) > 1:
        raise ValueError("level and inside, between, and label exclude each other; give one of them")
    above = None if inside is None else inside == "above"
    between = None if between is None else (float(between[0]), float(between[1]))
    if between is not None and not between[0] <= between[1]:
        raise ValueError(f"between is {between}; give (low, high)")
    return _read(path, channel, frame, series, nan, raw, (level, above, between, label), progress)


def _read(
    path: PathLike,
    channel: str | int | None,
    frame: int | None,
    series: int | None,
    nan: float | None,
    raw: RawSamples | None,
    rule: tuple[Any, ...] | None,
    progress: Progress,
) -> Image:
    for name, number in (("frame", frame), ("series", series)):
        if number is not None and number < 0:
            raise ValueError(f"{name} is {number}; give a number from 0")
    if nan is not None and not np.isfinite(nan):
        raise ValueError(f"nan is {nan}; give a number that is finite")
    layout = None
    if raw is not None:
        shape = tuple(int(n) for n in raw[0])
        if len(shape) != 3 or min(shape) < 1 or max(shape) > 1 << 20:
            raise ValueError(f"raw has the shape {shape}; give three numbers from 1 to 1048576, (z, y, x)")
        if np.dtype(raw[1]).byteorder == ">":
            raise ValueError("raw samples are read little-endian; read others by numpy.fromfile")
        layout = (shape, np.dtype(raw[1]).name)
    with telling(progress, "reading") as tell:
        values, spacing, affine, is_field, format_name, notes = _core.read(
            path_of(path), "" if channel is None else str(channel), frame, series, nan, layout, rule, tell
        )
    for note in notes:
        _log.info("%s: %s", os.fsdecode(path), note)
    return Image(
        values, tuple(spacing), None if affine is None else np.array(affine), is_field, format_name, notes
    )
