#include "sets.h"

#include "band/distance/set_operations_band.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

FullLevelSet2D unite(const FullLevelSet2D& a, const FullLevelSet2D& b) {
    return reinitializedCombination(a, b, SetOperation::kUnion);
}
FullLevelSet2D intersect(const FullLevelSet2D& a, const FullLevelSet2D& b) {
    return reinitializedCombination(a, b, SetOperation::kIntersection);
}
FullLevelSet2D subtract(const FullLevelSet2D& a, const FullLevelSet2D& b) {
    return reinitializedCombination(a, b, SetOperation::kDifference);
}
FullLevelSet2D complement(const FullLevelSet2D& field) { return complementOfGrid(field); }

FastLevelSet2D unite(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kUnion, width);
}
FastLevelSet2D intersect(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kIntersection, width);
}
FastLevelSet2D subtract(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kDifference, width);
}
FastLevelSet2D complement(const FastLevelSet2D& band, double width) { return complementOfBand(band, width); }

}  // namespace quorbin
