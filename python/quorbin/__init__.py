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

from ._bands import Band2D, Band3D
from ._contours import Region, contours, polygons
from ._core import NoInterface, __version__
from ._distance import reinitialize, signed_distance
from ._files import Image, read, read_field
from ._flows import CurvatureFlow, curvature_flow, smooth_mask
from ._itk import PlacedImage, from_sitk, to_sitk
from ._level_sets import LevelSet2D, LevelSet3D
from ._measure import Comparison, Figures2D, Figures3D, InterfaceDistance, compare, measure
from ._mesh import Mesh, mesh
from ._offset import closed, offset, opened
from ._output import write
from ._pieces import Piece2D, Piece3D, largest_pieces, pieces, without_holes_below
from ._sample import Samples, sample
from ._segmentation import Segmentation, otsu, segment
from ._sets import complement, difference, intersection, union
from ._stepping import FlowResult

__all__ = [
    "Band2D",
    "Band3D",
    "Comparison",
    "CurvatureFlow",
    "Figures2D",
    "Figures3D",
    "FlowResult",
    "Image",
    "InterfaceDistance",
    "LevelSet2D",
    "LevelSet3D",
    "Mesh",
    "NoInterface",
    "Piece2D",
    "Piece3D",
    "PlacedImage",
    "Region",
    "Samples",
    "Segmentation",
    "__version__",
    "closed",
    "compare",
    "complement",
    "contours",
    "curvature_flow",
    "difference",
    "from_sitk",
    "intersection",
    "largest_pieces",
    "measure",
    "mesh",
    "offset",
    "opened",
    "otsu",
    "pieces",
    "polygons",
    "read",
    "read_field",
    "reinitialize",
    "sample",
    "segment",
    "signed_distance",
    "smooth_mask",
    "to_sitk",
    "union",
    "without_holes_below",
    "write",
]
