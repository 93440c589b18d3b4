#include "compare.h"

#include <cmath>
#include <vector>

#include "band/extraction/compare_band.h"
#include "common/extraction/compare_dense.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

namespace {

/// The points of contours; each has half of the length to those before and after it.
class Outlines {
 public:
    using WeightedPoints = std::vector<WeightedPoint<2>>;

    template <class LevelSet>
    static double contentOf(const LevelSet& levelSet, const Stretch& stretch) {
        double sum = 0;
        for (const Polygon& region : toTheEnd(contours(levelSet, stretch.function()))) sum += area(region);
        return sum;
    }

    static WeightedPoints pointsOf(const FullLevelSet2D& field, const Stretch& stretch) {
        const OpenContours open = toTheEnd(openContours(field, stretch.function()));
        WeightedPoints points;
        addRegions(open.regions, points);
        for (const Ring& line : open.lines) add(line, false, points);
        return points;
    }
    static WeightedPoints pointsOf(const FastLevelSet2D& band, const Stretch& stretch) {
        WeightedPoints points;
        addRegions(toTheEnd(contours(band, stretch.function())), points);
        return points;
    }

 private:
    static void addRegions(const std::vector<Polygon>& regions, WeightedPoints& points) {
        for (const Polygon& region : regions) {
            add(region.outline, true, points);
            for (const Ring& hole : region.holes) add(hole, true, points);
        }
    }

    static void add(const Ring& ring, bool isClosed, WeightedPoints& points) {
        const std::size_t first = points.size();
        for (const auto& p : ring) points.push_back({{p.x, p.y}, 0});
        const std::size_t count = ring.size();
        for (std::size_t k = isClosed ? 0 : 1; k < count; ++k) {
            WeightedPoint<2>&from = points[first + (k + count - 1) % count], &to = points[first + k];
            const double half = lengthOf(difference(to.at, from.at)) / 2;
            from.weight += half;
            to.weight += half;
        }
    }
};

}  // namespace

std::optional<Comparison> compare(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                  const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return compareGrids<Outlines>(a, b, whole); });
}
std::optional<Comparison> compare(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                  const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return compareBands<Outlines>(a, b, whole); });
}
Comparison compare(const FullLevelSet2D& a, const FullLevelSet2D& b) { return *compare(a, b, Progress()); }
Comparison compare(const FastLevelSet2D& a, const FastLevelSet2D& b) { return *compare(a, b, Progress()); }

}  // namespace quorbin
