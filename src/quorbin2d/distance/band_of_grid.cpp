#include <cstdio>

#include "band/storage/bucket_count.h"
#include "common/messages.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/fast_level_set_2d.h"

using namespace lset::detail;

namespace {

int bucketCountFor(const FullLevelSet2D& grid) {
    const long long perimeter = 4 * (static_cast<long long>(grid.getWidth()) + grid.getHeight());
    return bucketCountAbove(perimeter, kBucketCountsOfPictures);
}

/// Stores the corners of the cells that the contour crosses.
void seed(FullLevelSet2D& grid, const VirtualReader2D&, PointHash<double>& values) {
    const int width = grid.getWidth(), height = grid.getHeight();
    const auto visit = [&](int x, int y, int) {
        for (int k = 0; k < 4; ++k) {
            const int cx = x + kSquareX[k], cy = y + kSquareY[k];
            values(cx, cy) = grid(cx, cy);
        }
    };
    forEachCellRead(
        width, height, [&](int x, int y) { return grid(x, y); }, visit, [](int, int) {});
}

void seed(FullLevelSet2D& grid, const DenseReader2D& field, PointHash<double>& values) {
    const auto visit = [&](int x, int y, int) {
        for (int k = 0; k < 4; ++k) {
            const int cx = x + kSquareX[k], cy = y + kSquareY[k];
            values(cx, cy) = field.getInGrid(cx, cy);
        }
    };
    forEachCrossedCell(field, grid.getWidth(), grid.getHeight(), visit, [](int, int) {});
}

}  // namespace

void FastLevelSet2D::makeOf(FullLevelSet2D& grid, bool reinitialized) {
    const double hx = grid.getXSpace(), hy = grid.getYSpace();
    PointHash<double> seeded(bucketCountFor(grid));
    withReader(grid, [&](const auto& field) { seed(grid, field, seeded); });
    values_.swap(seeded);
    xSpace_ = hx;
    ySpace_ = hy;
    if (reinitialized) ensureSignedDistanceFMM();
}

void FastLevelSet2D::initTo(FullLevelSet2D& grid, int reinit) {
    makeOf(grid, reinit != 0);
    std::printf(messages::kBandMade, size());
}

FastLevelSet2D quorbin::bandOf(const FullLevelSet2D& grid, bool reinitialized) {
    FastLevelSet2D band;
    band.makeOf(const_cast<FullLevelSet2D&>(grid), reinitialized);  // read through the slot that can write
    return band;
}
