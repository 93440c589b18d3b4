#include <cstdio>

#include "band/storage/bucket_count.h"
#include "common/messages.h"
#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/fast_level_set_3d.h"

using namespace lset::detail;

namespace {

int bucketCountFor(const FullLevelSet3D& grid) {
    const auto size = [](int n) { return static_cast<unsigned long long>(n > 0 ? n : 0); };
    const unsigned long long w = size(grid.getWidth()), h = size(grid.getHeight()), d = size(grid.getDepth());
    const unsigned long long eighth = (w * h + w * d + h * d) / 8;  // of half the faces; below 2⁶¹
    return bucketCountAbove(static_cast<long long>(eighth), kBucketCountsOfVolumes);
}

/// Stores the corners of the cells that the surface crosses.
void seed(const VirtualReader3D& field, Point3Hash<double>& values) {
    const int width = field.width(), height = field.height(), depth = field.depth();
    for (int z = 0; z < depth - 1; ++z)
        for (int y = 0; y < height - 1; ++y)
            for (int x = 0; x < width - 1; ++x) {
                double corners[8];
                int positive = 0;
                for (int k = 0; k < 8; ++k) {
                    const GridPoint3D p = corner(x, y, z, k);
                    corners[k] = field.get(p.x, p.y, p.z);
                    positive += corners[k] > 0.0 ? 1 : 0;
                }
                if (positive == 0 || positive == 8) continue;
                for (int k = 0; k < 8; ++k) {
                    const GridPoint3D p = corner(x, y, z, k);
                    values(p.x, p.y, p.z) = corners[k];
                }
            }
}

void seed(const DenseReader3D& field, Point3Hash<double>& values) {
    const auto visit = [&](int x, int y, int z, int) {
        for (int k = 0; k < 8; ++k) {
            const GridPoint3D p = corner(x, y, z, k);
            values(p.x, p.y, p.z) = field.getInGrid(p.x, p.y, p.z);
        }
    };
    forEachMixedCell(field, &SignRow::flagPositive, visit, [](int, int) {});
}

}  // namespace

void FastLevelSet3D::makeOf(const FullLevelSet3D& grid, bool reinitialized) {
    const double hx = grid.getXSpace(), hy = grid.getYSpace(), hz = grid.getZSpace();
    Point3Hash<double> seeded(bucketCountFor(grid));
    withReader(grid, [&](const auto& field) { seed(field, seeded); });
    values_.swap(seeded);
    xSpace_ = hx;
    ySpace_ = hy;
    zSpace_ = hz;
    if (reinitialized) ensureSignedDistanceFMM();
}

void FastLevelSet3D::initTo(const FullLevelSet3D& grid, int reinit) {
    makeOf(grid, reinit != 0);
    std::printf(messages::kBandMade, values_.size());
}

FastLevelSet3D quorbin::bandOf(const FullLevelSet3D& grid, bool reinitialized) {
    FastLevelSet3D band;
    band.makeOf(grid, reinitialized);
    return band;
}
