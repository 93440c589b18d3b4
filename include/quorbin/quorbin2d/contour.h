#pragma once

#include <utility>
#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "level_set_2d.h"

/// Merges those points of a segment soup (see FullLevelSet2D::getLines) that differ by at most 1e-6 in both
/// coordinates and have the same vec2d_hash. The first point of each group stays in points, the others are
/// removed, and the indices in segments are changed accordingly. A segment whose two ends become one point is
/// kept; an index that is outside points is left as it is.
QUORBIN_EXPORT void getUniquePoints(std::vector<brin::Vec2<double>>& points,
                                    std::vector<std::pair<int, int>>& segments);

/// Chains directed segments into closed polygons and returns each as the indices of its points, the first not
/// repeated. A segment is followed by the one that starts at the index where it ends; of several, by the
/// first in segments. Chains that do not close, and those of fewer than three points, are left out. points is
/// not read, and neither argument is changed. Linear in the number of segments.
QUORBIN_EXPORT std::vector<std::vector<int>> getPolygons(std::vector<brin::Vec2<double>>& points,
                                                         std::vector<std::pair<int, int>>& segments);

/// Squared distance from p to the segment from a to b. Unless side is null, *side becomes 1 if p lies on the
/// line through a and b or on its left as seen from a to b (x to the right, y upwards), and 0 otherwise.
QUORBIN_EXPORT double distToSeg(brin::Vec2<double>& a, brin::Vec2<double>& b, brin::Vec2<double>& p,
                                int* side);

/// Closes open contours along the border of the grid: appends points and segments that run counterclockwise
/// along the stretches of the border where values are ≤ 0. points and segments must come from getLinesUnique
/// of levelSet, in grid-index units. Points within 0.0001 of the right or upper border count as on it.
/// Segments are added from a contour point only if the grid point before it, counterclockwise, is > 0, so
/// that a contour may stay open where values at the border are exactly 0. Does nothing for a band, which has
/// no border.
QUORBIN_EXPORT void addBorderEdges(std::vector<brin::Vec2<double>>& points,
                                   std::vector<std::pair<int, int>>& segments, LevelSet2D* levelSet);
