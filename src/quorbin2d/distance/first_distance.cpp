#include "quorbin2d/distance/first_distance.h"

#include "common/stepped.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/fast_level_set_2d.h"

using namespace lset::detail;

double FullLevelSet2D::estimateDistanceInit(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return firstDistanceOf(field, x, y); });
}

double FastLevelSet2D::estimateDistanceInit(int x, int y) {
    const int left = stepped(x, -1), right = stepped(x, 1), down = stepped(y, -1), up = stepped(y, 1);
    Cross2D value{};
    value.here = get(x, y);
    value.up = have(x, up) ? get(x, up) : value.here;
    value.left = have(left, y) ? get(left, y) : value.here;
    value.down = have(x, down) ? get(x, down) : value.here;
    value.right = have(right, y) ? get(right, y) : value.here;
    const double hx = getXSpace();
    const double hy = getYSpace();
    return firstDistance(value, hx, hy);
}
