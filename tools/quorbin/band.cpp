#include "band.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "quiet_output.h"

void initQuietly(FastLevelSet2D& band, FullLevelSet2D& grid, bool reinit) {
    const QuietOutput quiet;
    band.initTo(grid, reinit ? 1 : 0);
}

Band::Band(FullLevelSet2D& field) : width_(field.getWidth()), height_(field.getHeight()) {
    initQuietly(band_, field, false);
    mirror();
    reinitialise();
}

bool Band::reinitialise() {
    band_.ensureSignedDistanceFMM();
    mirror();
    return band_.size() > 0;
}

void Band::mirror() {
    constexpr int kMargin = 6;  // more than is lost between two reinitialisations
    const auto isInside = [](int c, int count) { return c >= 0 && c < count; };
    const auto mirrored = [](int c, int count) {
        if (c > 0 && c <= kMargin) return -c;
        return c >= count - kMargin && c < count ? 2 * count - 1 - c : c;
    };
    const auto reflect = [&](bool alongX) {
        std::vector<PointAnd<double>> beyond;
        for (const auto& bucket : band_.points().buckets)
            for (const auto& point : bucket) {
                if (!isInside(point.x, width_) || (alongX && !isInside(point.y, height_))) continue;
                const int x = alongX ? mirrored(point.x, width_) : point.x;
                const int y = alongX ? point.y : mirrored(point.y, height_);
                if (x != point.x || y != point.y) beyond.push_back({x, y, point.value});
            }
        for (const auto& point : beyond) band_(point.x, point.y) = point.value;
    };
    reflect(true);
    reflect(false);
}

void Band::copyTo(FullLevelSet2D& field) const {
    const int width = field.getWidth(), height = field.getHeight();
    const double reach = 3 * std::max(field.getXSpace(), field.getYSpace());
    double* const values = field.data();
    double* const end = values + std::ptrdiff_t{width} * height;
    std::fill(values, end, std::numeric_limits<double>::quiet_NaN());
    for (const auto& bucket : band_.points().buckets)
        for (const auto& point : bucket) {
            const bool isInPicture = point.x >= 0 && point.x < width && point.y >= 0 && point.y < height;
            if (isInPicture) field(point.x, point.y) = point.value;
        }
    // The band is closed: from one point of it to the next all is on the side of the first, row after row.
    const double* const first = std::find_if(values, end, [](double v) { return !std::isnan(v); });
    double rowSide = first != end && *first <= 0 ? -reach : reach;
    for (int y = 0; y < height; ++y) {
        double side = rowSide;
        double* const row = values + std::ptrdiff_t{y} * width;
        for (int x = 0; x < width; ++x) {
            if (std::isnan(row[x]))
                row[x] = side;
            else
                side = row[x] > 0 ? reach : -reach;
        }
        rowSide = row[0] > 0 ? reach : -reach;
    }
}
