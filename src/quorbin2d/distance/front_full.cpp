#include "quorbin2d/distance/front_full.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/states.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/differences/sign_rows.h"

using namespace lset::detail;

namespace {

/// Distance of a point from the interface by the crossings of its four grid edges. A pair of crossings on
/// different axes gives the distance to the line through both; single crossings are candidates always.
template <class Reader>
double firstDistance(const Reader& field, int x, int y) {
    const int width = field.width(), height = field.height();
    const double here = field.get(x, y);
    const double upValue = y < height - 1 ? field.get(x, y + 1) : here;
    const double leftValue = x > 0 ? field.get(x - 1, y) : here;
    const double downValue = y > 0 ? field.get(x, y - 1) : here;
    const double rightValue = x < width - 1 ? field.get(x + 1, y) : here;

    const bool inside = here <= 0;
    const auto crosses = [&](double neighbour) { return (neighbour <= 0) != inside; };
    const bool right = crosses(rightValue), up = crosses(upValue);
    const bool down = crosses(downValue), left = crosses(leftValue);
    const auto crossing = [&](double neighbour, double h) { return (-here / (neighbour - here)) * h; };
    const double hx = field.hx(), hy = field.hy();
    const double r = crossing(rightValue, hx), u = crossing(upValue, hy);
    const double d = crossing(downValue, hy), l = crossing(leftValue, hx);

    const auto toLine = [](double h, double v) { return 1.0 / std::sqrt(1.0 / (h * h) + 1.0 / (v * v)); };
    RunningMin nearest;
    if (up && right) nearest.offer(toLine(r, u));
    if (up && left) nearest.offer(toLine(l, u));
    if (down && left) nearest.offer(toLine(l, d));
    if (down && right) nearest.offer(toLine(r, d));
    if (right) nearest.offer(r);
    if (up) nearest.offer(u);
    if (down) nearest.offer(d);
    if (left) nearest.offer(l);
    return nearest.best;
}

}  // namespace

double FullLevelSet2D::estimateDistanceInit(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return firstDistance(field, x, y); });
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
        distances_[i] = firstDistance(field, p.x, p.y);
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
    const auto isInside = [](double value) { return value <= 0; };
    here.assign(field.row(0), isInside);
    for (int y = 0; y < height; ++y) {
        const int y1 = std::min(y + 1, height - 1);
        above.assign(field.row(y1), isInside);
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
