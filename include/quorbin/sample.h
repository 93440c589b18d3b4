#pragma once

#include <optional>
#include <vector>

#include "brin/vec.h"
#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// What a level set is at a point, in world units.
struct Sample2D {
    double value;
    brin::Vec2<double> gradient;
    brin::Vec2<double> closest;  ///< the nearest point of the interface
};
struct Sample3D {
    double value;
    brin::Vec3<double> gradient;
    brin::Vec3<double> closest;
};

/// Values, gradients and closest points of a level set at points in world units, by the cubic through four
/// samples an axis around each, as reinitialize takes it; at the border of a grid the four are shifted
/// inward. Beside samples that are not finite or, in a band, not stored, and on axes of fewer than four,
/// the field is continued along straight lines. Values are of fourth order where the field is smooth.
///
/// The closest point is that of a signed distance, so reinitialize other fields first: it is found by
/// Newton's method from p − φ∇φ/|∇φ|, and is this point itself where the method does not come to a point of
/// the interface about |φ| away, as at corners or where the interface lies beyond a band.
///
/// Everything is not-a-number at points outside the grid, or in cells a corner of which is not stored or not
/// finite. Values are read as they are stored, past what a subclass overrides. Throws std::invalid_argument
/// if a spacing is not a positive finite number; std::bad_alloc. About 1 µs a point in 2D and 5 µs in 3D.
QUORBIN_EXPORT std::vector<Sample2D> sample(const FullLevelSet2D& field,
                                            const std::vector<brin::Vec2<double>>& points);
QUORBIN_EXPORT std::vector<Sample2D> sample(const FastLevelSet2D& band,
                                            const std::vector<brin::Vec2<double>>& points);
QUORBIN_EXPORT std::vector<Sample3D> sample(const FullLevelSet3D& field,
                                            const std::vector<brin::Vec3<double>>& points);
QUORBIN_EXPORT std::vector<Sample3D> sample(const FastLevelSet3D& band,
                                            const std::vector<brin::Vec3<double>>& points);

/// The same, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<std::vector<Sample2D>> sample(const FullLevelSet2D& field,
                                                           const std::vector<brin::Vec2<double>>& points,
                                                           const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Sample2D>> sample(const FastLevelSet2D& band,
                                                           const std::vector<brin::Vec2<double>>& points,
                                                           const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Sample3D>> sample(const FullLevelSet3D& field,
                                                           const std::vector<brin::Vec3<double>>& points,
                                                           const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Sample3D>> sample(const FastLevelSet3D& band,
                                                           const std::vector<brin::Vec3<double>>& points,
                                                           const Progress& progress);

}  // namespace quorbin
