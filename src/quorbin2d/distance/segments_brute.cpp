#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/watch.h"
#include "quorbin2d/distance/segment_tree.h"
#include "quorbin2d/full_level_set_2d.h"

using namespace lset::detail;

bool FullLevelSet2D::measureByBruteForce(const quorbin::Progress& progress) {
    return isDoneToTheEnd(progress, [&](const Stretch& whole) {
        std::vector<brin::Vec2<double>> points;
        std::vector<std::pair<int, int>> segments;
        getLines(points, segments);
        whole.tell(0.01);
        // A distance that is not a number replaces whatever is there and is replaced by none: one segment
        // that starts nowhere, and no point has a distance. One that only ends nowhere counts as its start.
        const auto isNumber = [&](int i) {
            const brin::Vec2<double>& p = points[static_cast<std::size_t>(i)];
            return !std::isnan(p.x) && !std::isnan(p.y);
        };
        double bound = 2.0 * static_cast<double>(size());
        for (auto& [start, end] : segments) {
            if (!isNumber(end)) end = start;
            if (!isNumber(start)) bound = std::numeric_limits<double>::quiet_NaN();
        }
        if (std::isnan(bound)) segments.clear();
        const SegmentTree tree(points, segments, whole.part(0.01, 0.05));

        Stretch rest = whole.part(0.05, 1);
        constexpr std::size_t kStepsOfAPoint = 8;
        rest.expect(kStepsOfAPoint * size());
        double* distance = scratch_.get();
        std::size_t nearest = 0;
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x, ++distance) {
                const double unsignedDistance =
                    std::sqrt(tree.smallest({double(x), double(y)}, bound, nearest));
                *distance = values_[distance - scratch_.get()] > 0 ? unsignedDistance : -unsignedDistance;
                rest.step(kStepsOfAPoint);
            }
        std::copy_n(scratch_.get(), size(), values_.get());
    });
}

void FullLevelSet2D::ensureSignedDistanceBrute() { measureByBruteForce({}); }

bool quorbin::ensureSignedDistanceBrute(FullLevelSet2D& field, const Progress& progress) {
    return field.measureByBruteForce(progress);
}
