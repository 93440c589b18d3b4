#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "../brin/vec.h"
#include "../progress.h"
#include "../quorbin_export.h"
#include "fast_level_set_2d.h"
#include "full_level_set_2d.h"

namespace quorbin {

/// A closed curve, as its points in order. The first point is not repeated at the end.
using Ring = std::vector<brin::Vec2<double>>;

/// A connected region: its outline, counterclockwise (x right, y up), and the outlines of its holes,
/// clockwise.
struct Polygon {
    Ring outline;
    std::vector<Ring> holes;
};

/// The connected regions where values are ≤ 0, with points in world units (grid index times spacing). A
/// region that reaches the border of the grid is closed along it. Not-a-number is outside. Of equal points in
/// succession one is kept, and rings without area are left out. Regions come in the order in which rows read
/// from left to right, from y = 0 on, meet them first. About 2 ns a cell and 0.2 µs a point. Throws
/// std::bad_alloc.
QUORBIN_EXPORT std::vector<Polygon> contours(const FullLevelSet2D& field);

/// The same for a band. Only cells whose four corners are stored count, and contours that do not close in
/// them are left out. If the band is inside beyond its outermost contours, these are the holes of a region
/// without end, whose outline is empty.
QUORBIN_EXPORT std::vector<Polygon> contours(const FastLevelSet2D& band);

/// Contours as they are within a grid: those that close, as regions, and open lines from border to border.
/// The holes of regions that the border cuts are in a region without an outline.
struct OpenContours {
    std::vector<Polygon> regions;
    std::vector<Ring> lines;
};

/// As contours(field), but what meets the border of the grid is left open there.
QUORBIN_EXPORT OpenContours openContours(const FullLevelSet2D& field);

/// The region of one label among others, one a sample, of which the field is made: -0.5 where the label is
/// and 0.5 elsewhere. The regions of all labels together fill the picture without gaps or overlaps: where
/// three or four meet in a cell they meet in its middle, unless two opposite corners are of one label, which
/// is then connected. Throws std::invalid_argument for another number of labels than of samples.
QUORBIN_EXPORT std::vector<Polygon> contours(const FullLevelSet2D& field, const std::vector<double>& labels);
QUORBIN_EXPORT OpenContours openContours(const FullLevelSet2D& field, const std::vector<double>& labels);

/// A field that is read row by row and need not be held.
struct FieldRows {
    int width = 0, height = 0;
    double xSpace = 1, ySpace = 1;
    /// Fills in width values; asked once for each y, from 0 on.
    std::function<void(int y, double* row)> read;
    /// Fills in the labels of a row, asked for after its values, where the field is that of one among them.
    std::function<void(int y, double* row)> readLabels = {};
};

/// The same contours of such a field, in the same order, to the last bit. A region is handed to take as soon
/// as it and all before it are whole, so that of the points those of the regions under way are held, at 24
/// bytes, and at 16 those of whole ones behind them. Progress, told of each row, may end it: then false, and
/// nothing more is handed on. What read and take throw goes through.
QUORBIN_EXPORT bool contours(const FieldRows& rows, const std::function<void(Polygon&&)>& take,
                             const Progress& progress = {});

/// As openContours(field); both are handed on at the end, regions first.
QUORBIN_EXPORT bool openContours(const FieldRows& rows, const std::function<void(Polygon&&)>& takeRegion,
                                 const std::function<void(Ring&&)>& takeLine, const Progress& progress = {});

/// The same regions with fewer points. Every point that is left out lies within the tolerance, in world
/// units, of the line that has taken its place, and no ring comes to cross itself or another one. Points go
/// in the order of the area of the triangle with their neighbours (Visvalingam and Whyatt 1993), as long as
/// four of a ring are left. Throws std::invalid_argument unless the tolerance is a finite number ≥ 0. O(n log
/// n).
QUORBIN_EXPORT std::vector<Polygon> simplified(std::vector<Polygon> polygons, double tolerance);

/// Those of the above that return by value, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<std::vector<Polygon>> contours(const FullLevelSet2D& field,
                                                            const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Polygon>> contours(const FastLevelSet2D& band,
                                                            const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Polygon>> contours(const FullLevelSet2D& field,
                                                            const std::vector<double>& labels,
                                                            const Progress& progress);
QUORBIN_EXPORT std::optional<OpenContours> openContours(const FullLevelSet2D& field,
                                                        const Progress& progress);
QUORBIN_EXPORT std::optional<OpenContours> openContours(const FullLevelSet2D& field,
                                                        const std::vector<double>& labels,
                                                        const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Polygon>> simplified(std::vector<Polygon> polygons, double tolerance,
                                                              const Progress& progress);

/// Area that a ring encloses, positive if it runs counterclockwise and negative if clockwise; or the area of
/// a polygon, that of its outline less that of its holes.
QUORBIN_EXPORT double area(const Ring& ring);
QUORBIN_EXPORT double area(const Polygon& polygon);

/// Length of a ring, the way back from its last point to its first included.
QUORBIN_EXPORT double length(const Ring& ring);

/// The same for a polygon of getPolygons, whose points are in grid-index units: in grid units, or, if the
/// spacings are given, in world units.
QUORBIN_EXPORT double area(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon,
                           double xSpace = 1.0, double ySpace = 1.0);
QUORBIN_EXPORT double length(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon,
                             double xSpace = 1.0, double ySpace = 1.0);

}  // namespace quorbin
