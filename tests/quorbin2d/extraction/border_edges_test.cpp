#include "quorbin2d/dense_support.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

TEST(BorderEdges, CloseAContourAlongTheBorder) {
    FullLevelSet2D grid;
    fill(grid, 3, 3, [](int x, int) { return x == 0 ? 1.0 : -1.0; });
    Points points;
    Segments segments;
    grid.getLinesUnique(points, segments);
    EXPECT_TRUE(getPolygons(points, segments).empty());
    const std::size_t before = segments.size(), pointsBefore = points.size();
    addBorderEdges(points, segments, &grid);
    ASSERT_EQ(points.size(), pointsBefore + 2);
    EXPECT_EQ(points[pointsBefore], (brin::Vec2<double>(2, 0)));
    EXPECT_EQ(points[pointsBefore + 1], (brin::Vec2<double>(2, 2)));
    EXPECT_EQ(segments.size(), before + 3);
    const auto polygons = getPolygons(points, segments);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(quorbin::area(points, polygons[0]), 1.5 * 2);
}

TEST(BorderEdges, GoRoundAllFourCornersBackToTheSameSide) {
    FullLevelSet2D grid;
    fill(grid, 5, 5, [](int x, int y) { return y == 0 && x == 2 ? 1.0 : -1.0; });
    Points points;
    Segments segments;
    grid.getLinesUnique(points, segments);
    addBorderEdges(points, segments, &grid);
    const auto polygons = getPolygons(points, segments);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(quorbin::area(points, polygons[0]), 16 - 0.5 * 0.5);
}

TEST(BorderEdges, SurvivePointsThatAreNoContour) {
    FullLevelSet2D grid;
    fill(grid, 3, 3, [](int, int) { return 1.0; });
    Points points = {{-1e300, 1}, {NAN, -1}, {0, 1e9}, {-INFINITY, INFINITY}, {-4, 0}};
    Segments segments;
    addBorderEdges(points, segments, &grid);
    for (int size : {0, 3}) {
        FullLevelSet2D empty;
        empty.init(0, size, 1.0, 1.0);
        Points far = {{0, 0}, {1e6, 0}};
        addBorderEdges(far, segments, &empty);
        EXPECT_EQ(far.size(), 2U);
    }
    Points none;
    addBorderEdges(none, segments, &grid);
    EXPECT_TRUE(none.empty());
}

TEST(BorderEdges, HaveNoBorderToCloseABandAt) {
    FullLevelSet2D grid;
    fill(grid, 5, 5, [](int x, int) { return x - 2.5; });
    FastLevelSet2D band = quorbin::bandOf(grid);
    Points points;
    Segments segments;
    band.getLinesUnique(points, segments);
    const std::size_t before = segments.size();
    addBorderEdges(points, segments, &band);
    EXPECT_GT(before, 0U);
    EXPECT_EQ(segments.size(), before);
}

}  // namespace
