#pragma once

#include <utility>
#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "level_set_2d.h"

/// Merges the points of a segment soup that differ by at most 1e-6 in both coordinates and hash alike (see
/// vec2d_hash), keeping the first of each; renumbers the segments in place. A segment whose ends fall
/// together stays, as does an index outside the points.
QUORBIN_EXPORT void getUniquePoints(std::vector<brin::Vec2<double>>& points,
                                    std::vector<std::pair<int, int>>& segments);

/// Chains directed segments into closed polygons, lists of point indices, by matching end to start index;
/// where several segments start at an index the first one follows. Chains that do not close and those of
/// fewer than three points are dropped. The points are not read. Linear in the number of segments.
QUORBIN_EXPORT std::vector<std::vector<int>> getPolygons(std::vector<brin::Vec2<double>>& points,
                                                         std::vector<std::pair<int, int>>& segments);

/// Squared distance from p to the segment a-b; no root is taken. side, unless null: 1 when p is on the line
/// or to the left of a→b (x right, y up), else 0.
QUORBIN_EXPORT double distToSeg(brin::Vec2<double>& a, brin::Vec2<double>& b, brin::Vec2<double>& p,
                                int* side);

/// Closes contours along the border of the grid: appends points and segments that run counterclockwise along
/// the stretches of border whose values are ≤ 0. For indexed contours in grid-index units (getLinesUnique).
/// Points within 0.0001 of the upper and right border count as on it; where the grid point just before a
/// crossing is ≤ 0, nothing is added, so a field with samples of exactly 0 at the border may keep an open
/// loop.
QUORBIN_EXPORT void addBorderEdges(std::vector<brin::Vec2<double>>& points,
                                   std::vector<std::pair<int, int>>& segments, LevelSet2D* levelSet);
