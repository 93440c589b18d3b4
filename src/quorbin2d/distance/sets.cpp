#include "sets.h"

#include "band/distance/set_operations_band.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

namespace {

std::optional<FullLevelSet2D> combined(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                       SetOperation operation, const Progress& progress) {
    return unlessEnded(
        progress, [&](const Stretch& whole) { return reinitializedCombination(a, b, operation, whole); });
}
std::optional<FastLevelSet2D> combined(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                       SetOperation operation, double width, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) {
        return reinitializedCombination(a, b, operation, width, whole);
    });
}

}  // namespace

std::optional<FullLevelSet2D> unite(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                    const Progress& progress) {
    return combined(a, b, SetOperation::kUnion, progress);
}
FullLevelSet2D unite(const FullLevelSet2D& a, const FullLevelSet2D& b) { return *unite(a, b, Progress()); }
std::optional<FullLevelSet2D> intersect(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                        const Progress& progress) {
    return combined(a, b, SetOperation::kIntersection, progress);
}
FullLevelSet2D intersect(const FullLevelSet2D& a, const FullLevelSet2D& b) {
    return *intersect(a, b, Progress());
}
std::optional<FullLevelSet2D> subtract(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                       const Progress& progress) {
    return combined(a, b, SetOperation::kDifference, progress);
}
FullLevelSet2D subtract(const FullLevelSet2D& a, const FullLevelSet2D& b) {
    return *subtract(a, b, Progress());
}
std::optional<FullLevelSet2D> complement(const FullLevelSet2D& field, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return complementOfGrid(field, whole); });
}
FullLevelSet2D complement(const FullLevelSet2D& field) { return *complement(field, Progress()); }

std::optional<FastLevelSet2D> unite(const FastLevelSet2D& a, const FastLevelSet2D& b, double width,
                                    const Progress& progress) {
    return combined(a, b, SetOperation::kUnion, width, progress);
}
FastLevelSet2D unite(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return *unite(a, b, width, Progress());
}
std::optional<FastLevelSet2D> intersect(const FastLevelSet2D& a, const FastLevelSet2D& b, double width,
                                        const Progress& progress) {
    return combined(a, b, SetOperation::kIntersection, width, progress);
}
FastLevelSet2D intersect(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return *intersect(a, b, width, Progress());
}
std::optional<FastLevelSet2D> subtract(const FastLevelSet2D& a, const FastLevelSet2D& b, double width,
                                       const Progress& progress) {
    return combined(a, b, SetOperation::kDifference, width, progress);
}
FastLevelSet2D subtract(const FastLevelSet2D& a, const FastLevelSet2D& b, double width) {
    return *subtract(a, b, width, Progress());
}
std::optional<FastLevelSet2D> complement(const FastLevelSet2D& band, double width, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return complementOfBand(band, width, whole); });
}
FastLevelSet2D complement(const FastLevelSet2D& band, double width) {
    return *complement(band, width, Progress());
}

}  // namespace quorbin
