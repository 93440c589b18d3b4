#include <unistd.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

namespace {

class VolumeFile : public testing::Test {
 protected:
    void TearDown() override { std::remove(path.c_str()); }

    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
    /// Loads and returns what was printed.
    bool load(FullLevelSet3D& grid) {
        testing::internal::CaptureStdout();
        const bool loaded = grid.load(path.c_str());
        printed = testing::internal::GetCapturedStdout();
        return loaded;
    }
    std::string header(const char* magic, std::int32_t w, std::int32_t h, std::int32_t d) const {
        std::string bytes = magic;
        for (const std::int32_t size : {w, h, d}) bytes.append(reinterpret_cast<const char*>(&size), 4);
        for (const double spacing : {1.0, 2.0, 3.0}) bytes.append(reinterpret_cast<const char*>(&spacing), 8);
        return bytes;
    }

    std::string path =
        (std::filesystem::temp_directory_path() / ("quorbin_fl3d_" + std::to_string(getpid()))).string();
    std::string printed;
};

TEST_F(VolumeFile, ComesBackTheSame) {
    onVolumePairs([&](FullLevelSet3D& grid, SlowVolume&) {
        ASSERT_TRUE(grid.save(path.c_str()));
        FullLevelSet3D back;
        ASSERT_TRUE(load(back));
        ASSERT_EQ(bits(back), bits(grid));
        ASSERT_EQ(back.getZSpace(), grid.getZSpace());
    });
    for (const Size3D size : {Size3D{0, 0, 0}, {5, 0, 7}, {1, 0, 0}, {0, 3, 2}}) {
        FullLevelSet3D empty, back;
        empty.init(size.width, size.height, size.depth, 1, 2, 3);
        ASSERT_TRUE(empty.save(path.c_str()));
        EXPECT_EQ(content(), header("FR3D", size.width, size.height, size.depth) + "byte");
        ASSERT_TRUE(load(back));
        EXPECT_EQ(back.getWidth() + back.getDepth(), size.width + size.depth);
    }
}

/// Reports more points than it stores.
struct Boaster : FullLevelSet3D {
    int width = 3;
    int getWidth() const override { return width; }
};

TEST_F(VolumeFile, IsNotWrittenWhereASubclassReportsMoreThanItStores) {
    Boaster grid;
    grid.init(2, 2, 2, 1, 1, 1);
    for (const int width : {3, -1, INT_MAX}) {
        grid.width = width;
        EXPECT_FALSE(grid.save(path.c_str()));
    }
    grid.width = 1;
    EXPECT_TRUE(grid.save(path.c_str()));
}

TEST_F(VolumeFile, SaysWhenItCannotBeWrittenInRunsToo) {
    FullLevelSet3D mask, field;
    fill(mask, {3, 2, 2}, [](int x, int y, int) { return x == y ? 1 : -1; });
    fill(field, {300, 20, 20}, [](int x, int y, int z) { return (x + y + z) % 2; });
    for (const FullLevelSet3D* grid : {&mask, &field}) EXPECT_FALSE(grid->save("/dev/full"));
}

TEST_F(VolumeFile, IsReadFromAPipeNoFurtherThanItsLastRun) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string bytes = header("FR3D", 2, 1, 1) + std::string("byte\1\1\0\0\0\xff\1\0\0\0", 14);
    ASSERT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    path = "/dev/fd/" + std::to_string(ends[0]);  // the writer stays open: a read too many would never end
    FullLevelSet3D grid;
    EXPECT_TRUE(load(grid));
    EXPECT_EQ(grid.get(1, 0, 0), -1.0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(VolumeFile, OfAMaskIsRunsOfBytes) {
    FullLevelSet3D grid;
    fill(grid, {2, 1, 1}, [](int x, int, int) { return x == 0 ? 1.0005 : -1.0; });
    ASSERT_TRUE(grid.save(path.c_str()));
    EXPECT_EQ(content(), header("FR3D", 2, 1, 1).replace(24, 16, std::string(content(), 24, 16)) +
                             std::string("byte\1\1\0\0\0\xff\1\0\0\0", 14));
    FullLevelSet3D back;
    ASSERT_TRUE(load(back));
    EXPECT_EQ(printed, "loading binary.\n");
    EXPECT_EQ(back.get(0, 0, 0), 1.0);
    grid(1, 0, 0) = std::nan("");
    ASSERT_TRUE(grid.save(path.c_str()));
    EXPECT_EQ(content().substr(0, 4), "FL3D");
    // More runs than a block holds.
    fill(grid, {101, 90, 33}, [](int x, int y, int z) { return (x + y * z) % 3 - 1; });
    ASSERT_TRUE(grid.save(path.c_str()));
    ASSERT_TRUE(load(back));
    EXPECT_EQ(bits(back), bits(grid));
}

TEST_F(VolumeFile, ThatIsNoneLeavesTheObjectAsItWas) {
    FullLevelSet3D grid;
    fill(grid, {2, 2, 2}, [](int x, int y, int z) { return x + y + z; });
    const auto before = bits(grid);
    for (const std::string& bytes :
         {std::string("FL2D"), std::string("FL3"), header("FL3D", 2, 2, 2).substr(0, 39),
          header("FL3D", -1, 2, 2), header("FR3D", 1 << 30, 1 << 30, 1 << 30), header("XR3D", 1, 1, 1)}) {
        write(bytes);
        EXPECT_FALSE(load(grid));
        EXPECT_EQ(bits(grid), before);
    }
    EXPECT_FALSE(grid.load("/nowhere/at/all"));
}

TEST_F(VolumeFile, CutShortGivesWhatThereIsAndZeros) {
    FullLevelSet3D grid;
    const double one = 1.0;
    write(header("FL3D", 2, 1, 1) + std::string(reinterpret_cast<const char*>(&one), 8) + "abc");
    EXPECT_FALSE(load(grid));
    EXPECT_EQ(grid.get(0, 0, 0), 1.0);
    EXPECT_EQ(grid.get(1, 0, 0), 0.0);
    const auto run = [](char value, std::int32_t n) {
        return std::string(1, value) + std::string(reinterpret_cast<const char*>(&n), 4);
    };
    write(header("FR3D", 3, 1, 1) + "byte" + run(-2, 1) + run(5, -4) + run(3, 1000000));
    EXPECT_TRUE(load(grid));
    EXPECT_EQ(grid.get(0, 0, 0), -2.0);
    EXPECT_EQ(grid.get(2, 0, 0), 3.0);
    write(header("FR3D", 3, 1, 1) + "byte" + run(-2, 1) + run(5, 0));
    EXPECT_FALSE(load(grid));
    EXPECT_EQ(printed, "loading binary.\nquorbin3d:143  error num is zero (i=1, val=5, top=3)\n");
    EXPECT_EQ(grid.get(0, 0, 0), -2.0);
    for (const std::string& rest :
         {std::string("byt"), std::string("bits"), "byte" + run(1, 2), "byte" + run(1, 2) + "\1"}) {
        write(header("FR3D", 3, 1, 1) + rest);
        EXPECT_FALSE(load(grid));
        EXPECT_EQ(grid.getDepth() + grid.get(2, 0, 0), 1.0);
    }
}

}  // namespace
