#include "quorbin2d/dense_support.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace {

class Fl2dFile : public testing::Test {
 protected:
    void TearDown() override { std::filesystem::remove(path); }

    std::string read() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

    const std::string path = testing::TempDir() + "quorbin_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + ".fl2d";
};

TEST_F(Fl2dFile, HasTheFixedLayout) {
    FullLevelSet2D grid;
    fill(
        grid, 3, 2, [](int x, int y) { return x - 10 * y; }, 1.0, 0.5);
    ASSERT_TRUE(grid.save(path.c_str()));
    const std::string bytes = read();
    EXPECT_EQ(bytes.size(), 76U);
    EXPECT_EQ(bytes.substr(0, 12), std::string("FL2D\3\0\0\0\2\0\0\0", 12));
    double numbers[8];
    std::memcpy(numbers, bytes.data() + 12, sizeof numbers);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(numbers[i],
                  (std::vector<double>{1, 0.5, 0, 1, 2, -10, -9, -8}[static_cast<std::size_t>(i)]));
}

TEST_F(Fl2dFile, ComesBackBitForBit) {
    std::mt19937 random(2);
    for (auto [w, h] : {std::pair{17, 9}, {0, 0}, {0, 5}}) {
        FullLevelSet2D grid, back;
        fillRandom(grid, w, h, random, false, 0.3, 0.7);
        if (w > 0) grid(0, 0) = NAN, grid(1, 0) = -0.0;
        ASSERT_TRUE(grid.save(path.c_str()));
        ASSERT_TRUE(back.load(path.c_str()));
        EXPECT_EQ(back.getWidth(), w);
        EXPECT_EQ(back.getHeight(), h);
        EXPECT_EQ(back.getYSpace(), 0.7);
        EXPECT_EQ(bits(back), bits(grid));
    }
}

TEST_F(Fl2dFile, ThatIsNoneLeavesTheObjectAsItWas) {
    FullLevelSet2D grid;
    fill(grid, 2, 2, [](int, int) { return 3.0; });
    const auto header = [](std::int32_t w, std::int32_t h) {
        std::string bytes = "FL2D";
        bytes.append(reinterpret_cast<const char*>(&w), 4).append(reinterpret_cast<const char*>(&h), 4);
        return bytes + std::string(16, '\0');
    };
    const std::string bad[] = {"",
                               "FL",
                               "FL3D" + header(1, 1).substr(4),
                               header(1, 1).substr(0, 27),
                               header(-1, 4),
                               header(-1, -1),
                               header(2147483647, 2147483647)};
    for (const std::string& bytes : bad) {
        write(bytes);
        EXPECT_FALSE(grid.load(path.c_str()));
        EXPECT_EQ(grid.getWidth(), 2);
        EXPECT_EQ(grid.get(1, 1), 3.0);
    }
    EXPECT_FALSE(grid.load("/nonexistent/file"));
    EXPECT_FALSE(grid.save("/nonexistent/file"));
    EXPECT_FALSE(grid.save("/dev/full"));  // which only flushing shows
}

TEST_F(Fl2dFile, CutShortGivesWhatThereIsAndZeros) {
    FullLevelSet2D grid, back;
    fill(grid, 3, 2, [](int x, int y) { return 1 + x + y; });
    grid.save(path.c_str());
    write(read().substr(0, 28 + 2 * 8 + 7));
    EXPECT_FALSE(back.load(path.c_str()));
    EXPECT_EQ(back.getWidth(), 3);
    EXPECT_EQ(back.getHeight(), 2);
    EXPECT_EQ(back.get(1, 0), 2.0);
    EXPECT_EQ(back.get(2, 0), 0.0);
}

TEST(BinaryImage, IsWhiteWhereTheValueIsNotPositive) {
    FullLevelSet2D grid;
    SlowPath slow;
    const double values[] = {0.0, -0.0, -3.0, 1e-300, NAN, 2.0};
    fill(grid, 3, 2, [&](int x, int y) { return values[3 * y + x]; });
    slow = grid;
    for (const FullLevelSet2D* level : {&grid, static_cast<FullLevelSet2D*>(&slow)}) {
        const brin::Image<unsigned char> mask = level->getBinaryImage();
        ASSERT_EQ(mask.width(), 3);
        ASSERT_EQ(mask.channels(), 1);
        EXPECT_EQ(std::vector<int>(mask.data(), mask.data() + 6), (std::vector<int>{255, 255, 255, 0, 0, 0}));
    }
}

}  // namespace
