#include "quorbin2d/dense_support.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

/// Every segment against every point, as the rule reads.
std::vector<double> everySegment(const FullLevelSet2D& grid) {
    Points points;
    Segments segments;
    grid.getLines(points, segments);
    std::vector<double> values;
    for (int y = 0; y < grid.getHeight(); ++y)
        for (int x = 0; x < grid.getWidth(); ++x) {
            double best = 2.0 * grid.getWidth() * grid.getHeight();
            brin::Vec2<double> p(x, y);
            for (const auto& [start, end] : segments) {
                const double d = distToSeg(points[static_cast<std::size_t>(start)],
                                           points[static_cast<std::size_t>(end)], p, nullptr);
                if (d <= best || std::isnan(d)) best = d;
            }
            values.push_back(grid.get(x, y) > 0 ? std::sqrt(best) : -std::sqrt(best));
        }
    return values;
}

TEST(SegmentDistance, OfAPlaneIsItsDistanceWithTheOldSign) {
    for (auto reinitialise :
         {&FullLevelSet2D::ensureSignedDistance, &FullLevelSet2D::ensureSignedDistanceBrute}) {
        FullLevelSet2D grid;
        fill(
            grid, 4, 4, [](int x, int) { return 3 * (x - 1.5); }, 0.1, 7.0);
        (grid.*reinitialise)();
        for (int x = 0; x < 4; ++x) EXPECT_EQ(grid.get(x, 2), x - 1.5);
        fill(grid, 5, 5, [](int x, int) { return double(x - 2); });
        (grid.*reinitialise)();
        EXPECT_TRUE(std::signbit(grid.get(2, 2)));
    }
}

TEST(SegmentDistance, WithoutAContourIsTheBoundOrTheOldValue) {
    FullLevelSet2D grid;
    fill(grid, 7, 2, [](int x, int) { return x + 1.0; });
    grid.ensureSignedDistance();
    EXPECT_EQ(grid.get(6, 1), 7.0);
    grid.ensureSignedDistanceBrute();
    EXPECT_EQ(grid.get(0, 0), std::sqrt(28.0));
    fill(grid, 1, 5, [](int, int) { return -1.0; });
    grid.ensureSignedDistanceBrute();
    EXPECT_EQ(grid.get(0, 3), -std::sqrt(10.0));
}

TEST(SegmentDistance, ByTheTreeIsTheSameBitsAsByEverySegment) {
    int round = 0;
    onRandomPairs([&](FullLevelSet2D& dense, SlowPath& slow) {
        if (++round % 3 == 0) dense(0, 0) = slow(0, 0) = NAN;
        const std::vector<double> expected = everySegment(slow);
        dense.ensureSignedDistanceBrute();
        slow.ensureSignedDistanceBrute();
        for (std::size_t i = 0; i < expected.size(); ++i) {
            if (std::isnan(expected[i]) && std::isnan(dense.data()[i])) continue;
            ASSERT_EQ(bits(&dense.data()[i], 1), bits(&expected[i], 1));
        }
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_TRUE(dense.data()[i] == slow.data()[i] || std::isnan(slow.data()[i]));
    });
}

TEST(SegmentDistance, BySweepsIsTheSameBitsOnBothPathsAndNeverBelowTheNearest) {
    onRandomPairs([](FullLevelSet2D& dense, SlowPath& slow) {
        const std::vector<double> nearest = everySegment(dense);
        const double furthest = std::sqrt(1.0 * dense.getWidth() * dense.getHeight());
        dense.ensureSignedDistance();
        slow.ensureSignedDistance();
        ASSERT_EQ(bits(dense), bits(slow));
        for (std::size_t i = 0; i < nearest.size(); ++i) {
            if (std::abs(nearest[i]) > furthest - 1) continue;
            ASSERT_GE(std::abs(dense.data()[i]), std::abs(nearest[i]));
        }
    });
}

TEST(SegmentDistance, AgreesWithAnAnalyticCircle) {
    const auto exact = [](int x, int y) { return std::hypot(x - 50.3, y - 49.1) - 30.7; };
    for (auto [reinitialise, tolerance] : {std::pair{&FullLevelSet2D::ensureSignedDistance, 2.0},
                                           {&FullLevelSet2D::ensureSignedDistanceBrute, 0.01},
                                           {&FullLevelSet2D::ensureSignedDistanceFMM, 0.8}}) {
        FullLevelSet2D grid;
        fill(grid, 100, 100, exact);
        (grid.*reinitialise)();
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x) ASSERT_NEAR(grid.get(x, y), exact(x, y), tolerance);
    }
}

}  // namespace
