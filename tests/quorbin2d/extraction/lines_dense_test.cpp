#include "quorbin2d/dense_support.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace {

using brin::Vec2;

Vec2<double> middleOf(int edge) {
    const Vec2<double> middles[4] = {{0.5, 0}, {1, 0.5}, {0.5, 1}, {0, 0.5}};
    return middles[edge];
}

TEST(MarchingSquaresTables, KeepTheOutsideOnTheRightAndCutOffCorners0And2) {
    const Vec2<double> corner[4] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (int c = 0; c < 16; ++c) {
        int edges = 0;
        for (int s = 0; s < MarchingSquares::lut_size[c]; ++s) {
            const int* edge = MarchingSquares::lut[c] + std::ptrdiff_t{2} * s;
            const int from = edge[0], to = edge[1];
            edges |= 1 << from | 1 << to;
            // The corner behind the edge's start, where the segment leaves it on its right, is set.
            const Vec2<double> a = middleOf(from), d = middleOf(to) - a;
            for (int k : {from, (from + 1) % 4}) {
                const Vec2<double> w = corner[k] - a;
                const bool onTheRight = d.x * w.y - d.y * w.x < 0;
                EXPECT_EQ(onTheRight, (c >> k & 1) != 0) << "case " << c << " corner " << k;
            }
        }
        int crossed = 0;
        for (int e = 0; e < 4; ++e) crossed |= ((c >> e ^ c >> (e + 1) % 4) & 1) << e;
        EXPECT_EQ(edges, crossed);
        for (int k = 2 * MarchingSquares::lut_size[c]; k < 4; ++k) EXPECT_EQ(MarchingSquares::lut[c][k], -1);
    }
    EXPECT_EQ(MarchingSquares::lut[5][1], 0);
    EXPECT_EQ(MarchingSquares::lut[10][0], 0);
}

TEST(GetPoint, InterpolatesFromTheFirstEndAndDoesNotClamp) {
    FullLevelSet2D grid;
    fill(grid, 3, 2, [](int x, int y) { return y == 1 ? 1e-17 * x : 4.0 * x - 1.0; });
    EXPECT_EQ(grid.getPoint(0, 0, 1, 0), Vec2<double>(0.25, 0));
    EXPECT_EQ(grid.getPoint(1, 0, 2, 0), Vec2<double>(0.25, 0));
    EXPECT_EQ(grid.getPoint(0, 1, 1, 1), Vec2<double>(0.5, 1));
}

TEST(Lines, OfOneCell) {
    FullLevelSet2D grid;
    fill(grid, 2, 2, [](int x, int y) { return x + y == 0 ? 1.0 : -1.0; });
    Points points = {{9, 9}};
    Segments segments = {{4, 4}};
    grid.getLines(points, segments);
    EXPECT_EQ(points, (Points{{0, 0.5}, {0.5, 0}}));
    EXPECT_EQ(segments, (Segments{{0, 1}}));
    fill(grid, 2, 2, [](int x, int y) { return x == y ? 1.0 : -1.0; });
    grid.getLinesUnique(points, segments);
    EXPECT_EQ(points, (Points{{0, 0.5}, {0.5, 0}, {1, 0.5}, {0.5, 1}}));
    EXPECT_EQ(segments, (Segments{{0, 1}, {2, 3}}));
    for (double value : {0.0, 1.0, double(NAN)}) {
        fill(grid, 4, 4, [=](int, int) { return value; });
        grid.getLines(points, segments);
        EXPECT_TRUE(points.empty() && segments.empty());
    }
    for (auto [w, h] : {std::pair{1, 5}, {5, 1}, {0, 0}}) {
        fill(grid, w, h, [](int x, int y) { return x + y - 1.5; });
        grid.getLinesUnique(points, segments);
        EXPECT_TRUE(points.empty() && segments.empty());
    }
}

TEST(Lines, AreTheSameBitsOnBothPathsSharedOrNot) {
    onRandomPairs([](FullLevelSet2D& dense, SlowPath& slow) {
        if (dense.getWidth() > 3) dense(2, 0) = slow(2, 0) = NAN;
        Points points, slowPoints, sharedPoints, slowShared;
        Segments segments, slowSegments, sharedSegments, slowSharedSegments;
        dense.getLines(points, segments);
        slow.getLines(slowPoints, slowSegments);
        ASSERT_EQ(bits(points), bits(slowPoints));
        ASSERT_EQ(segments, slowSegments);
        dense.getLinesUnique(sharedPoints, sharedSegments);
        slow.getLinesUnique(slowShared, slowSharedSegments);
        ASSERT_EQ(bits(sharedPoints), bits(slowShared));
        ASSERT_EQ(sharedSegments, slowSharedSegments);

        ASSERT_EQ(segments.size(), sharedSegments.size());
        const auto at = [](const Points& all, int i) { return all[static_cast<std::size_t>(i)]; };
        for (std::size_t i = 0; i < segments.size(); ++i)
            for (auto [own, shared] :
                 {std::pair{at(points, segments[i].first), at(sharedPoints, sharedSegments[i].first)},
                  {at(points, segments[i].second), at(sharedPoints, sharedSegments[i].second)}}) {
                if (std::isnan(own.x)) continue;
                ASSERT_NEAR(own.x, shared.x, 1e-13);
                ASSERT_NEAR(own.y, shared.y, 1e-13);
            }
    });
}

TEST(Lines, ReadASubclassCornerByCorner) {
    struct Logged : FullLevelSet2D {
        mutable std::string log;
        double get(int x, int y) const override {
            log += std::to_string(x) + std::to_string(y) + ' ';
            return FullLevelSet2D::get(x, y);
        }
    };
    Logged grid;
    fill(grid, 2, 2, [](int x, int y) { return x == 1 && y == 0 ? 1.0 : -1.0; });
    Points points;
    Segments segments;
    grid.getLines(points, segments);
    EXPECT_EQ(grid.log, "00 10 11 01 00 10 10 11 ");
}

TEST(UniqueIndex, IsTheSameFromBothCellsOfAnEdge) {
    FullLevelSet2D grid;
    grid.init(7, 5, 1, 1);
    EXPECT_EQ(grid.getUniqueIndexMI(2, 3, 0), (3 * 7 + 2) * 2);
    EXPECT_EQ(grid.getUniqueIndexMI(2, 3, 1), grid.getUniqueIndexMI(3, 3, 3));
    EXPECT_EQ(grid.getUniqueIndexMI(2, 3, 2), grid.getUniqueIndexMI(2, 4, 0));
    for (int edge : {4, -1})
        EXPECT_DEATH(grid.getUniqueIndexMI(0, 0, edge),
                     "quorbin2d:1166: getUniqueIndexMI: Assertion `0' failed");
}

}  // namespace
