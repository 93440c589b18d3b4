#include <cmath>
#include <set>

#include <type_traits>

#include "quorbin3d/band_support.h"

namespace {

TEST(VolumeBand, HasNoExtentAndReadsZeroWhereNothingIsStored) {
    FastLevelSet3D band;
    EXPECT_EQ(band.get(5, 5, 5), 0.0);
    EXPECT_FALSE(band.have(5, 5, 5));
    EXPECT_EQ(band.size(), 0);
    band(5, 5, 5) = 2.0;
    EXPECT_TRUE(band.have(5, 5, 5));
    EXPECT_EQ(band.get(5, 5, 5), 2.0);
    EXPECT_EQ(band.size(), 1);
    for (const int extent : {band.getWidth(), band.getHeight(), band.getDepth()}) EXPECT_EQ(extent, -1);
    band.release();
    EXPECT_EQ(band.size(), 1);
    const FastLevelSet3D copy = band;
    band(5, 5, 5) = 3.0;
    EXPECT_EQ(copy.get(5, 5, 5), 2.0);
}

TEST(VolumeBand, HashesByWeighedSumsModulo32Bits) {
    Point3Hash<int> hash(997);
    hash(0, 0, 1) = 1;
    hash(4096, 0, 0) = 2;
    hash(0, 1, 0) = 3;
    hash(-1, -1, -1) = 4;
    EXPECT_EQ(hash.buckets[4096 % 997].count, 2);
    EXPECT_EQ(hash.buckets[64].count, 1);
    EXPECT_EQ(hash.buckets[static_cast<int>((0U - 1 - 64 - 4096) % 997)][0].value, 4);
    EXPECT_EQ(*hash.find(4096, 0, 0), 2);
    EXPECT_EQ(hash.find(1, 0, 0), nullptr);
}

std::vector<std::array<int, 3>> visited;

TEST(VolumeBand, VisitsPointsInOrderAndThoseWithAWholeCell) {
    FastLevelSet3D band;
    for (int k = 7; k >= 0; --k) band(k & 1, k >> 1 & 1, k >> 2) = k;
    visited.clear();
    band.forEach([](int x, int y, int z, double& value) {
        visited.push_back({x, y, z});
        value += 10;
    });
    EXPECT_EQ(visited, contentOf(band.points()).points);
    EXPECT_EQ(band.get(1, 1, 1), 17);
    visited.clear();
    band.forEachWithNeigh([](int x, int y, int z, double&) { visited.push_back({x, y, z}); });
    EXPECT_EQ(visited, (std::vector<std::array<int, 3>>{{0, 0, 0}}));
}

TEST(VolumeBand, TakesItsDifferencesWithoutFaces) {
    FastLevelSet3D band;
    band(1, 0, 0) = 1.0;
    EXPECT_EQ(band.getDxCentral(0, 0, 0), 0.5);
    EXPECT_EQ(band.getDxPlus(0, 0, 0), 1.0);
    EXPECT_EQ(band.getDxMinus(0, 0, 0), 0.0);
    EXPECT_EQ(band.getDxUpwind(1, 0, 0, 1), 1.0);
    EXPECT_EQ(band.getDxUpwind(1, 0, 0, 0), -1.0);
    EXPECT_EQ(band.getCurvature(0, 0, 0), 1.0);
    FullLevelSet3D grid;
    fill(
        grid, {3, 3, 3}, [](int x, int y, int z) { return x * x + 2 * y * y - z * z - 0.5 + 0.3 * x; }, 0.5,
        2, 0.25);
    assignBandOf(band, grid, false);
    ASSERT_TRUE(band.have(1, 1, 1));
    double dx = 0, dy = 0, dz = 0;
    const double laplacian = band.getCurvatureAndUpwind(1, 1, 1, 1, 0, -1, dx, dy, dz);
    EXPECT_DOUBLE_EQ(laplacian, 2 / 0.25 + 4 / 4.0 - 2 / 0.0625);
    EXPECT_DOUBLE_EQ(band.getCurvature(1, 1, 1), laplacian);
    EXPECT_DOUBLE_EQ(dx, 1.3 / 0.5);
    EXPECT_DOUBLE_EQ(dy, 6 / 2.0);
    EXPECT_DOUBLE_EQ(dz, -3 / 0.25);
    EXPECT_DOUBLE_EQ(band.getDyCentral(1, 1, 1), 8 / 4.0);
    EXPECT_DOUBLE_EQ(band.getDzMinus(1, 1, 1), -1 / 0.25);
}

TEST(VolumeBand, HasTheBucketsOfAsManyPointsAsTheFacesOfTheGrid) {
    for (const auto& [size, buckets] : {std::pair{2, 211}, {24, 401}, {64, 1597}, {128, 7079}}) {
        FullLevelSet3D grid;
        grid.init(size, size, size, 1, 1, 1);
        FastLevelSet3D band;
        assignBandOf(band, grid, false);
        EXPECT_EQ(band.points().bucketCount, buckets);
        EXPECT_EQ(band.size(), 0);  // all corners 0: no front
    }
}

TEST(VolumeBand, OfAGridTakesNotANumberForNotPositiveAndAMarchForOutside) {
    FullLevelSet3D grid;
    for (const double rest : {1.0, -1.0}) {
        fill(grid, {5, 5, 5}, [=](int x, int y, int z) { return x == 2 && y == 2 && z == 2 ? NAN : rest; });
        FastLevelSet3D band = quorbin::bandOf(grid, false);
        EXPECT_EQ(band.size(), rest > 0 ? 27 : 0);
    }
    FastLevelSet3D band;
    band(0, 0, 0) = NAN;
    band(1, 0, 0) = -1.0;
    band.ensureSignedDistanceFMM();
    EXPECT_GT(band.get(0, 0, 0), 0);
}

TEST(VolumeBand, IsMadeAlikeFromADenseGridAndFromAnySubclassOfIt) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        ASSERT_TRUE(contentOf(quorbin::bandOf(dense, false).points()) ==
                    contentOf(quorbin::bandOf(slow, false).points()));
    });
}

