#include <cmath>

#include "common/states.h"
#include "common/stepped.h"
#include "quorbin3d/distance/estimate.h"
#include "quorbin3d/distance/first_distance.h"

using namespace lset::detail;

namespace lset::detail {

double firstDistance(double here, const double (&beside)[6], const double (&h)[3]) {
    const bool inside = here <= 0;
    bool crosses[6];
    double d[6];
    for (int k = 0; k < 6; ++k) {
        crosses[k] = inside != (beside[k] <= 0);
        d[k] = (-here / (beside[k] - here)) * h[axisOf(k)];
    }
    RunningMin nearest;
    for (const auto& [a, b, c] : kTriples)
        if (crosses[a] && crosses[b] && crosses[c])
            nearest.offer(1.0 / std::sqrt(1.0 / (d[a] * d[a]) + 1.0 / (d[b] * d[b]) + 1.0 / (d[c] * d[c])));
    if (nearest.best < kUsable) return nearest.best;
    for (const auto& [a, b] : kPairs)
        if (crosses[a] && crosses[b])
            nearest.offer(1.0 / std::sqrt(1.0 / (d[a] * d[a]) + 1.0 / (d[b] * d[b])));
    // Always, where the march takes single neighbours only without a pair.
    for (const Direction s : kSingles)
        if (crosses[s]) nearest.offer(d[s]);
    return nearest.best;
}

double firstDistanceOf(const VirtualReader3D& field, int x, int y, int z) {
    return field.levelSet.estimateDistanceInit(x, y, z);
}

double firstDistanceOf(const DenseReader3D& field, int x, int y, int z) {
    const double here = field.getInGrid(x, y, z);
    double beside[6];
    beside[kXMinus] = x > 0 ? field.getInGrid(x - 1, y, z) : here;
    beside[kXPlus] = x < field.width() - 1 ? field.getInGrid(x + 1, y, z) : here;
    beside[kYMinus] = y > 0 ? field.getInGrid(x, y - 1, z) : here;
    beside[kYPlus] = y < field.height() - 1 ? field.getInGrid(x, y + 1, z) : here;
    beside[kZMinus] = z > 0 ? field.getInGrid(x, y, z - 1) : here;
    beside[kZPlus] = z < field.depth() - 1 ? field.getInGrid(x, y, z + 1) : here;
    return firstDistance(here, beside, {field.hx(), field.hy(), field.hz()});
}

}  // namespace lset::detail

double LevelSet3D::estimateDistanceInit(int x, int y, int z) const {
    const double here = get(x, y, z);
    const auto valueOf = [&](int nx, int ny, int nz) { return have(nx, ny, nz) ? get(nx, ny, nz) : here; };
    double beside[6];
    beside[kYPlus] = valueOf(x, stepped(y, 1), z);
    beside[kXMinus] = valueOf(stepped(x, -1), y, z);
    beside[kYMinus] = valueOf(x, stepped(y, -1), z);
    beside[kXPlus] = valueOf(stepped(x, 1), y, z);
    beside[kZPlus] = valueOf(x, y, stepped(z, 1));
    beside[kZMinus] = valueOf(x, y, stepped(z, -1));
    return firstDistance(here, beside, {getXSpace(), getYSpace(), getZSpace()});
}
