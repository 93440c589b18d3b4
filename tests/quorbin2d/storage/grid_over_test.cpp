#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/dense_support.h"

namespace {

TEST(GridOver, IsTheGridOfThoseValuesAndWritesToThem) {
    FullLevelSet2D own;
    fill(
        own, 9, 7, [](int x, int y) { return x * x + 2.0 * y - 20; }, 1, 2);
    std::vector<double> values(own.data(), own.data() + 63);
    FullLevelSet2D over = quorbin::gridOver(values.data(), 9, 7, 1, 2);
    EXPECT_EQ(over.data(), values.data());
    own.ensureSignedDistanceFMM();
    over.ensureSignedDistanceFMM();
    EXPECT_TRUE(std::equal(values.begin(), values.end(), own.data()));
    quorbin::curvatureFlow(own, 1);
    quorbin::curvatureFlow(over, 1);
    EXPECT_EQ(over.data(), values.data());
    EXPECT_TRUE(std::equal(values.begin(), values.end(), own.data()));
}

// Under the sanitizers: what is not its own is neither freed nor kept.
TEST(GridOver, LetsGoOfTheValuesAndNeverFreesThem) {
    std::vector<double> values(24);
    std::iota(values.begin(), values.end(), 0.0);
    {
        FullLevelSet3D over = quorbin::gridOver(values.data(), 4, 3, 2, 1, 1, 1);
        FullLevelSet3D copy, moved = std::move(over);
        EXPECT_EQ(over.data(), nullptr);
        copy = moved;
        copy(1, 1, 1) = -1;
        moved.init(2, 2, 2, 1, 1, 1);
        moved(0, 0, 0) = -1;
        const FullLevelSet3D looked = quorbin::gridOver(std::as_const(values).data(), 4, 3, 2, 1, 1, 1);
        EXPECT_EQ(looked.get(3, 2, 1), 23);
    }
    for (int i = 0; i < 24; ++i) EXPECT_EQ(values[static_cast<std::size_t>(i)], i);
    EXPECT_THROW((void)quorbin::gridOver(values.data(), -1, 3, 1, 1), std::invalid_argument);
}

}  // namespace
