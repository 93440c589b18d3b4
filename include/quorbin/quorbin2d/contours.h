#pragma once

#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "fast_level_set_2d.h"
#include "full_level_set_2d.h"

namespace quorbin {

/// A closed curve: its points in order, the first of which is not repeated.
using Ring = std::vector<brin::Vec2<double>>;

/// A connected region: its outline, counterclockwise (x right, y up), and the outlines of its holes,
/// clockwise.
struct Polygon {
    Ring outline;
    std::vector<Ring> holes;
};

/// The regions inside a level set, with points in world units (grid index times spacing). What meets the
/// border of the grid is closed along it. Not-a-number is outside; points repeated one after the other and
/// rings of no area are left out. Regions come in the order of their first crossing, row by row. Throws
/// std::bad_alloc. About 2 ns a cell and 0.2 µs a point.
QUORBIN_EXPORT std::vector<Polygon> contours(const FullLevelSet2D& field);

/// The same of a band, of the cells whose four corners are stored; contours that do not close are left out. A
/// region without end, as around a hole in a band that is inside all around, has an empty outline.
QUORBIN_EXPORT std::vector<Polygon> contours(const FastLevelSet2D& band);

/// Area that a ring encloses, positive where it runs counterclockwise; of a polygon, without its holes.
QUORBIN_EXPORT double area(const Ring& ring);
QUORBIN_EXPORT double area(const Polygon& polygon);

/// Length of a closed ring.
QUORBIN_EXPORT double length(const Ring& ring);

/// Area and length of a polygon of getPolygons: in grid units, or in world units, given the spacings.
QUORBIN_EXPORT double area(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon,
                           double xSpace = 1.0, double ySpace = 1.0);
QUORBIN_EXPORT double length(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon,
                             double xSpace = 1.0, double ySpace = 1.0);

}  // namespace quorbin
