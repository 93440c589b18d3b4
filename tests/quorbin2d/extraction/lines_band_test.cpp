#include <cmath>
#include <set>

#include "quorbin2d/band_support.h"

namespace {

TEST(BandLines, AreThoseOfTheDenseGridInAnotherOrder) {
    using Segment = std::array<double, 4>;
    const auto asSet = [](const Points& points, const Segments& segments) {
        std::multiset<Segment> set;
        for (const auto& [a, b] : segments) {
            const auto &p = points[static_cast<std::size_t>(a)], &q = points[static_cast<std::size_t>(b)];
            set.insert({p.x, p.y, q.x, q.y});
        }
        return set;
    };
    onRandomPairs([&](FullLevelSet2D& grid, SlowPath&) {
        FastLevelSet2D band;
        assignBandOf(band, grid, false);
        const int size = band.size();
        Points points, dense;
        Segments segments, denseSegments;
        band.getLines(points, segments);
        grid.getLines(dense, denseSegments);
        ASSERT_EQ(asSet(points, segments), asSet(dense, denseSegments));
        EXPECT_EQ(band.size(), size);
    });
}

TEST(BandLines, AreTheSameBitsOnBothPathsSharedOrNot) {
    onBandPairs([](FastLevelSet2D& band, SlowBand& slow) {
        Points points, slowPoints, unique, slowUnique;
        Segments segments, slowSegments, uniqueSegments, slowUniqueSegments;
        band.getLines(points, segments);
        slow.getLines(slowPoints, slowSegments);
        ASSERT_EQ(bits(points), bits(slowPoints));
        ASSERT_EQ(segments, slowSegments);
        band.getLinesUnique(unique, uniqueSegments);
        slow.getLinesUnique(slowUnique, slowUniqueSegments);
        ASSERT_EQ(bits(unique), bits(slowUnique));
        ASSERT_EQ(uniqueSegments, slowUniqueSegments);
        // The same segments; their ends differ by rounding at most.
        ASSERT_EQ(uniqueSegments.size(), segments.size());
        for (std::size_t s = 0; s < segments.size(); ++s) {
            const auto apart = [&](int u, int own) {
                const auto &p = unique[static_cast<std::size_t>(u)],
                           &q = points[static_cast<std::size_t>(own)];
                return std::hypot(p.x - q.x, p.y - q.y);
            };
            EXPECT_LT(apart(uniqueSegments[s].first, segments[s].first), 1e-12);
            EXPECT_LT(apart(uniqueSegments[s].second, segments[s].second), 1e-12);
        }
    });
}

TEST(BandLines, MakeClosedPolygonsOnceTheirPointsAreShared) {
    FullLevelSet2D grid;
    fill(grid, 70, 70, [](int x, int y) { return std::hypot(x - 33.2, y - 36.9) - 21; });
    FastLevelSet2D band;
    assignBandOf(band, grid, true);
    Points points;
    Segments segments;
    band.getLinesUnique(points, segments);
    const auto polygons = getPolygons(points, segments);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(polygons[0].size(), segments.size());
    EXPECT_NEAR(quorbin::area(points, polygons[0]), M_PI * 21 * 21, 20);
}

TEST(BandLines, DrawNothingWhereACornerIsMissing) {
    Points points;
    Segments segments;
    FastLevelSet2D band;
    band(0, 0) = 1;
    for (auto [x, y] : {std::pair{1, 0}, {1, 1}}) band(x, y) = -1;
    band.getLines(points, segments);
    EXPECT_TRUE(segments.empty());
    band(0, 1) = -1;
    band.getLines(points, segments);
    ASSERT_EQ(segments, (Segments{{0, 1}}));
    EXPECT_EQ(std::hypot(points[0].x - points[1].x, points[0].y - points[1].y), std::sqrt(0.5));
    band(0, 0) = 0.0;  // inside, like the others
    band.getLines(points, segments);
    EXPECT_TRUE(segments.empty());
}

}  // namespace
