#include <cmath>
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "quorbin2d/dense_support.h"
#include "tool/volume_tool.h"

namespace {

constexpr double kRadius = 20, kApart = 12;

/// Two discs of radius 20, and two balls of radius 8, that overlap.
class Sets : public VolumeTool {
 protected:
    void SetUp() override {
        VolumeTool::SetUp();
        saveDisc("a.fl2d", 40.3, 100);
        saveDisc("b.fl2d", 40.3 + kApart, 100);
        saveDisc("wide.fl2d", 40.3, 101);
        writeBall(false);
    }
    void saveDisc(const std::string& name, double x0, int width) const {
        FullLevelSet2D field;
        fill(field, width, 80, [=](int x, int y) { return std::hypot(x - x0, y - 39.6) - kRadius; });
        ASSERT_TRUE(field.save((folder + "/" + name).c_str()));
    }
    nlohmann::json figures(const std::string& words) const {
        EXPECT_EQ(run("measure " + words + " --json"), 0) << read("err");
        return nlohmann::json::parse(read("out"), nullptr, false);
    }
};

TEST_F(Sets, OffsetMovesByTheDistance) {
    for (const double by : {5.0, 0.0, -3.5}) {
        ASSERT_EQ(run("offset a.fl2d -f -o c.fl2d --by " + std::to_string(by)), 0) << read("err");
        const double r = kRadius + by;
        EXPECT_NEAR(figures("c.fl2d")["area"], M_PI * r * r, 0.002 * M_PI * r * r);
    }
    ASSERT_EQ(run("offset ball.fl3d --by 1 -o c.fl3d"), 0) << read("err");
    EXPECT_NEAR(figures("c.fl3d")["volume"], 4 / 3.0 * M_PI * 729, 0.02 * 4 / 3.0 * M_PI * 729);
    EXPECT_EQ(run("offset a.fl2d --by -21 -o gone.fl2d"), 4);
    EXPECT_NE(read("err").find("a.fl2d: nothing is left, all is outside"), std::string::npos) << read("err");
    EXPECT_FALSE(std::filesystem::exists(folder + "/gone.fl2d"));
}

TEST_F(Sets, CombineAndMeasureGiveWhatTwoDiscsShare) {
    const double disc = M_PI * kRadius * kRadius;
    const double lens = 2 * kRadius * kRadius * std::acos(kApart / 2 / kRadius) -
                        kApart / 2 * std::sqrt(4 * kRadius * kRadius - kApart * kApart);
    const std::pair<const char*, double> cases[] = {
        {"--union", 2 * disc - lens}, {"--intersect", lens}, {"--subtract", disc - lens}};
    for (const auto& [how, area] : cases) {
        ASSERT_EQ(run("combine a.fl2d b.fl2d -f -o c.fl2d " + std::string(how)), 0) << read("err");
        EXPECT_NEAR(figures("c.fl2d")["area"], area, 0.005 * disc) << how;
    }
    const auto both = figures("a.fl2d b.fl2d");
    EXPECT_NEAR(both["dice"], lens / disc, 0.002);
    EXPECT_NEAR(both["symmetricDifference"], 2 * (disc - lens), 0.004 * disc);
    EXPECT_NEAR(both["hausdorffDistance"], kApart, 0.01);
    EXPECT_NEAR(both["perimeter"], 2 * M_PI * kRadius, 0.2);
    EXPECT_NEAR(both["totalCurvature"], 2 * M_PI, 1e-9);
    EXPECT_NEAR(both["centroid"][0], 40.3, 1e-3);
    EXPECT_NEAR(figures("ball.fl3d ball.fl3d")["dice"], 1, 1e-12);
    ASSERT_EQ(run("combine a.fl2d a.fl2d --subtract -o none.fl2d"), 4);
}

TEST_F(Sets, PiecesKeepTheLargestAndFillHoles) {
    FullLevelSet2D field;
    fill(field, 100, 80, [](int x, int y) {
        const double ring = std::abs(std::hypot(x - 30.2, y - 40.1) - 15) - 8;
        return std::min(ring, std::hypot(x - 80, y - 40) - 9);
    });
    ASSERT_TRUE(field.save((folder + "/ring.fl2d").c_str()));
    const auto pieces = figures("ring.fl2d --pieces")["pieces"];
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_NEAR(pieces[0]["area"], M_PI * (23 * 23 - 49), 8);
    EXPECT_NEAR(pieces[1]["area"], M_PI * 81, 2);
    const std::pair<const char*, double> cases[] = {{"--largest 1", M_PI * (23 * 23 - 49)},
                                                    {"--largest 1 --fill 200", M_PI * 23 * 23},
                                                    {"--fill 100", M_PI * (23 * 23 - 49 + 81)}};
    for (const auto& [how, area] : cases) {
        ASSERT_EQ(run("pieces ring.fl2d -f -o c.fl2d " + std::string(how)), 0) << read("err");
        EXPECT_NEAR(figures("c.fl2d")["area"], area, 10) << how;
    }
    ASSERT_EQ(run("measure ring.fl2d --pieces"), 0);
    EXPECT_NE(read("out").find("piece   samples"), std::string::npos) << read("out");
}

TEST_F(Sets, SayWhatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"combine a.fl2d wide.fl2d --union -o c.fl2d",
         "a.fl2d: is 100 × 80 with the spacings 1 and 1, and wide.fl2d is 101 × 80 with the spacings 1 and "
         "1"},
        {"measure a.fl2d wide.fl2d", "wide.fl2d is 101 × 80"},
        {"combine a.fl2d ball.fl3d --union -o c.fl2d", "ball.fl3d: is a volume, and a.fl2d is none"},
        {"combine a.fl2d --union -o c.fl2d", "combine: takes two inputs"},
        {"combine a.fl2d b.fl2d -o c.fl2d", "combine: give --union, --intersect or --subtract"},
        {"combine a.fl2d none.fl2d --union -o c.fl2d", "none.fl2d: cannot be opened"},
        {"offset a.fl2d --by nan -o c.fl2d", "--by nan: is no distance"},
        {"pieces a.fl2d -o c.fl2d", "pieces: give --largest N, --fill AREA, or both"},
        {"pieces a.fl2d --fill -1 -o c.fl2d", "--fill -1: is no size"},
        {"measure a.fl2d b.fl2d a.fl2d", "measure: takes one input or two"}};
    for (const auto& [words, says] : cases) {
        EXPECT_EQ(run(words), 2) << words;
        EXPECT_NE(read("err").find(says), std::string::npos) << read("err");
        EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
    }
    EXPECT_FALSE(std::filesystem::exists(folder + "/c.fl2d"));
}

}  // namespace
