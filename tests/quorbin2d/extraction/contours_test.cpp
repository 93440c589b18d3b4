#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "quorbin2d/band_support.h"

namespace {

using quorbin::Polygon;

double totalArea(const std::vector<Polygon>& polygons) {
    double sum = 0;
    for (const Polygon& polygon : polygons) sum += quorbin::area(polygon);
    return sum;
}

bool isInRing(const quorbin::Ring& ring, double x, double y) {
    bool isInside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const auto &a = ring[j], &b = ring[i];
        if ((a.y > y) != (b.y > y) && x < a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x)) isInside = !isInside;
    }
    return isInside;
}

/// Square frames around each other, so that regions lie within holes of others.
void fillNested(FullLevelSet2D& grid, int rings, double hx, double hy) {
    const int size = 4 * rings + 1, centre = size / 2;
    fill(
        grid, size, size,
        [=](int x, int y) {
            const int out = std::max(std::abs(x - centre), std::abs(y - centre));
            return out % 2 == 0 && out < 2 * rings ? -1.0 : 1.0;
        },
        hx, hy);
}

TEST(Contours, GiveEachHoleToTheRegionAroundItInWorldUnits) {
    FullLevelSet2D grid;
    fillNested(grid, 3, 2.0, 0.5);
    std::vector<Polygon> polygons = quorbin::contours(grid);
    ASSERT_EQ(polygons.size(), 3U);
    std::sort(polygons.begin(), polygons.end(), [](const Polygon& a, const Polygon& b) {
        return quorbin::area(a.outline) < quorbin::area(b.outline);
    });
    EXPECT_EQ(polygons[0].holes.size(), 0U);
    for (const std::size_t i : {1U, 2U}) {
        ASSERT_EQ(polygons[i].holes.size(), 1U);
        EXPECT_GT(quorbin::area(polygons[i].outline), 0);
        EXPECT_LT(quorbin::area(polygons[i].holes[0]), 0);
        EXPECT_GT(-quorbin::area(polygons[i].holes[0]), quorbin::area(polygons[i - 1].outline));
    }
    // A diamond around one point, of a square's half.
    EXPECT_DOUBLE_EQ(quorbin::area(polygons[0]), 0.5 * 2.0 * 0.5);
    EXPECT_DOUBLE_EQ(quorbin::length(polygons[0].outline), 4 * std::hypot(0.5 * 2.0, 0.5 * 0.5));
}

// Exact zeros, equal values, samples at the border: regions of the field and of its complement make up the
// grid, and no hole lies outside its outline.
TEST(Contours, CloseEveryRingAndAddUpWhateverTheField) {
    std::mt19937 random(17);
    std::uniform_int_distribution<int> size(1, 12), grey(-2, 1), kind(0, 2);
    std::uniform_real_distribution<double> real(-1, 1);
    for (int round = 0; round < 4000; ++round) {
        FullLevelSet2D field, complement;
        SlowPath slow;
        const int width = size(random), height = size(random), chosen = kind(random);
        fill(field, width, height, [&](int, int) {
            return chosen == 0   ? real(random)
                   : chosen == 1 ? double(grey(random))
                                 : std::copysign(1e-300, real(random));
        });
        slow = field;
        // An exact zero is inside the field, so it is just outside the complement.
        fill(complement, width, height,
             [&](int x, int y) { return field.get(x, y) == 0 ? 1e-30 : -field.get(x, y); });
        const std::vector<Polygon> polygons = quorbin::contours(field);
        ASSERT_NEAR(totalArea(polygons) + totalArea(quorbin::contours(complement)),
                    (width - 1.0) * (height - 1.0), 1e-9);
        ASSERT_EQ(totalArea(polygons), totalArea(quorbin::contours(slow)));
        for (const Polygon& polygon : polygons) {
            ASSERT_GT(quorbin::area(polygon.outline), 0);
            for (const quorbin::Ring& hole : polygon.holes) {
                ASSERT_LT(quorbin::area(hole), 0);
                if (chosen != 0) continue;  // where rings touch, a point of one may lie on the other
                ASSERT_TRUE(isInRing(polygon.outline, hole[0].x, hole[0].y));
            }
        }
    }
}

TEST(Contours, TakeNotANumberForOutsideAndNeverPassItOn) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN(),
                     kFar = std::numeric_limits<double>::infinity();
    FullLevelSet2D grid;
    fill(grid, 6, 6, [=](int x, int y) {
        return x == 3 && y == 3 ? kNan : x == 0 ? kFar : y == 0 ? -kFar : -1.0;
    });
    const std::vector<Polygon> polygons = quorbin::contours(grid);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(polygons[0].holes.size(), 1U);  // through the samples around it
    EXPECT_DOUBLE_EQ(quorbin::area(polygons[0].holes[0]), -2.0);
    for (const auto& p : polygons[0].outline) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
    FullLevelSet2D nothing, infinite;
    EXPECT_TRUE(quorbin::contours(nothing).empty());
    fill(
        infinite, 3, 4, [=](int, int) { return -kFar; }, 1e-170, 1e-170);
    const std::vector<Polygon> all = quorbin::contours(infinite);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].outline.size(), 10U);
    for (const auto& p : all[0].outline) EXPECT_TRUE(p.x >= 0 && p.x <= 2e-170 && p.y >= 0 && p.y <= 3e-170);
}

