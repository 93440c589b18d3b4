#include "sets.h"

#include "band/distance/set_operations_band.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

namespace {

std::optional<FullLevelSet3D> combined(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                       SetOperation operation, const Progress& progress) {
    return unlessEnded(
        progress, [&](const Stretch& whole) { return reinitializedCombination(a, b, operation, whole); });
}
std::optional<FastLevelSet3D> combined(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                       SetOperation operation, double width, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) {
        return reinitializedCombination(a, b, operation, width, whole);
    });
}

}  // namespace

std::optional<FullLevelSet3D> unite(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                    const Progress& progress) {
    return combined(a, b, SetOperation::kUnion, progress);
}
FullLevelSet3D unite(const FullLevelSet3D& a, const FullLevelSet3D& b) { return *unite(a, b, Progress()); }
std::optional<FullLevelSet3D> intersect(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                        const Progress& progress) {
    return combined(a, b, SetOperation::kIntersection, progress);
}
FullLevelSet3D intersect(const FullLevelSet3D& a, const FullLevelSet3D& b) {
    return *intersect(a, b, Progress());
}
std::optional<FullLevelSet3D> subtract(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                       const Progress& progress) {
    return combined(a, b, SetOperation::kDifference, progress);
}
FullLevelSet3D subtract(const FullLevelSet3D& a, const FullLevelSet3D& b) {
    return *subtract(a, b, Progress());
}
std::optional<FullLevelSet3D> complement(const FullLevelSet3D& field, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return complementOfGrid(field, whole); });
}
FullLevelSet3D complement(const FullLevelSet3D& field) { return *complement(field, Progress()); }

std::optional<FastLevelSet3D> unite(const FastLevelSet3D& a, const FastLevelSet3D& b, double width,
                                    const Progress& progress) {
    return combined(a, b, SetOperation::kUnion, width, progress);
}
FastLevelSet3D unite(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return *unite(a, b, width, Progress());
}
std::optional<FastLevelSet3D> intersect(const FastLevelSet3D& a, const FastLevelSet3D& b, double width,
                                        const Progress& progress) {
    return combined(a, b, SetOperation::kIntersection, width, progress);
}
FastLevelSet3D intersect(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return *intersect(a, b, width, Progress());
}
std::optional<FastLevelSet3D> subtract(const FastLevelSet3D& a, const FastLevelSet3D& b, double width,
                                       const Progress& progress) {
    return combined(a, b, SetOperation::kDifference, width, progress);
}
FastLevelSet3D subtract(const FastLevelSet3D& a, const FastLevelSet3D& b, double width) {
    return *subtract(a, b, width, Progress());
}
std::optional<FastLevelSet3D> complement(const FastLevelSet3D& band, double width, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return complementOfBand(band, width, whole); });
}
FastLevelSet3D complement(const FastLevelSet3D& band, double width) {
    return *complement(band, width, Progress());
}

}  // namespace quorbin
