#pragma once

#include <optional>

#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// Distances from one interface to another, in world units: the mean over its length or area, and the
/// largest. Not-a-number if one of the two level sets has no interface.
struct InterfaceDistance {
    double mean, largest;
};

/// How two level sets differ.
struct Comparison {
    /// Twice the area or volume of the intersection over the sum of both: 1 if they agree, 0 if they are
    /// apart. 1 if both are empty.
    double dice;
    /// Area or volume, in world units, of what is inside of one alone.
    double symmetricDifference;
    InterfaceDistance fromFirst, fromSecond;
    /// The mean of the two means, and the larger of the two largest (Hausdorff distance).
    double meanDistance, hausdorffDistance;
};

/// Compares two level sets of the same grid, or two bands with the same spacings, after both have been
/// reinitialised. Distances are taken at the points of contours or meshes, moved on to the interface of the
/// local cubics: on grids as the values there of the other signed distance, in bands by the nearest foot of
/// the other one, from a tree. The border of a grid is no interface. Bands must have a bounded inside. Throws
/// std::invalid_argument, naming sizes and spacings, if those of the two differ, or if a spacing is not a
/// positive finite number; std::bad_alloc.
QUORBIN_EXPORT Comparison compare(const FullLevelSet2D& a, const FullLevelSet2D& b);
QUORBIN_EXPORT Comparison compare(const FullLevelSet3D& a, const FullLevelSet3D& b);
QUORBIN_EXPORT Comparison compare(const FastLevelSet2D& a, const FastLevelSet2D& b);
QUORBIN_EXPORT Comparison compare(const FastLevelSet3D& a, const FastLevelSet3D& b);

/// The same, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<Comparison> compare(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                                 const Progress& progress);
QUORBIN_EXPORT std::optional<Comparison> compare(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                                 const Progress& progress);
QUORBIN_EXPORT std::optional<Comparison> compare(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                                 const Progress& progress);
QUORBIN_EXPORT std::optional<Comparison> compare(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                                 const Progress& progress);

}  // namespace quorbin
