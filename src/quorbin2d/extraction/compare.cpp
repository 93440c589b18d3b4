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
    static double contentOf(const LevelSet& levelSet) {
        double sum = 0;
        for (const Polygon& region : contours(levelSet)) sum += area(region);
        return sum;
    }

    static WeightedPoints pointsOf(const FullLevelSet2D& field) {
        const OpenContours open = openContours(field);
        WeightedPoints points;
        addRegions(open.regions, points);
        for (const Ring& line : open.lines) add(line, false, points);
        return points;
    }
    static WeightedPoints pointsOf(const FastLevelSet2D& band) {
        WeightedPoints points;
        addRegions(contours(band), points);
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

Comparison compare(const FullLevelSet2D& a, const FullLevelSet2D& b) { return compareGrids<Outlines>(a, b); }
Comparison compare(const FastLevelSet2D& a, const FastLevelSet2D& b) { return compareBands<Outlines>(a, b); }

}  // namespace quorbin
