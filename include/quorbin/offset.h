#pragma once

#include <optional>

#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// The level set with its interface moved outward by a true distance in world units, inward if that is
/// negative, as a signed distance (see reinitialize). Outward convex corners become round, and inward
/// concave ones. Where exactly a corner is within its cell samples do not tell, so that the arcs around
/// corners err by up to 0.3 of a spacing; elsewhere errors are those of reinitialize. On a grid only the
/// interface within counts, and what leaves the grid is cut off there. A band is widened on the way, for a
/// large distance in several steps of 16 of the largest spacing, and ends as wide as reinitialize makes it
/// by default.
///
/// Where there is no interface, or none is left, the result is all of one side: a grid with values of that
/// side, an empty band. Throws std::invalid_argument if the distance is not a finite number, or is above a
/// billion spacings, or if a spacing is not a positive finite number; std::bad_alloc.
QUORBIN_EXPORT FullLevelSet2D offset(const FullLevelSet2D& field, double distance);
QUORBIN_EXPORT FullLevelSet3D offset(const FullLevelSet3D& field, double distance);
QUORBIN_EXPORT FastLevelSet2D offset(const FastLevelSet2D& band, double distance);
QUORBIN_EXPORT FastLevelSet3D offset(const FastLevelSet3D& band, double distance);

/// Opening: inward by a radius ≥ 0 and out again. Takes away what a disc or ball of this radius does not fit
/// into, and rounds convex corners. Throws as offset does, and if the radius is negative.
QUORBIN_EXPORT FullLevelSet2D opened(const FullLevelSet2D& field, double radius);
QUORBIN_EXPORT FullLevelSet3D opened(const FullLevelSet3D& field, double radius);
QUORBIN_EXPORT FastLevelSet2D opened(const FastLevelSet2D& band, double radius);
QUORBIN_EXPORT FastLevelSet3D opened(const FastLevelSet3D& band, double radius);

/// Closing: outward by a radius ≥ 0 and in again. Fills what a disc or ball of this radius outside cannot
/// reach, and rounds concave corners. What meets the border of the grid on the way out stays there.
QUORBIN_EXPORT FullLevelSet2D closed(const FullLevelSet2D& field, double radius);
QUORBIN_EXPORT FullLevelSet3D closed(const FullLevelSet3D& field, double radius);
QUORBIN_EXPORT FastLevelSet2D closed(const FastLevelSet2D& band, double radius);
QUORBIN_EXPORT FastLevelSet3D closed(const FastLevelSet3D& band, double radius);

/// All of these, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<FullLevelSet2D> offset(const FullLevelSet2D& field, double distance,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> offset(const FullLevelSet3D& field, double distance,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> offset(const FastLevelSet2D& band, double distance,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> offset(const FastLevelSet3D& band, double distance,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> opened(const FullLevelSet2D& field, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> opened(const FullLevelSet3D& field, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> opened(const FastLevelSet2D& band, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> opened(const FastLevelSet3D& band, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> closed(const FullLevelSet2D& field, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> closed(const FullLevelSet3D& field, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> closed(const FastLevelSet2D& band, double radius,
                                                    const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> closed(const FastLevelSet3D& band, double radius,
                                                    const Progress& progress);

}  // namespace quorbin
