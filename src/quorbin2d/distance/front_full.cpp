#include "quorbin2d/distance/front_full.h"

#include <algorithm>
#include <utility>

#include "common/sign_rows.h"
#include "common/states.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/distance/first_distance.h"

using namespace lset::detail;

namespace {

template <class Reader>
double firstDistanceOf(const Reader& field, int x, int y) {
    Cross2D value{};
    value.here = field.get(x, y);
    value.up = y < field.height() - 1 ? field.get(x, y + 1) : value.here;
    value.left = x > 0 ? field.get(x - 1, y) : value.here;
    value.down = y > 0 ? field.get(x, y - 1) : value.here;
    value.right = x < field.width() - 1 ? field.get(x + 1, y) : value.here;
    return firstDistance(value, field.hx(), field.hy());
}

}  // namespace

double FullLevelSet2D::estimateDistanceInit(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return firstDistanceOf(field, x, y); });
}

namespace lset::detail {

namespace {

struct GridPoint {
    int x, y;
};

class FrontFinder {
 public:
    FrontFinder(int width, signed char* states, double* distances)
        : width_(width), states_(states), distances_(distances) {}

    Front2D takeFront() { return std::move(front_); }

    /// Looks at a point and its right and upper neighbours, which at the edge are the point itself. Of each
    /// pair that the interface separates both become front points.
    template <class Reader>
    void look(const Reader& field, GridPoint here, GridPoint right, GridPoint up, bool hereInside,
              bool rightInside, bool upInside) {
        if (hereInside != rightInside) {
            add(field, here, hereInside);
            add(field, right, rightInside);
        }
        if (hereInside != upInside) {
            add(field, here, hereInside);
            add(field, up, upInside);
        }
    }

 private:
    template <class Reader>
    void add(const Reader& field, GridPoint p, bool inside) {
        const int i = p.y * width_ + p.x;
        if (states_[i] != kFar) return;
        states_[i] = inside ? kInside : kOutside;
        distances_[i] = firstDistanceOf(field, p.x, p.y);
        (inside ? front_.inside : front_.outside).push_back(i);
    }

    int width_;
    signed char* states_;
    double* distances_;
    Front2D front_;
};

void findFrontOf(FullLevelSet2D& grid, const VirtualReader2D& field, int width, int height,
                 FrontFinder& finder) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int x1 = std::min(x + 1, width - 1), y1 = std::min(y + 1, height - 1);
            const bool here = grid(x, y) <= 0;
            const bool right = grid(x1, y) <= 0;
            const bool up = grid(x, y1) <= 0;
            finder.look(field, {x, y}, {x1, y}, {x, y1}, here, right, up);
        }
}

void findFrontOf(FullLevelSet2D&, const DenseReader2D& field, int width, int height, FrontFinder& finder) {
    SignRow here(width), above(width);
    here.flagNotPositive(field.row(0));
    for (int y = 0; y < height; ++y) {
        const int y1 = std::min(y + 1, height - 1);
        above.flagNotPositive(field.row(y1));
        forEachMixedCell(here, above, width, [&](int x) {
            const int x1 = std::min(x + 1, width - 1);
            finder.look(field, {x, y}, {x1, y}, {x, y1}, here[x], here[x1], above[x]);
        });
        here.swap(above);
    }
}

}  // namespace

Front2D findFront(FullLevelSet2D& grid, signed char* states, double* distances, int width, int height) {
    if (width == 0 || height == 0) return {};
    FrontFinder finder(width, states, distances);
    withReader(grid, [&](const auto& field) { findFrontOf(grid, field, width, height, finder); });
    return finder.takeFront();
}

}  // namespace lset::detail
