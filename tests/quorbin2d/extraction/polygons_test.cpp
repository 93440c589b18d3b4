#include "quorbin2d/dense_support.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using brin::Vec2;

/// The rule as it reads: the first segment that starts where another ends follows it.
std::vector<std::vector<int>> polygonsByScanning(const Segments& segments) {
    std::vector<std::vector<int>> polygons;
    const std::size_t n = segments.size();
    std::vector<bool> used(n);
    const auto next = [&](std::size_t c) {
        std::size_t j = 0;
        while (j < n && segments[j].first != segments[c].second) ++j;
        return j;
    };
    for (std::size_t i = 0; i < n; ++i) {
        if (used[i]) continue;
        std::vector<int> polygon;
        std::size_t c = i;
        do {
            if (segments[c].first != segments[c].second) polygon.push_back(segments[c].first);
            used[c] = true;
            c = next(c);
        } while (c < n && !used[c]);
        if (c == i && polygon.size() >= 3) polygons.push_back(polygon);
    }
    return polygons;
}

TEST(Polygons, FollowTheFirstSegmentThatStartsWhereOneEnds) {
    std::mt19937 random(5);
    Points none;
    for (int round = 0; round < 500; ++round) {
        std::uniform_int_distribution<int> index(-3, 3 + round % 20);
        Segments segments(static_cast<std::size_t>(round % 60));
        for (auto& s : segments) s = {1000 * index(random), 1000 * index(random)};
        ASSERT_EQ(getPolygons(none, segments), polygonsByScanning(segments));
    }
}

TEST(Polygons, OfOnePointAreOneLoopWithPositiveAreaInsideAndNegativeForAHole) {
    for (double sign : {1.0, -1.0}) {
        FullLevelSet2D grid;
        fill(grid, 3, 3, [=](int x, int y) { return x == 1 && y == 1 ? sign : -sign; });
        Points points;
        Segments segments;
        grid.getLinesUnique(points, segments);
        EXPECT_EQ(points.size(), 4U);
        const auto polygons = getPolygons(points, segments);
        ASSERT_EQ(polygons.size(), 1U);
        EXPECT_EQ(quorbin::area(points, polygons[0]), -sign * 0.5);
        EXPECT_DOUBLE_EQ(quorbin::length(points, polygons[0]), 2 * std::sqrt(2.0));
        EXPECT_EQ(quorbin::area(points, polygons[0], 3.0, 0.5), -sign * 0.75);
        EXPECT_DOUBLE_EQ(quorbin::length(points, polygons[0], 3.0, 4.0), 4 * 2.5);
    }
}

TEST(UniquePoints, MergesTheSoupIntoTheSharedContour) {
    FullLevelSet2D grid;
    fill(grid, 40, 30, [](int x, int y) { return std::hypot(x - 19.3, y - 14.1) - 9.7; });
    Points soup, shared;
    Segments soupSegments, sharedSegments;
    grid.getLines(soup, soupSegments);
    grid.getLinesUnique(shared, sharedSegments);
    getUniquePoints(soup, soupSegments);
    EXPECT_EQ(soup.size(), shared.size());
    EXPECT_EQ(soupSegments, sharedSegments);
    EXPECT_EQ(getPolygons(soup, soupSegments).size(), 1U);
}

TEST(UniquePoints, MergesWithinToleranceOnlyWhereTheHashAgrees) {
    const double step = 1.0 / 1097.0;
    Points points = {
        {0.5, 0.5}, {0.5 + 5e-7, 0.5}, {0.5, 0.5 + 2e-6}, {2 * step - 1e-8, 0}, {2 * step + 1e-8, 0}};
    Segments segments = {{0, 1}, {1, 2}, {3, 4}, {7, -1}};
    getUniquePoints(points, segments);
    EXPECT_EQ(points.size(), 4U);
    EXPECT_EQ(segments, (Segments{{0, 0}, {0, 1}, {2, 3}, {7, -1}}));
}

TEST(ContourHash, HasFixedValues) {
    EXPECT_EQ(hash_pair()({1, 2}), 4097U);
    EXPECT_EQ(hash_pair()({-1, 0}), 4294967295U);
    EXPECT_TRUE(MyEqual()({1, 2}, {1, 2}));
    EXPECT_FALSE(MyEqual()({1, 2}, {2, 1}));
    EXPECT_EQ(vec2d_hash()({0.5, 0.5}), 1097U);
    EXPECT_EQ(vec2d_hash()({-2.0, 0.0}), 4294967296U - 2194U);
    EXPECT_EQ(vec2d_hash()({NAN, 1e300}), 0U);
}

TEST(DistToSeg, MeasuresSquaredAndTellsTheSide) {
    Vec2<double> a(0, 0), b(2, 0);
    const auto at = [&](double x, double y, int* side) {
        Vec2<double> p(x, y);
        return distToSeg(a, b, p, side);
    };
    int side = -1;
    EXPECT_EQ(at(1, 1, &side), 1.0);
    EXPECT_EQ(side, 1);
    EXPECT_EQ(at(1, -2, &side), 4.0);
    EXPECT_EQ(side, 0);
    EXPECT_EQ(at(3, 0, &side), 1.0);
    EXPECT_EQ(side, 1);
    EXPECT_EQ(at(-3, 4, nullptr), 25.0);
    b = a;
    EXPECT_EQ(at(3, 4, nullptr), 25.0);
}

}  // namespace
