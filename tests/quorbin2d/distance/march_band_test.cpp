#include <heap.h>

#include <cmath>
#include <limits>
#include <map>

#include "quorbin2d/band_support.h"

namespace {

/// The march of a band with nothing but hashes and the indexed heap.
void textbookMarch(FastLevelSet2D& band, PointHash<double>& values) {
    using Point = std::pair<int, int>;
    PointHash<char> states(values.bucketCount);
    PointHash<double> distances(values.bucketCount);
    std::vector<Point> front, ids;
    std::map<Point, int> idOf;
    const auto makeFront = [&](int x, int y, bool inside) {
        if (states.find(x, y) != nullptr) return;
        states(x, y) = inside ? -1 : 1;
        distances(x, y) = band.estimateDistanceInit(x, y);
        front.emplace_back(x, y);
    };
    for (const auto& bucket : values.buckets)
        for (const auto& entry : bucket) {
            const int x = entry.x, y = entry.y;
            const bool inside = entry.value <= 0;
            const bool right = (band.have(x + 1, y) ? band.get(x + 1, y) : entry.value) <= 0;
            const bool up = (band.have(x, y + 1) ? band.get(x, y + 1) : entry.value) <= 0;
            if (right != inside) {
                makeFront(x, y, inside);
                makeFront(x + 1, y, right);
            }
            if (up != inside) {
                makeFront(x, y, inside);
                makeFront(x, y + 1, up);
            }
        }
    lset::Heap heap(1 << 20);
    const double limit = 2.1 * std::max(band.getXSpace(), band.getYSpace());
    for (const int sign : {1, -1}) {
        const auto enter = [&](int x, int y) {
            const int id = static_cast<int>(ids.size());
            heap.insert(id, band.estimateDistance(distances, states, sign, x, y));
            idOf[{x, y}] = id;
            ids.emplace_back(x, y);
            states(x, y) = 2;
        };
        const auto neighbours = [](Point p) {
            const auto [x, y] = p;
            return std::vector<Point>{{x + 1, y}, {x - 1, y}, {x, y + 1}, {x, y - 1}};
        };
        for (const Point& p : front)
            if (static_cast<signed char>(states(p.first, p.second)) == sign)
                for (const auto& [x, y] : neighbours(p))
                    if (states.find(x, y) == nullptr) enter(x, y);
        while (heap.peek() >= 0) {
            double distance = 0;
            const int id = heap.remove(&distance);
            const Point p = ids[static_cast<std::size_t>(id)];
            states(p.first, p.second) = static_cast<char>(sign);
            distances(p.first, p.second) = distance;
            if (distance > limit) continue;
            for (const auto& [x, y] : neighbours(p)) {
                const char* state = states.find(x, y);
                if (state == nullptr)
                    enter(x, y);
                else if (*state == 2)
                    heap.update(idOf[{x, y}], band.estimateDistance(distances, states, sign, x, y), 0);
            }
        }
    }
    values.clear();
    for (const auto& bucket : distances.buckets)
        for (const auto& entry : bucket)
            values(entry.x, entry.y) = static_cast<signed char>(states(entry.x, entry.y)) * entry.value;
}

TEST(BandMarch, IsTheTextbooksBitForBitAndInItsOrderOnBothPaths) {
    onBandPairs([](FastLevelSet2D& band, SlowBand& slow) {
        for (int again = 0; again < 2; ++again) {
            PointHash<double> expected = band.points();
            textbookMarch(band, expected);
            band.ensureSignedDistanceFMM();
            slow.ensureSignedDistanceFMM();
            ASSERT_TRUE(contentOf(band.points()) == contentOf(expected));
            ASSERT_TRUE(contentOf(slow.points()) == contentOf(expected));
            band.moveAlongCurvature();
            slow.moveAlongCurvature();
        }
    });
}

TEST(BandMarch, ReachesTwoSpacingsAndARingBeyondTheGridToo) {
    FullLevelSet2D grid;
    fill(grid, 12, 9, [](int x, int) { return x - 1.5; });
    FastLevelSet2D band;
    assignBandOf(band, grid, true);
    for (int x = -3; x <= 6; ++x) {
        EXPECT_EQ(band.have(x, 4), x >= -1 && x <= 4) << x;
        if (band.have(x, 4)) {
            EXPECT_NEAR(band.get(x, 4), x - 1.5, 1e-15);
        }
    }
    band(60, 60) = 1.0;
    band.ensureSignedDistanceFMM();
    EXPECT_FALSE(band.have(60, 60));
    FastLevelSet2D positive;
    positive(1, 1) = positive(2, 1) = 3.0;
    positive.ensureSignedDistanceFMM();
    EXPECT_EQ(positive.size(), 0);
}

TEST(BandMarch, TakesMoreThanThreePointsForEachStoredOne) {
    FastLevelSet2D band;
    for (int i = 0; i < 100; ++i) {  // scattered pairs
        band(20 * i, 0) = -0.5;
        band(20 * i + 1, 0) = 0.5;
    }
    band.ensureSignedDistanceFMM();
    EXPECT_GT(band.size(), 3 * 200);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(band.get(20 * i + 1, 0), 0.5);
}

TEST(BandMarch, LeavesABandAloneWhoseSpacingIsNoneAndEndsAtDistancesThatAreNone) {
    const auto bandOfADisc = [](double hx, double hy) {
        FullLevelSet2D grid;
        fill(
            grid, 5, 5, [](int x, int y) { return std::hypot(x - 2.0, y - 2.0) - 1.3; }, hx, hy);
        return quorbin::bandOf(grid, false);
    };
    for (const double h : {0.0, -1.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        FastLevelSet2D band = bandOfADisc(h, 1.0);
        const BandContent before = contentOf(band.points());
        band.ensureSignedDistanceFMM();
        EXPECT_TRUE(contentOf(band.points()) == before) << h;
    }
    // One step from the front is a distance that counts as none, and nothing spreads from there.
    FastLevelSet2D far = bandOfADisc(1e11, 1e11);
    far.ensureSignedDistanceFMM();
    EXPECT_LT(far.size(), 60);
    EXPECT_GT(far.size(), 0);
}

TEST(BandMarch, AndSegmentsWrapAroundWhereCoordinatesEnd) {
    for (const auto measure :
         {&FastLevelSet2D::ensureSignedDistanceFMM, &FastLevelSet2D::ensureSignedDistance}) {
        FastLevelSet2D band;
        const int end = std::numeric_limits<int>::max();
        for (const int x : {end - 2, end - 1})
            for (const int y : {-1, 0, 1, 2}) band(x, y) = x == end - 2 ? -0.5 : 0.5;
        (band.*measure)();
        EXPECT_EQ(band.get(end - 1, 0), 0.5);
        EXPECT_EQ(band.get(end, 0), 1.5);
        // A segment is not near a point at the other end of the range, a neighbour is.
        EXPECT_EQ(band.have(std::numeric_limits<int>::min(), 0),
                  measure == &FastLevelSet2D::ensureSignedDistanceFMM);
        EXPECT_EQ(band.getDxMinus(std::numeric_limits<int>::min(), 0),
                  band.get(std::numeric_limits<int>::min(), 0) - 1.5);
    }
}

TEST(BandSegments, AreTheSameOnBothPaths) {
    onBandPairs([](FastLevelSet2D& band, SlowBand& slow) {
        band.ensureSignedDistance();
        slow.ensureSignedDistance();
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
    });
}

TEST(BandSegments, GiveTheDistanceWithinThreeXSpacingsAndTheSideOfTheNearest) {
    const double centreX = 30.3, centreY = 28.8, radius = 17.6;
    for (const double spacing : {1.0, 0.5}) {
        FullLevelSet2D grid;
        fill(
            grid, 60, 60, [=](int x, int y) { return std::hypot(x - centreX, y - centreY) - radius; },
            spacing, spacing);
        FastLevelSet2D band;
        assignBandOf(band, grid, false);
        band.ensureSignedDistance();
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x) {
                const double distance = std::hypot(x - centreX, y - centreY) - radius;
                if (std::abs(std::abs(distance) - 3 * spacing) > 0.05) {
                    EXPECT_EQ(band.have(x, y), std::abs(distance) < 3 * spacing);
                }
                if (band.have(x, y)) {
                    EXPECT_NEAR(band.get(x, y), distance, 0.02);
                }
            }
    }
}

}  // namespace
