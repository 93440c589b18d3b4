#pragma once

#include <optional>

#include "brin/vec.h"
#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// Figures of an inside, in world units. Of an empty one area and perimeter are 0, and points are
/// not-a-number.
struct Figures2D {
    double area;
    /// Length of all outlines, those of holes and those along the border of the grid included.
    double perimeter;
    brin::Vec2<double> centroid;
    /// The corners of the bounding box.
    brin::Vec2<double> lowest, highest;
    /// Integral of the curvature along all outlines, exactly: 2π for each region, −2π for each hole.
    double totalCurvature;
};

/// The same of a volume.
struct Figures3D {
    double volume;
    /// Of the closed surface, what lies in the faces of the grid included.
    double surfaceArea;
    brin::Vec3<double> centroid;
    brin::Vec3<double> lowest, highest;
    /// Integral of the mean curvature, the mean of the two principal ones, over the closed surface: 4πr for a
    /// ball, 3πa for a cube. An edge counts with half its angle times its length.
    double totalMeanCurvature;
};

/// The figures of the regions that contours gives, or of the closed surface that mesh gives (for a grid:
/// capped at its faces). Errors are of second order in the spacings, where the interface is smooth. The
/// inside of a band must be bounded. Throws std::bad_alloc. Costs what contours and mesh do, and for volumes
/// about 1 µs a triangle more.
QUORBIN_EXPORT Figures2D measure(const FullLevelSet2D& field);
QUORBIN_EXPORT Figures2D measure(const FastLevelSet2D& band);
QUORBIN_EXPORT Figures3D measure(const FullLevelSet3D& field);
QUORBIN_EXPORT Figures3D measure(const FastLevelSet3D& band);

/// The same, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<Figures2D> measure(const FullLevelSet2D& field, const Progress& progress);
QUORBIN_EXPORT std::optional<Figures2D> measure(const FastLevelSet2D& band, const Progress& progress);
QUORBIN_EXPORT std::optional<Figures3D> measure(const FullLevelSet3D& field, const Progress& progress);
QUORBIN_EXPORT std::optional<Figures3D> measure(const FastLevelSet3D& band, const Progress& progress);

}  // namespace quorbin