TEST(VolumeBand, IsMovedAndLeavesAnEmptyOneBehind) {
    FastLevelSet3D band;
    band(5, -7, 3) = 2;
    FastLevelSet3D moved = std::move(band);
    EXPECT_EQ(moved.get(5, -7, 3), 2);
    band(5, -7, 3) = 9;  // which is a band as before
    FastLevelSet3D& self = band;
    band = std::move(self);
    EXPECT_EQ(band.get(5, -7, 3), 9);
    moved = std::move(band);
    EXPECT_EQ(moved.get(5, -7, 3), 9);
    EXPECT_EQ(band.size(), 0);
    static_assert(std::is_nothrow_move_constructible_v<FastLevelSet3D>);
    const FastLevelSet3D last = std::move(moved);
    EXPECT_FALSE(moved.have(5, -7, 3));
    moved.ensureSignedDistanceFMM();
    moved.moveAlongCurvature();
    EXPECT_EQ(FastLevelSet3D(moved).size(), 0);
}

TEST(VolumeBand, IsMadeOfPointsEachOfWhichIsThereOnce) {
    std::vector<Point3And<double>> points = {{1, -2, 3, 0.5}, {3, -2, 1, -0.5}};
    const FastLevelSet3D band = quorbin::bandOf(points, 1, 2, 3);
    EXPECT_EQ(band.size(), 2);
    EXPECT_EQ(band.get(3, -2, 1), -0.5);
    EXPECT_EQ(band.getZSpace(), 3.0);
    points.push_back(points.front());
    EXPECT_THROW(quorbin::bandOf(points, 1, 2, 3), std::invalid_argument);
}

}  // namespace
