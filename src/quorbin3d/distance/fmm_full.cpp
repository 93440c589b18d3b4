#include <algorithm>
#include <climits>
#include <cstddef>
#include <vector>

#include "common/march.h"
#include "common/sign_rows.h"
#include "quorbin3d/differences/readers.h"
#include "quorbin3d/distance/dense_march.h"
#include "quorbin3d/distance/first_distance.h"
#include "quorbin3d/eikonal.h"

using namespace lset::detail;

namespace {

/// The front under way: states and first distances by index, and the points on each side in the order found.
struct Front {
    std::vector<int> outside, inside;
};

class FrontFinder {
 public:
    FrontFinder(const FullLevelSet3D& grid, int width, int height, signed char* states, double* distances)
        : grid_(grid), width_(width), height_(height), states_(states), distances_(distances) {}

    struct Point {
        int x, y, z;
        bool inside;
    };

    /// Of each pair that the interface separates both become front points.
    void look(const Point& here, const Point& beside) {
        if (here.inside == beside.inside) return;
        add(here);
        add(beside);
    }

    Front front;

 private:
    void add(const Point& p) {
        const std::ptrdiff_t i = (std::ptrdiff_t{p.z} * height_ + p.y) * width_ + p.x;
        if (states_[i] != kFar) return;
        states_[i] = p.inside ? kInside : kOutside;
        distances_[i] = grid_.estimateDistanceInit(p.x, p.y, p.z);
        (p.inside ? front.inside : front.outside).push_back(static_cast<int>(i));
    }

    const FullLevelSet3D& grid_;
    int width_, height_;
    signed char* states_;
    double* distances_;
};

void findFrontOf(FullLevelSet3D& grid, const VirtualReader3D&, int width, int height, int depth,
                 FrontFinder& finder) {
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int x1 = std::min(x + 1, width - 1), y1 = std::min(y + 1, height - 1),
                          z1 = std::min(z + 1, depth - 1);
                const bool here = grid(x, y, z) <= 0;
                const bool right = grid(x1, y, z) <= 0;
                const bool next = grid(x, y1, z) <= 0;
                const bool above = grid(x, y, z1) <= 0;
                finder.look({x, y, z, here}, {x1, y, z, right});
                finder.look({x, y, z, here}, {x, y1, z, next});
                finder.look({x, y, z, here}, {x, y, z1, above});
            }
}

void findFrontOf(FullLevelSet3D&, const DenseReader3D& field, int width, int height, int depth,
                 FrontFinder& finder) {
    SignRow here(width), next(width), above(width);
    for (int z = 0; z < depth; ++z) {
        here.flagNotPositive(field.row(0, z));
        for (int y = 0; y < height; ++y) {
            const int y1 = std::min(y + 1, height - 1), z1 = std::min(z + 1, depth - 1);
            next.flagNotPositive(field.row(y1, z));
            above.flagNotPositive(field.row(y, z1));
            const auto visit = [&](int x) {
                const int x1 = std::min(x + 1, width - 1);
                finder.look({x, y, z, here[x]}, {x1, y, z, here[x1]});
                finder.look({x, y, z, here[x]}, {x, y1, z, next[x]});
                finder.look({x, y, z, here[x]}, {x, y, z1, above[x]});
            };
            forEachMixedCube(here, next, above, above, width, visit);
            here.swap(next);
        }
    }
}

}  // namespace

double estimateDistanceHelper(int xMinusKnown, int xPlusKnown, int yPlusKnown, int yMinusKnown,
                              int zPlusKnown, int zMinusKnown, double xMinus, double xPlus, double yPlus,
                              double yMinus, double zPlus, double zMinus, double hx, double hy, double hz) {
    const bool known[6] = {xMinusKnown != 0, xPlusKnown != 0,  yMinusKnown != 0,
                           yPlusKnown != 0,  zMinusKnown != 0, zPlusKnown != 0};
    return estimateFrom(known, {xMinus, xPlus, yMinus, yPlus, zMinus, zPlus}, EikonalQuadratics3D(hx, hy, hz))
        .distance;
}

double FullLevelSet3D::estimateDistance(const double* distances, const char* states, int sign, int x, int y,
                                        int z) const {
    // States are signed numbers whatever the sign of char.
    const KnownNeighbours3D neighbours(distances, reinterpret_cast<const signed char*>(states), sign, x, y, z,
                                       width_, height_, depth_);
    return estimateFrom(neighbours.known, neighbours.distance,
                        EikonalQuadratics3D(getXSpace(), getYSpace(), getZSpace()))
        .distance;
}

void FullLevelSet3D::ensureSignedDistanceFMM() {
    if (size() == 0 || size() > INT_MAX) return;
    std::vector<signed char> states(size(), kFar);
    double* const distances = scratch_.get();
    std::fill_n(distances, size(), 0.0);
    FrontFinder finder(*this, width_, height_, states.data(), distances);
    withReader(*this, [&](const auto& field) { findFrontOf(*this, field, width_, height_, depth_, finder); });

    DenseMarch3D marched(distances, states.data(), width_, height_, depth_, getXSpace(), getYSpace(),
                         getZSpace());
    MarchQueue queue;
    march(marched, finder.front.outside, kOutside, queue);
    march(marched, finder.front.inside, kInside, queue);
    for (std::size_t i = 0; i < states.size(); ++i) values_[i] = states[i] * distances[i];
}
