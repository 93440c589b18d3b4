"""Level-set methods for image analysis and geometry processing.

A curve in a picture, or a surface in a volume, is the zero level of an array: values ≤ 0 are inside.

>>> import numpy as np
>>> import quorbin
>>> y, x = np.mgrid[:128, :128]
>>> field = np.hypot(x - 64.4, y - 63.8) - 40  # a disc

Make any such field a signed distance, move its outline by curvature for a time, and take the outline out:

>>> distance = quorbin.reinitialize(field)
>>> flow = quorbin.curvature_flow(distance, time=400)
>>> outline = quorbin.contours(flow.field)[0]  # points (y, x), the first one again at the end
>>> round(float(np.hypot(*(outline - (63.8, 64.4)).T).mean()), 1)  # 40 / √2: the area falls by 2π in unit time
28.3

Arrays have the axes (y, x) or (z, y, x). ``spacing=`` is the distance between neighbouring samples, one number or
one for each axis in their order; points, times and sizes are in its units, points in the order of the axes. What
you give is never written to, unless it is ``out=``.
"""

from ._contours import Region, contours, polygons
from ._core import NoInterface, __version__
from ._distance import reinitialize, signed_distance
from ._files import Image, read, read_field
from ._flows import CurvatureFlow, curvature_flow, smooth_mask
from ._itk import PlacedImage, from_sitk, to_sitk
from ._mesh import Mesh, mesh
from ._output import write
from ._segmentation import Segmentation, otsu, segment

__all__ = [
    "CurvatureFlow",
    "Image",
    "Mesh",
    "NoInterface",
    "PlacedImage",
    "Region",
    "Segmentation",
    "__version__",
    "contours",
    "curvature_flow",
    "from_sitk",
    "mesh",
    "otsu",
    "polygons",
    "read",
    "read_field",
    "reinitialize",
    "segment",
    "signed_distance",
    "smooth_mask",
    "to_sitk",
    "write",
]
