#include "fields/resampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "fields/planes.h"
#include "io/format.h"
#include "tool/volume_tool.h"

using namespace quorbin::fields;

namespace {

/// The samples of a function of world coordinates.
template <class Function>
std::vector<double> sampled(const Lattice& lattice, Function f) {
    std::vector<double> samples;
    for (int z = 0; z < lattice.size[2]; ++z)
        for (int y = 0; y < lattice.size[1]; ++y)
            for (int x = 0; x < lattice.size[0]; ++x)
                samples.push_back(f(x * lattice.spacing[0], y * lattice.spacing[1], z * lattice.spacing[2]));
    return samples;
}

double furthest(const std::vector<double>& a, const std::vector<double>& b) {
    EXPECT_EQ(a.size(), b.size());
    double most = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

TEST(Resampling, ReproducesConstantsAndRampsUpToTheBorder) {
    const Lattice old{{17, 9, 6}, {0.7, 1, 2.5}}, flat{{12, 2, 1}, {1, 1, 1}};
    const auto ramp = [](double x, double y, double z) { return 3 + 2 * x - 5 * y + 0.25 * z; };
    const auto constant = [](double, double, double) { return -1.0 / 3; };
    for (const Lattice& to :
         {withSpacing(old, {0.5, 0.5, 0.5}), withSpacing(old, {3, 1.7, 4}), withSize(old, {40, 2, 11}),
          withSize(old, {2, 3, 2}), withSize(old, {16, 10, 7})}) {
        EXPECT_LT(furthest(resampled(sampled(old, ramp).data(), old, to), sampled(to, ramp)), 1e-12);
        EXPECT_LT(furthest(resampled(sampled(old, constant).data(), old, to), sampled(to, constant)), 1e-15);
    }
    const Lattice wider = withSize(flat, {7, 5, 1});
    EXPECT_LT(furthest(resampled(sampled(flat, ramp).data(), flat, wider), sampled(wider, ramp)), 1e-13);
    EXPECT_NEAR(wider.spacing[0], 11 / 6.0, 1e-15);
}

TEST(Resampling, IsCubicBetweenSamplesAndAveragesWhereTheyBecomeFewer) {
    const Lattice old{{20, 1, 1}, {1, 1, 1}}, half = withSpacing(old, {0.5, 1, 1});
    const std::vector<double> squares =
        resampled(sampled(old, [](double x, double, double) { return x * x; }).data(), old, half);
    ASSERT_EQ(half.size[0], 39);
    for (int i = 2; i < 37; ++i)  // the cells beside the border have a sample beyond it
        EXPECT_NEAR(squares[static_cast<std::size_t>(i)], 0.25 * i * i, 1e-12) << i;
    const Lattice board{{64, 64, 1}, {1, 1, 1}}, coarse = withSpacing(board, {4, 4, 1});
    const std::vector<double> grey = resampled(
        sampled(board, [](double x, double y, double) { return std::fmod(x + y, 2); }).data(), board, coarse);
    for (std::size_t i = 0; i < grey.size(); ++i)
        if (i % 16 != 0 && i >= 16) {
            EXPECT_NEAR(grey[i], 0.5, 0.1) << i;
        }
}

TEST(Resampling, KeepsOldSamplesToTheBitAndNotANumberAmongItsNeighbours) {
    const Lattice old{{9, 8, 1}, {1, 1, 1}}, fine = withSpacing(old, {0.5, 0.25, 1});
    std::vector<double> samples = sampled(old, [](double x, double y, double) { return std::sin(x * y); });
    samples[4 + 9 * 4] = std::nan("");
    const std::vector<double> made = resampled(samples.data(), old, fine);
    EXPECT_EQ(resampled(samples.data(), {{8, 8, 1}, {1, 1, 1}}, {{8, 8, 1}, {1, 1, 1}}).size(), 64U);
    for (int y = 0; y < fine.size[1]; ++y)
        for (int x = 0; x < fine.size[0]; ++x) {
            const double value = made[static_cast<std::size_t>(x + fine.size[0] * y)];
            if (x % 2 == 0 && y % 4 == 0 && !(x == 8 && y == 16)) {
                ASSERT_EQ(value, samples[static_cast<std::size_t>(x / 2 + 9 * (y / 4))]);
            }
            if (std::abs(x - 8) >= 4 || std::abs(y - 16) >= 8) {
                ASSERT_TRUE(std::isfinite(value)) << x << ' ' << y;
            }
        }
    EXPECT_TRUE(std::isnan(made[9 + 17 * 17]));
}

TEST(Greys, AreRoundedAndCutOff) {
    quorbin::io::Image picture;
    picture.samples = {-30, 0, 0.6, 127.4, 255, 300};
    makeGreys(picture, 0, 255);
    EXPECT_EQ(picture.samples, (std::vector<double>{0, 0, 1, 127, 255, 255}));
}

TEST(Pixels, AreSquareAndNotMoreThanAPictureHas) {
    const Lattice made = withSquarePixels({{25, 14, 1}, {1, 2, 1}});
    EXPECT_EQ(made.size, (std::array{25, 27, 1}));
    const Lattice long_ = withSquarePixels({{1000, 100, 1}, {1, 1e6, 1}});
    EXPECT_LE(long_.size[1], 32767);
    EXPECT_EQ(long_.spacing[0], long_.spacing[1]);
}

class Shaped : public VolumeTool {
 protected:
    /// The last coordinates of each line of a CSV file.
    std::vector<std::array<double, 3>> points(const std::string& name, int columns) const {
        std::istringstream text(read(name));
        std::string line;
        std::getline(text, line);
        std::vector<std::array<double, 3>> all;
        while (std::getline(text, line)) {
            std::array<double, 3> p{};
            for (int c = columns; c-- > 0;) {
                p[static_cast<std::size_t>(c)] = std::strtod(line.c_str() + line.rfind(',') + 1, nullptr);
                line.erase(line.rfind(','));
            }
            all.push_back(p);
        }
        return all;
    }
    void expectSame(const std::string& one, const std::string& other, int columns) const {
        const auto a = points(one, columns), b = points(other, columns);
        ASSERT_GT(a.size(), 20U);
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i)
            for (std::size_t c = 0; c < 3; ++c) ASSERT_NEAR(a[i][c], b[i][c], 1e-5) << i;
    }
    /// Every point of the outline is on the ball around a centre, in the world.
    void expectBall(const std::string& volume, const std::array<double, 3>& centre) const {
        ASSERT_EQ(run("contour " + volume + " --affine -f -o ball.csv"), 0) << read("err");
        double lowest = 1e9, highest = -1e9;
        for (const auto& p : points("ball.csv", 3)) {
            const double radius = std::hypot(p[0] - centre[0], p[1] - centre[1], p[2] - centre[2]);
            ASSERT_NEAR(radius, 8, 0.15) << volume;
            lowest = std::min(lowest, p[2] - centre[2]);
            highest = std::max(highest, p[2] - centre[2]);
        }
        EXPECT_LT(lowest, -6.9);
        EXPECT_GT(highest, 6.9);
    }
};

TEST_F(Shaped, APartStaysWhereItWasInTheWorld) {
    writeNifti();
    ASSERT_EQ(run("contour ball.nii --level 100 --affine -o whole.csv"), 0) << read("err");
    ASSERT_EQ(run("convert ball.nii --level 100 --crop 2,1,2:23,21,12 -o part.nii"), 0) << read("err");
    EXPECT_NE(read("out").find("becomes 21 × 20 × 10 points, spacing 1 × 1 × 2"), std::string::npos);
    ASSERT_EQ(run("contour part.nii --affine -o part.csv"), 0) << read("err");
    expectSame("whole.csv", "part.csv", 3);
    // A volume without a matrix gets one that says where its part was.
    writeBall(false);
    ASSERT_EQ(run("convert ball.fl3d --crop 2,1,2:23,21,12 -o own.nii"), 0);
    expectBall("own.nii", {12, 11, 13});
    ASSERT_EQ(run("slice ball.fl3d -o plane.fl2d && " QUORBIN_TOOL
                  " convert plane.fl2d -o plane.csv && " QUORBIN_TOOL
                  " convert plane.fl2d --crop 2,1:23,21 -o part2.csv"),
              0);
    expectSame("plane.csv", "part2.csv", 2);
}

TEST_F(Shaped, ABallKeepsItsRadiusAndCentre) {
    writeNifti();
    for (const char* how : {"--resample 0.5", "--resample 1,1.5,1", "--resize 40,30,20", "--resample 2"}) {
        ASSERT_EQ(run(std::string("convert ball.nii --level 100 -f -o new.nii ") + how), 0) << read("err");
        expectBall("new.nii", {30 - 12, 11 - 5, 13 + 7});
    }
    ASSERT_EQ(run("convert ball.nii --level 100 --crop 2,1,2:23,21,12 --resample 0.7 -o both.nii"), 0);
    expectBall("both.nii", {30 - 12, 11 - 5, 13 + 7});
    // Two samples at 2 of those at 1 are the same to the bit.
    ASSERT_EQ(run("convert ball.nii --level 100 --resample 1,1,2 -o same.nii"), 0);
    ASSERT_EQ(run("convert ball.nii --level 100 -o plain.nii"), 0);
    EXPECT_EQ(read("same.nii"), read("plain.nii"));
}

TEST_F(Shaped, SaysWhatIsWrong) {
    writeBall(false);
    ASSERT_EQ(run("slice ball.fl3d -o plane.fl2d"), 0);
    const std::pair<const char*, const char*> cases[] = {
        {"ball.fl3d --crop 0,0,0:26,3,3", "ball.fl3d: has 25 points along x"},
        {"ball.fl3d --crop 0,0,3:5,5,3", "ball.fl3d: has 14 points along z"},
        {"ball.fl3d --crop 0,0:5,5", "ball.fl3d: is a volume"},
        {"plane.fl2d --crop 0,0,0:5,5,1", "plane.fl2d: is a picture"},
        {"ball.fl3d --crop 0,0,0", "--crop 0,0,0: is no part"},
        {"ball.fl3d --crop 0,0,0:5,5", "--crop 0,0,0:5,5: is no part"},
        {"ball.fl3d --resample 0", "--resample 0: is no spacing"},
        {"ball.fl3d --resample 1,2", "ball.fl3d: is a volume"},
        {"ball.fl3d --resample 30", "ball.fl3d: would have one sample along x"},
        {"ball.fl3d --resample 1e-9", "ball.fl3d: would have"},
        {"ball.fl3d --resize 5,5,0", "--resize 5,5,0: is no size"},
        {"ball.fl3d --resize 9,9,99999999999", "--resize 9,9,99999999999: is no size"},
        {"ball.fl3d --resize 1000000,1000000,2", "ball.fl3d: would have 1000000 × 1000000 × 2 points"},
        {"plane.fl2d --resize 5,1", "plane.fl2d: would have one sample along y"},
    };
    for (const auto& [words, says] : cases) {
        EXPECT_EQ(run(std::string("convert ") + words + " -o a.npy"), 2) << words;
        EXPECT_NE(read("err").find(says), std::string::npos) << read("err");
        EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
    }
    EXPECT_FALSE(std::filesystem::exists(folder + "/a.npy"));
}

}  // namespace