/// A grid that gives another width whenever it is asked.
struct Restless : FullLevelSet2D {
    mutable int asked = 0;
    int getWidth() const override { return 3 + ++asked % 3; }
    double get(int x, int y) const override { return (x + y) % 2 == 0 ? -1 : 1; }
};

TEST(Contours, ReadSizesOnce) {
    Restless grid;
    grid.init(8, 8, 1, 1);
    for (int again = 0; again < 3; ++again) EXPECT_FALSE(quorbin::contours(grid).empty());
}

TEST(Contours, OfABandAreThoseOfTheGrid) {
    FullLevelSet2D grid;
    fill(
        grid, 60, 50,
        [](int x, int y) {
            const double ring = std::abs(std::hypot(x - 30.3, y - 25.2) - 15) - 4;
            return std::min(ring, std::hypot(x - 30.1, y - 25.4) - 5);
        },
        0.5, 2.0);
    const std::vector<Polygon> dense = quorbin::contours(grid);
    const FastLevelSet2D band = quorbin::bandOf(grid, false);
    SlowBand slow;
    static_cast<FastLevelSet2D&>(slow) = band;
    for (const FastLevelSet2D* one : {&band, static_cast<const FastLevelSet2D*>(&slow)}) {
        const std::vector<Polygon> polygons = quorbin::contours(*one);
        ASSERT_EQ(polygons.size(), dense.size());
        for (std::size_t i = 0; i < dense.size(); ++i) {
            EXPECT_NEAR(quorbin::area(polygons[i]), quorbin::area(dense[i]), 1e-9);
            EXPECT_EQ(polygons[i].holes.size(), dense[i].holes.size());
        }
    }
    // A half plane that the border of the grid cuts, whose contour does not close: its hole is in no region.
    FullLevelSet2D cut;
    fill(cut, 100, 50, [](int x, int y) {
        const double disc = std::hypot(x - 20.0, y - 25.0) - 12;
        return std::min(disc, std::max(40.5 - x, 8 - std::hypot(x - 70.0, y - 25.0)));
    });
    for (const bool reinitialized : {false, true}) {
        const std::vector<Polygon> apart = quorbin::contours(quorbin::bandOf(cut, reinitialized));
        ASSERT_EQ(apart.size(), 2U);
        for (const Polygon& polygon : apart) EXPECT_EQ(polygon.outline.empty(), polygon.holes.size() == 1);
    }
    // Inside all around: a region without end.
    for (int i = 0; i < 60 * 50; ++i) grid.data()[i] = -grid.data()[i];
    const std::vector<Polygon> inverted = quorbin::contours(quorbin::bandOf(grid, false));
    ASSERT_EQ(inverted.size(), 2U);
    EXPECT_TRUE(inverted[0].outline.empty());
    EXPECT_EQ(inverted[0].holes.size(), 1U);
}

/// The smallest distance of a point from a ring.
double distanceTo(const quorbin::Ring& ring, brin::Vec2<double> p) {
    double best = HUGE_VAL;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        int side = 0;
        brin::Vec2<double> a = ring[j], b = ring[i];
        best = std::min(best, distToSeg(a, b, p, &side));
    }
    return std::sqrt(best);
}

TEST(OpenContours, EndAtTheBorderAndLeaveClosedOnesAsRegions) {
    FullLevelSet2D field;
    fill(
        field, 12, 9,
        [](int x, int y) {
            if (x == 1 && y == 4) return 1.0;  // a hole in what the border cuts
            return std::min(x - 2.5, std::hypot(x - 8.0, y - 4.0) - 1.6);
        },
        0.5, 2.0);
    const quorbin::OpenContours found = quorbin::openContours(field);
    ASSERT_EQ(found.lines.size(), 1U);
    for (const auto& p : found.lines[0]) EXPECT_EQ(p.x, 0.5 * 2.5);
    EXPECT_EQ(std::abs(found.lines[0].front().y - found.lines[0].back().y), 16);
    ASSERT_EQ(found.regions.size(), 2U);
    for (const Polygon& region : found.regions) EXPECT_EQ(region.outline.empty(), region.holes.size() == 1);
}

