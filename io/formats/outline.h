#pragma once

#include <vector>

#include <quorbin.h>

namespace quorbin::io {

/// The zero contour of a field, in grid-index units.
struct Contour {
    std::vector<brin::Vec2<double>> points;
    std::vector<std::vector<int>> polygons;   ///< closed, values ≤ 0 on the left
    std::vector<std::vector<int>> openLines;  ///< end at the border of the picture
};

/// Outlines closed along the border of the picture. Every loop closes, whatever the field: the contour is
/// that of a copy with a ring of large values around it, and its points are moved back onto the picture.
Contour traceClosed(const FullLevelSet2D& field);

/// Outlines as they are within the picture.
Contour traceOpen(const FullLevelSet2D& field);

/// The closed or open contour without what encloses nothing: polygons of no area, as samples of exactly 0 may
/// have around them, and points that repeat the one before.
Contour outlineOf(const FullLevelSet2D& field, bool open);

}  // namespace quorbin::io
