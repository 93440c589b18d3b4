#include <cmath>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "quorbin2d/band_support.h"

namespace {

TEST(Band, HasNoExtentAndReadsZeroWhereNothingIsStored) {
    FastLevelSet2D band;
    EXPECT_EQ(band.getWidth(), -1);
    EXPECT_EQ(band.getHeight(), -1);
    EXPECT_EQ(band.getXSpace(), 1.0);
    EXPECT_EQ(band.get(4, -7), 0.0);
    EXPECT_FALSE(band.have(4, -7));
    EXPECT_EQ(band.size(), 0);
    band(4, -7) = 3.0;
    EXPECT_EQ(band.get(4, -7), 3.0);
    EXPECT_TRUE(band.have(4, -7));
    EXPECT_EQ(band.size(), 1);
    EXPECT_EQ(band.getDxCentral(5, -7), -1.5);
    EXPECT_EQ(band.getDyUpwind(4, -7, 1.0), 3.0);
    EXPECT_EQ(band.getDyUpwind(4, -7, 0.0), -3.0);

    FastLevelSet2D copy = band;
    copy(4, -7) = 1.0;
    EXPECT_EQ(band.get(4, -7), 3.0);
    band = copy;
    EXPECT_EQ(band.get(4, -7), 1.0);
}

TEST(Band, GivesLaplacianAndOneSidedDifferencesAtOnce) {
    FastLevelSet2D band;
    band(0, 0) = 1;
    for (auto [x, y] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) band(x, y) = 2;
    double dx = 0, dy = 0;
    EXPECT_EQ(band.getCurvatureAndUpwind(0, 0, 1, 1, dx, dy), 4.0);
    EXPECT_EQ(dx, -1.0);
    EXPECT_EQ(dy, -1.0);
    band.getCurvatureAndUpwind(0, 0, 0, -1, dx, dy);
    EXPECT_EQ(dx, 1.0);
    EXPECT_EQ(dy, 1.0);
    EXPECT_EQ(band.getCurvature(0, 0), 4.0);
}

TEST(Band, OfAGridIsTheCornersOfItsCrossedCells) {
    const auto bucketsFor = [](int width, int height) {
        FullLevelSet2D grid;
        grid.init(width, height, 0.5, 2.0);
        FastLevelSet2D band;
        assignBandOf(band, grid, false);
        EXPECT_EQ(band.getYSpace(), 2.0);
        return band.points().bucketCount;
    };
    EXPECT_EQ(bucketsFor(100, 100), 997);
    EXPECT_EQ(bucketsFor(50, 50), 401);
    EXPECT_EQ(bucketsFor(52, 53), 997);
    EXPECT_EQ(bucketsFor(2000, 2000), 11987);
    EXPECT_EQ(bucketsFor(0, 0), 211);

    FullLevelSet2D grid;
    fill(grid, 9, 8, [](int x, int y) { return x == 4 && y == 3 ? 1.0 : -1.0; });
    FastLevelSet2D band;
    testing::internal::CaptureStdout();
    band.initTo(grid, 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "initted 9\n");
    EXPECT_TRUE(band.have(3, 2) && band.have(5, 4) && !band.have(2, 3));

    fill(grid, 9, 8, [](int, int) { return 0.0; });
    testing::internal::CaptureStdout();
    band.initTo(grid, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "initted 0\n");
}

TEST(Band, IsMadeAlikeFromADenseGridAndFromAnySubclassOfIt) {
    onRandomPairs([](FullLevelSet2D& dense, SlowPath& slow) {
        FastLevelSet2D one, other;
        assignBandOf(one, dense, false);
        assignBandOf(other, slow, false);
        ASSERT_TRUE(contentOf(one.points()) == contentOf(other.points()));
    });
}

TEST(Band, IsMovedAndLeavesAnEmptyOneBehind) {
    FastLevelSet2D band;
    band(5, -7) = 2;
    FastLevelSet2D moved = std::move(band);
    EXPECT_EQ(moved.get(5, -7), 2);
    band(5, -7) = 9;  // which is a band as before
    FastLevelSet2D& self = band;
    band = std::move(self);
    EXPECT_EQ(band.get(5, -7), 9);
    moved = std::move(band);
    EXPECT_EQ(moved.get(5, -7), 9);
    EXPECT_EQ(band.size(), 0);
    static_assert(std::is_nothrow_move_constructible_v<FastLevelSet2D>);
    const FastLevelSet2D last = std::move(moved);
    EXPECT_FALSE(moved.have(5, -7));
    moved.ensureSignedDistanceFMM();
    moved.moveAlongCurvature();
    EXPECT_EQ(FastLevelSet2D(moved).size(), 0);
}

TEST(Band, IsMadeOfPointsEachOfWhichIsThereOnce) {
    std::vector<PointAnd<double>> points;
    for (int i = 0; i < 20000; ++i) points.push_back({i % 100 - 50, -i / 100, 0.25 * i});
    const FastLevelSet2D band = quorbin::bandOf(points, 0.5, 2);
    EXPECT_EQ(band.size(), 20000);
    EXPECT_EQ(band.getXSpace(), 0.5);
    EXPECT_EQ(band.getYSpace(), 2.0);
    for (const auto& [x, y, value] : points) ASSERT_EQ(band.get(x, y), value);
    EXPECT_EQ(quorbin::bandOf(std::vector<PointAnd<double>>{}, 1, 1).size(), 0);
    points.push_back({-50, -7, 1});
    EXPECT_THROW(quorbin::bandOf(points, 1, 1), std::invalid_argument);
}

}  // namespace
