"""Images of SimpleITK and ITK."""

from __future__ import annotations

from typing import Any, NamedTuple

import numpy as np
import numpy.typing as npt

from ._arrays import Floats


class PlacedImage(NamedTuple):
    """An image with its place in the world, all in the order of the axes; ITK's own order is the other one."""

    values: Floats
    """With the axes (y, x) or (z, y, x)."""
    spacing: tuple[float, ...]
    """Distance between neighbouring samples along each axis."""
    origin: tuple[float, ...]
    """Where the first sample lies."""
    direction: Floats
    """A matrix whose columns are the directions of the axes."""


def from_sitk(image: Any) -> PlacedImage:
    """Take the samples and the place of an image of SimpleITK, or of one of ITK's.

    Parameters
    ----------
    image : SimpleITK.Image or itk.Image
        Of one number a sample.

    Returns
    -------
    PlacedImage
        Values as float64, spacing, origin and direction in the order of the axes: ITK has (x, y, z).

    Examples
    --------
    >>> import quorbin
    >>> import SimpleITK as sitk  # doctest: +SKIP
    >>> placed = quorbin.from_sitk(sitk.ReadImage("head.nrrd"))  # doctest: +SKIP
    >>> field = quorbin.otsu(placed.values) - placed.values  # doctest: +SKIP
    >>> distance = quorbin.reinitialize(field, spacing=placed.spacing)  # doctest: +SKIP
    >>> sitk.WriteImage(quorbin.to_sitk(distance, like=placed), "distance.nrrd")  # doctest: +SKIP
    """
    if image.GetNumberOfComponentsPerPixel() != 1:
        raise ValueError("the image has several components a sample; take one of them before")
    if type(image).__module__.startswith("SimpleITK"):
        import SimpleITK as sitk  # noqa: N813

        values = sitk.GetArrayViewFromImage(image)
    else:
        values = np.asarray(image)
    axes = values.ndim
    direction = np.asarray(image.GetDirection(), dtype=np.float64).reshape(axes, axes)
    return PlacedImage(
        np.array(values, dtype=np.float64),
        tuple(map(float, image.GetSpacing()))[::-1],
        tuple(map(float, image.GetOrigin()))[::-1],
        direction[::-1, ::-1].copy(),
    )


def to_sitk(values: npt.ArrayLike, like: Any) -> Any:
    """Make an image of SimpleITK that lies where another one does.

    Parameters
    ----------
    values : array_like
        With the axes (y, x) or (z, y, x); booleans become unsigned bytes, other numbers stay of their type.
    like : PlacedImage or SimpleITK.Image
        Whose spacing, origin and direction the image gets.

    Returns
    -------
    SimpleITK.Image
        A copy of the values.

    Raises
    ------
    ImportError
        If SimpleITK is not installed.
    """
    try:
        import SimpleITK as sitk  # noqa: N813
    except ImportError as error:
        raise ImportError("to_sitk needs SimpleITK: pip install SimpleITK") from error
    array = np.asarray(values)
    image: Any = sitk.GetImageFromArray(array.astype(np.uint8) if array.dtype == np.bool_ else array)
    placed = like if isinstance(like, PlacedImage) else from_sitk(like)
    if len(placed.spacing) != array.ndim:
        raise ValueError(f"the values have {array.ndim} axes, and what they are to be like {len(placed.spacing)}")
    image.SetSpacing(placed.spacing[::-1])
    image.SetOrigin(placed.origin[::-1])
    image.SetDirection(placed.direction[::-1, ::-1].ravel().tolist())
    return image
