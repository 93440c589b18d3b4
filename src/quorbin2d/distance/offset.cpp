#include "offset.h"

#include "band/distance/offset_band.h"
#include "common/distance/offset_dense.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

namespace {

/// Moved by a distance and back again.
template <class LevelSet>
std::optional<LevelSet> movedThereAndBack(const LevelSet& levelSet, double distance,
                                          const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) {
        const LevelSet there = toTheEnd(offset(levelSet, distance, whole.part(0, 0.5).function()));
        return toTheEnd(offset(there, -distance, whole.part(0.5, 1).function()));
    });
}

}  // namespace

std::optional<FullLevelSet2D> offset(const FullLevelSet2D& field, double distance, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return offsetGrid(field, distance, whole); });
}
std::optional<FastLevelSet2D> offset(const FastLevelSet2D& band, double distance, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return offsetBand(band, distance, whole); });
}
FullLevelSet2D offset(const FullLevelSet2D& field, double distance) {
    return *offset(field, distance, Progress());
}
FastLevelSet2D offset(const FastLevelSet2D& band, double distance) {
    return *offset(band, distance, Progress());
}

std::optional<FullLevelSet2D> opened(const FullLevelSet2D& field, double radius, const Progress& progress) {
    return movedThereAndBack(field, -checkedRadius(radius), progress);
}
FullLevelSet2D opened(const FullLevelSet2D& field, double radius) {
    return *opened(field, radius, Progress());
}
std::optional<FastLevelSet2D> opened(const FastLevelSet2D& band, double radius, const Progress& progress) {
    return movedThereAndBack(band, -checkedRadius(radius), progress);
}
FastLevelSet2D opened(const FastLevelSet2D& band, double radius) { return *opened(band, radius, Progress()); }
std::optional<FullLevelSet2D> closed(const FullLevelSet2D& field, double radius, const Progress& progress) {
    return movedThereAndBack(field, checkedRadius(radius), progress);
}
FullLevelSet2D closed(const FullLevelSet2D& field, double radius) {
    return *closed(field, radius, Progress());
}
std::optional<FastLevelSet2D> closed(const FastLevelSet2D& band, double radius, const Progress& progress) {
    return movedThereAndBack(band, checkedRadius(radius), progress);
}
FastLevelSet2D closed(const FastLevelSet2D& band, double radius) { return *closed(band, radius, Progress()); }

}  // namespace quorbin
