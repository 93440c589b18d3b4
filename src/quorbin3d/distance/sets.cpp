#include "sets.h"

#include "band/distance/set_operations_band.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

FullLevelSet3D unite(const FullLevelSet3D& a, const FullLevelSet3D& b) {
    return reinitializedCombination(a, b, SetOperation::kUnion);
}
FullLevelSet3D intersect(const FullLevelSet3D& a, const FullLevelSet3D& b) {
    return reinitializedCombination(a, b, SetOperation::kIntersection);
}
FullLevelSet3D subtract(const FullLevelSet3D& a, const FullLevelSet3D& b) {
    return reinitializedCombination(a, b, SetOperation::kDifference);
}
FullLevelSet3D complement(const FullLevelSet3D& field) { return complementOfGrid(field); }

FastLevelSet3D unite(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kUnion, width);
}
FastLevelSet3D intersect(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kIntersection, width);
}
FastLevelSet3D subtract(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return reinitializedCombination(a, b, SetOperation::kDifference, width);
}
FastLevelSet3D complement(const FastLevelSet3D& band, double width) { return complementOfBand(band, width); }

}  // namespace quorbin
