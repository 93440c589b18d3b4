#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include <nlohmann/json.hpp>

#include "quorbin2d/dense_support.h"
#include "tool/volume_tool.h"

namespace {

class Smooth : public VolumeTool {
 protected:
    double areaOf(const std::string& name) const {
        EXPECT_EQ(run("contour " + name + " -f -o a.geojson"), 0) << read("err");
        const auto json = nlohmann::json::parse(read("a.geojson"));
        double twice = 0;
        for (const auto& feature : json["features"])
            for (const auto& ring : feature["geometry"]["coordinates"])
                for (std::size_t i = 0; i + 1 < ring.size(); ++i)
                    twice += ring[i][0].get<double>() * ring[i + 1][1].get<double>() -
                             ring[i + 1][0].get<double>() * ring[i][1].get<double>();
        return twice / 2;
    }
    double volumeOf(const std::string& name) const {
        EXPECT_EQ(run("info " + name + " --json"), 0) << read("err");
        return nlohmann::json::parse(read("out"))["surface"]["volume"];
    }
    /// A field, or with two values a mask.
    template <class Value>
    void save(const std::string& name, int width, int height, Value value, double hx = 1,
              double hy = 1) const {
        FullLevelSet2D field;
        fill(field, width, height, value, hx, hy);
        ASSERT_TRUE(field.save((folder + "/" + name).c_str()));
    }
};

TEST_F(Smooth, TakesTwoPiATimeFromADiscByAnySteps) {
    // Of radius 20, in units of half a sample along x and of one along y.
    save(
        "disc.fl2d", 110, 60, [](int x, int y) { return std::hypot(x / 2.0 - 26.7, y - 29.1) - 20; }, 0.5, 1);
    const double left = M_PI * (400 - 2 * 60);
    // 600 explicit steps of 1 / (2 / 0.25 + 2 / 1) take the time 60.
    const std::pair<const char*, double> cases[] = {
        {"--time 60", 0.005},     {"--time 60 --explicit", 0.002}, {"--time 60 --implicit", 0.005},
        {"--steps 600", 0.005},   {"--time 60 --band", 0.002},     {"--steps 600 --band", 0.002},
        {"--time 0 --band", 0.9}, {"--steps 600 --constant", 0.9}};
    for (const auto& [how, part] : cases) {
        ASSERT_EQ(run("smooth disc.fl2d -f -o smooth.fl2d --json " + std::string(how)), 0) << read("err");
        const auto json = nlohmann::json::parse(read("out"));
        const bool stays = part > 0.5;
        EXPECT_NEAR(areaOf("smooth.fl2d"), stays ? M_PI * 400 : left, (stays ? 0.002 : part) * M_PI * 400)
            << how;
        EXPECT_NEAR(json["time"].get<double>(), std::string(how).find("--time 0") == 0 ? 0 : 60, 1e-9);
        EXPECT_EQ(json["vanished"], false);
    }
}

TEST_F(Smooth, TakesSquaresOfTheRadiusFromABall) {
    writeBall(false);
    const double left = 4 / 3.0 * M_PI * std::pow(64 - 4 * 4.5, 1.5);
    for (const std::string how :
         {"--time 4.5", "--time 4.5 --implicit", "--time 4.5 --explicit", "--time 4.5 --band"}) {
        ASSERT_EQ(run("smooth ball.fl3d -f -o smooth.fl3d " + how), 0) << read("err");
        EXPECT_NEAR(volumeOf("smooth.fl3d"), left, 0.02 * left) << how;
    }
    EXPECT_EQ(run("smooth ball.fl3d --steps 500 --band -o gone.fl3d"), 4);
    EXPECT_EQ(run("smooth ball.fl3d --time 20 -o gone.fl3d"), 4);
    EXPECT_NE(read("err").find("nothing is left of the surface after the time 1"), std::string::npos)
        << read("err");
    EXPECT_FALSE(std::filesystem::exists(folder + "/gone.fl3d"));
    ASSERT_EQ(run("smooth ball.fl3d --time 0 --band -o band.fl3d"), 0) << read("err");
    FullLevelSet3D band;
    ASSERT_TRUE(band.load((folder + "/band.fl3d").c_str()));
    EXPECT_EQ(band.get(0, 0, 0), 8) << "four of the largest spacing";
}

/// Beyond the border the picture goes on mirrored, so that an outline meets it at right angles.
TEST_F(Smooth, KeepsAnOutlineOnTheBorder) {
    save("strip.fl2d", 40, 40, [](int x, int) { return x - 19.7; });
    save("half.fl2d", 120, 60, [](int x, int y) { return std::hypot(x - 60, y) - 40; });
    for (const std::string how : {"--explicit", "--band"}) {
        ASSERT_EQ(run("smooth strip.fl2d --time 12 -f -o a.fl2d " + how), 0) << read("err");
        FullLevelSet2D strip;
        ASSERT_TRUE(strip.load((folder + "/a.fl2d").c_str()));
        for (const int y : {0, 20, 39})
            for (const int x : {0, 18, 21, 39})
                EXPECT_NEAR(strip.get(x, y), how == "--band" ? std::clamp(x - 19.7, -4.0, 4.0) : x - 19.7,
                            1e-9);
        ASSERT_EQ(run("smooth half.fl2d --time 200 -f -o a.fl2d " + how), 0) << read("err");
        EXPECT_NEAR(areaOf("a.fl2d"), M_PI / 2 * (1600 - 400), 0.002 * M_PI / 2 * 1600) << how;
    }
}

TEST_F(Smooth, TakesNoiseAndLeavesTheShape) {
    const auto disc = [](int x, int y) { return std::hypot(x - 60.2, y - 55.7) - 40; };
    save("noise.fl2d", 120, 112, [&](int x, int y) {
        const bool isInside = disc(x, y) <= 0, isFlipped = (x * 7919 + y * 104729) % 97 == 50;
        return isInside != isFlipped ? -1.0 : 1.0;
    });
    ASSERT_EQ(run("smooth noise.fl2d --minmax 2 --time 40 -o a.fl2d"), 0) << read("err");
    EXPECT_NEAR(areaOf("a.fl2d"), M_PI * 1600, 0.01 * M_PI * 1600);
    FullLevelSet2D field;
    ASSERT_TRUE(field.load((folder + "/a.fl2d").c_str()));
    for (int y = 0; y < 112; ++y)
        for (int x = 0; x < 120; ++x)
            EXPECT_TRUE(std::abs(disc(x, y)) < 1.5 || (field.get(x, y) <= 0) == (disc(x, y) <= 0))
                << x << ' ' << y;
}

TEST_F(Smooth, DrawsFramesOfEqualPartsOfTheTime) {
    save("disc.fl2d", 40, 40, [](int x, int y) { return std::hypot(x - 20, y - 19) - 12; });
    const std::pair<const char*, int> cases[] = {
        {"--time 20", 11}, {"--time 20 --every 8", 4}, {"--steps 40 --every 10", 5}, {"--time 0", 2}};
    for (const auto& [how, count] : cases) {
        std::filesystem::remove_all(folder + "/frames");
        ASSERT_EQ(run("smooth disc.fl2d --frames frames -f -o a.fl2d --json " + std::string(how)), 0)
            << read("err");
        const std::filesystem::directory_iterator files(folder + "/frames");
        EXPECT_EQ(std::distance(begin(files), end(files)), count) << how;
    }
    EXPECT_EQ(run("smooth disc.fl2d disc.fl2d --time 1 --frames frames -f -o out/"), 2);
}

}  // namespace