TEST(SimplifiedContours, StayWithinTheToleranceAndDoNotCross) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> real(-1, 1);
    for (const double tolerance : {0.0, 0.2, 1.0, 5.0}) {
        FullLevelSet2D field;
        fill(field, 80, 60,
             [&](int x, int y) { return std::sin(0.4 * x) * std::cos(0.3 * y) + 0.35 * real(random) + 0.1; });
        const std::vector<Polygon> before = quorbin::contours(field);
        const std::vector<Polygon> after = quorbin::simplified(before, tolerance);
        std::size_t pointsBefore = 0, pointsAfter = 0;
        ASSERT_EQ(after.size(), before.size());
        std::vector<std::pair<brin::Vec2<double>, brin::Vec2<double>>> edges;
        const auto look = [&](const quorbin::Ring& original, const quorbin::Ring& ring) {
            pointsBefore += original.size();
            pointsAfter += ring.size();
            for (const auto& p : original) ASSERT_LE(distanceTo(ring, p), tolerance + 1e-12);
            for (std::size_t k = 0; k < ring.size(); ++k)
                edges.emplace_back(ring[k], ring[(k + 1) % ring.size()]);
        };
        for (std::size_t i = 0; i < before.size(); ++i) {
            look(before[i].outline, after[i].outline);
            for (std::size_t h = 0; h < before[i].holes.size(); ++h)
                look(before[i].holes[h], after[i].holes[h]);
        }
        EXPECT_LE(pointsAfter, tolerance == 0 ? pointsBefore : pointsBefore * 9 / 10);
        const auto side = [](const auto& a, const auto& b, const auto& p) {
            return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
        };
        for (std::size_t i = 0; i < edges.size(); ++i)
            for (std::size_t j = 0; j < i; ++j) {
                const auto& [a, b] = edges[i];
                const auto& [c, d] = edges[j];
                ASSERT_FALSE(side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0);
            }
    }
    EXPECT_THROW(quorbin::simplified({}, -1.0), std::invalid_argument);
    EXPECT_THROW(quorbin::simplified({}, std::nan("")), std::invalid_argument);
}

/// The rows of a grid as a file gives them, so many at a time; each may be asked for once.
quorbin::FieldRows inStrips(const FullLevelSet2D& grid, int stripHeight) {
    const int width = grid.getWidth();
    return {
        width, grid.getHeight(), grid.getXSpace(), grid.getYSpace(),
        [&grid, width, stripHeight, strip = std::vector<double>(), asked = 0](int y, double* row) mutable {
            ASSERT_EQ(y, asked++);
            if (y % stripHeight == 0) {
                const int end = std::min(y + stripHeight, grid.getHeight());
                strip.assign(grid.data() + y * width, grid.data() + end * width);
            }
            std::copy_n(strip.begin() + y % stripHeight * width, width, row);
        }};
}

bool isSame(const Polygon& a, const Polygon& b) { return a.outline == b.outline && a.holes == b.holes; }

TEST(Contours, FromStripsAreThoseOfTheWholeGrid) {
    std::mt19937 random(23);
    std::uniform_int_distribution<int> size(1, 30), odd(0, 9);
    for (int round = 0; round < 3000; ++round) {
        FullLevelSet2D grid;
        fillRandom(grid, size(random), size(random), random, round % 2 == 0, 0.3, 2.5);
        if (round % 3 == 0)
            for (int i = 0; i < grid.getWidth() * grid.getHeight(); ++i)
                if (odd(random) == 0) grid.data()[i] = odd(random) < 5 ? std::nan("") : -HUGE_VAL;
        const std::vector<Polygon> whole = quorbin::contours(grid);
        const quorbin::OpenContours open = quorbin::openContours(grid);
        for (const int height : {1, 3, 8, 100}) {
            std::vector<Polygon> regions, cut;
            std::vector<quorbin::Ring> lines;
            const auto takeInto = [](std::vector<Polygon>& all) {
                return [&all](Polygon&& region) { all.push_back(std::move(region)); };
            };
            ASSERT_TRUE(quorbin::contours(inStrips(grid, height), takeInto(regions)));
            ASSERT_TRUE(
                quorbin::openContours(inStrips(grid, height), takeInto(cut),
                                      [&](quorbin::Ring&& line) { lines.push_back(std::move(line)); }));
            ASSERT_TRUE(std::equal(whole.begin(), whole.end(), regions.begin(), regions.end(), isSame));
            ASSERT_TRUE(std::equal(open.regions.begin(), open.regions.end(), cut.begin(), cut.end(), isSame));
            ASSERT_EQ(lines, open.lines);
        }
    }
}

// Diamonds around single points, in every second row, the first and the last cut by the border: each is whole
// when the row after it has been read.
TEST(Contours, OfRowsAreHandedOnOnceTheyAreWholeAndEndWhenAsked) {
    constexpr int kCount = 20;
    int read = 0, found = 0;
    const quorbin::FieldRows rows{kCount, 2 * kCount, 1, 1, [&](int y, double* row) {
                                      read = y;
                                      std::fill_n(row, kCount, 1.0);
                                      if (y % 2 == 1) row[y / 2] = -1;
                                  }};
    const auto take = [&](Polygon&& diamond) {
        EXPECT_EQ(quorbin::area(diamond), found == 0 ? 0.25 : found == kCount - 1 ? 0.125 : 0.5);
        ++found;
        EXPECT_EQ(read, std::min(2 * found, 2 * kCount - 1));
    };
    EXPECT_TRUE(quorbin::contours(rows, take));
    EXPECT_EQ(found, kCount);
    found = 0;
    EXPECT_FALSE(quorbin::contours(rows, take, [&](int, int) { return found < 3; }));
    EXPECT_EQ(found, 3);
}

}  // namespace
