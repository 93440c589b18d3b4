#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "commands/demo_picture.h"
#include "curvature_flow.h"
#include "quorbin2d/dense_support.h"

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

/// Twice what two insides share, of what they are together.
double diceOf(const FullLevelSet2D& one, const FullLevelSet2D& other) {
    double shared = 0, together = 0;
    for (int y = 0; y < one.getHeight(); ++y)
        for (int x = 0; x < one.getWidth(); ++x) {
            const bool isInOne = one.get(x, y) <= 0, isInOther = other.get(x, y) <= 0;
            shared += isInOne && isInOther ? 2 : 0;
            together += int{isInOne} + int{isInOther};
        }
    return shared / together;
}

class Tool : public testing::Test {
 protected:
    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        write("square.pgm",
              "P2 6 6 255\n0 0 0 0 0 0 0 9 9 9 9 0 0 9 0 0 9 0 0 9 0 0 9 0 0 9 9 9 9 0 0 0 0 0 0 0\n");
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string read(const std::string& name) const {
        std::ifstream file(folder + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
    }
    /// Runs a shell line in the folder; $Q is the tool.
    Outcome shell(const std::string& line) const {
        const std::string command =
            "cd '" + folder + "' && Q='" QUORBIN_TOOL "'; { " + line + "; } >.out 2>.err </dev/null";
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), read(".out"), read(".err")};
    }
    Outcome run(const std::string& words) const { return shell("$Q " + words); }

    std::size_t fileCount() const {
        const std::filesystem::directory_iterator files(folder);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    const std::string folder = testing::TempDir() + "quorbin_tool_" + std::to_string(getpid());
};

TEST_F(Tool, HelpBeginsWithAnExampleAndVersionIsEverywhere) {
    for (const std::string command :
         {"", "info ", "distance ", "smooth ", "contour ", "mask ", "convert ", "demo "}) {
        const Outcome help = run(command + "--help");
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.out.rfind("Example: quorbin " + command, 0), 0U) << help.out;
        EXPECT_EQ(run(command + "--version").out, "quorbin " QUORBIN_VERSION "\n");
    }
}

TEST_F(Tool, SaysWhatIsWrongInOneLineAndWritesNothing) {
    write("text.png", "hello");
    write("short.pgm", "P5 100 100 255\n123");
    write("nan.npy", std::string("\x93NUMPY\x01\x00\x3c\x00", 10) +
                         "{'descr': '<f4', 'fortran_order': False, 'shape': (1, 1), }\n" +
                         "\xff\xff\xff\x7f");
    write("a.h5", "\x89HDF\r\n....");
    write("a.gif", "GIF89a....");
    write("line.pgm", "P2 3 1 9\n0 9 0");
    write("grey.pgm", "P2 3 1 9\n1 2 3");
    const std::size_t before = fileCount();
    const std::tuple<const char*, int, const char*> cases[] = {
        {"info a.h5", 2, "a.h5: is HDF5, which is not read here; write its array as NPY"},
        {"", 2, "subcommand"},
        {"info a.gif", 2, "a.gif: is GIF, which is not read here; save the picture as PNG"},
        {"smoooth square.pgm", 2, "smoooth"},
        {"smooth square.pgm -o a.svg", 2, "smooth: give --time T, or --steps N"},
        {"smooth square.pgm --time -1 -o a.svg", 2, "--time -1: is no time; give a number from 0 to 1e100"},
        {"smooth square.pgm --time nan -o a.svg", 2, "--time nan: is no time"},
        {"smooth square.pgm --time inf -o a.svg", 2, "--time inf: is no time"},
        {"smooth square.pgm --time 1 --steps 1 -o a.svg", 2, "--time excludes --steps"},
        {"smooth square.pgm --time 1 --constant --band -o a.svg", 2, "--band excludes --constant"},
        {"smooth square.pgm --time 1 --frames f --every 0 -o a.svg", 2, "--every 0: is no time"},
        {"smooth square.pgm --time 1 --frames f --every 1e-9 -o a.svg", 2, "more than a million pictures"},
        {"contour none.png -o a.svg", 2, "none.png: cannot be opened"},
        {"contour text.png -o a.svg", 2, "text.png: is of no known format"},
        {"contour short.pgm -o a.svg", 2, "short.pgm: ends within"},
        {"contour nan.npy -o a.svg", 2, "nan.npy: holds values that are not finite, 1 of them"},
        {"contour square.pgm -o a.xyz", 2, "a.xyz: its ending tells no format"},
        {"contour square.pgm -o none/a.svg", 2, "none/a.svg: cannot be written"},
        {"contour square.pgm -o . --format svg", 2, ".: is a folder"},
        {"contour square.pgm -o square.pgm --format svg", 2, "square.pgm: exists"},
        {"distance square.pgm -o a.npy --spacing 1,-1", 2, "--spacing 1,-1"},
        {"distance square.pgm -o a.npy --level 200", 4, "square.pgm: has no outline, all of it is outside"},
        {"contour grey.pgm -o a.svg --level 1", 4, "grey.pgm: has no outline, all of it is inside"},
        {"smooth square.pgm --steps 500 -o a.npy", 4,
         "square.pgm: nothing is left of the outline after the time "},
        {"contour square.pgm -o ''", 2, "no file to write"},
        {"mask square.pgm -o a.npy", 2,
         "a.npy: its ending tells no format that a mask is written in; end it in one of png"},
        {"contour line.pgm -o a.svg", 4, "line.pgm: has an outline that encloses nothing"},
        {"info square.pgm --json >/dev/full", 1, "standard output"},
        {"contour square.pgm -o /dev/full", 1, "/dev/full: could not be written"},
        {"mask square.pgm -q -o - >/dev/full", 1, "standard output: could not be written"}};
    for (const auto& [words, status, message] : cases) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, status) << words << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << words << ": " << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    // A limit on the size of files stands for a disk that fills up.
    EXPECT_EQ(shell("ulimit -f 8; $Q demo -o . -q").status, 1);
    EXPECT_EQ(fileCount(), before + 2) << "besides what the shell wrote, and the demo's mask nothing";
}

TEST_F(Tool, LeavesNothingBehindWhenInterrupted) {
    const Outcome outcome = shell(
        "echo P2 4 1 9 0 1 8 9 >line.pgm; $Q smooth line.pgm --explicit --steps 1000000000 -o out.svg & "
        "until ls .quorbin-* >/dev/null 2>&1; do sleep 0.01; done; kill -INT $!; wait $!");
    EXPECT_EQ(outcome.status, 130);
    EXPECT_EQ(fileCount(), 4U) << "the inputs and what the shell wrote";
}

TEST_F(Tool, AMaskAndBackIsTheIdentity) {
    ASSERT_EQ(run("mask square.pgm -o a.png").status, 0);
    ASSERT_EQ(run("mask a.png -o b.png").status, 0);
    EXPECT_EQ(read("a.png"), read("b.png"));
    ASSERT_EQ(run("mask a.png --inside below -o c.png").status, 0);
    EXPECT_NE(read("a.png"), read("c.png"));
}

TEST_F(Tool, OverwritesOnlyWhenForced) {
    write("a.svg", "mine");
    EXPECT_EQ(run("contour square.pgm -o a.svg").status, 2);
    EXPECT_EQ(read("a.svg"), "mine");
    EXPECT_EQ(run("contour square.pgm -o a.svg --force").status, 0);
    EXPECT_EQ(read("a.svg").rfind("<svg", 0), 0U);
}

TEST_F(Tool, PutsNothingButTheResultOnStandardOutput) {
    const Outcome piped = run("contour square.pgm -o -");
    ASSERT_EQ(run("contour square.pgm -o a.svg").status, 0);
    EXPECT_EQ(piped.out, read("a.svg"));
    EXPECT_NE(piped.err.find("2 polygons"), std::string::npos);
    EXPECT_EQ(shell("$Q distance square.pgm -q -o - | $Q contour - -q -o b.svg --format csv && cat b.svg")
                  .out.rfind("polygon,x,y\n", 0),
              0U);
}

TEST_F(Tool, FieldsComeBackTheSameFromBothFormats) {
    ASSERT_EQ(run("distance square.pgm --method fmm --pixels --spacing 0.5,2 -o a.fl2d").status, 0);
    FullLevelSet2D field;
    ASSERT_TRUE(field.load((folder + "/a.fl2d").c_str()));
    EXPECT_EQ(field.getYSpace(), 2.0);
    ASSERT_EQ(run("convert a.fl2d -o b.npy && $Q convert b.npy --spacing 0.5,2 -o c.fl2d").status, 0);
    EXPECT_EQ(read("a.fl2d"), read("c.fl2d"));
    EXPECT_EQ(field.get(0, 2), 0.25);  // half a step of half a unit
}

TEST_F(Tool, WritesRingsAsGeoJsonWantsThem) {
    ASSERT_EQ(run("contour square.pgm --spacing 2,3 -o a.geojson").status, 0);
    const auto json = nlohmann::json::parse(read("a.geojson"));
    ASSERT_EQ(json["features"].size(), 1U);
    const auto& rings = json["features"][0]["geometry"]["coordinates"];
    ASSERT_EQ(rings.size(), 2U);
    for (std::size_t r = 0; r < 2; ++r) {
        EXPECT_EQ(rings[r].front(), rings[r].back());
        double twice = 0;
        for (std::size_t i = 0; i + 1 < rings[r].size(); ++i)
            twice += rings[r][i][0].get<double>() * rings[r][i + 1][1].get<double>() -
                     rings[r][i + 1][0].get<double>() * rings[r][i][1].get<double>();
        EXPECT_EQ(twice > 0, r == 0);
    }
    const auto info = nlohmann::json::parse(run("info a.geojson square.pgm --json").out, nullptr, false);
    EXPECT_TRUE(info.is_object()) << "of both, one of which cannot be read";
    EXPECT_EQ(nlohmann::json::parse(run("info square.pgm --json").out)["polygons"], 2);
}

TEST_F(Tool, SegmentFindsTheShapes) {
    ASSERT_EQ(run("demo -o demo -q").status, 0);
    FullLevelSet2D drawn, found;
    fill(drawn, 512, 512, [](int x, int y) { return quorbin::tool::demoShapes(x, y); });
    for (const char* how : {"--explicit --level otsu", "--implicit --init demo/1-mask.png", "--band"}) {
        const Outcome outcome = run("segment demo/0-picture.png -o found.fl2d -f " + std::string(how));
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_NE(outcome.out.find(" still after"), std::string::npos) << outcome.out;
        ASSERT_TRUE(found.load((folder + "/found.fl2d").c_str()));
        EXPECT_GT(diceOf(found, drawn), 0.97);
    }
    // Dark on bright finds the same outline.
    std::string pgm = "P5 64 48 255\n";
    for (int i = 0; i < 64 * 48; ++i)
        pgm += static_cast<char>((std::hypot(i % 64 - 30, i / 64 - 25) < 15 ? 40 : 90) + i * 7919 % 31);
    write("dark.pgm", pgm);
    ASSERT_EQ(run("segment dark.pgm -o found.fl2d -f --picture over.png --frames frames").status, 0);
    ASSERT_TRUE(found.load((folder + "/found.fl2d").c_str()));
    fill(drawn, 64, 48, [](int x, int y) { return 15 - std::hypot(x - 30, y - 25); });
    EXPECT_GT(diceOf(found, drawn), 0.97);
    ASSERT_EQ(run("segment dark.pgm -o found.fl2d -f --inside below").status, 0);
    ASSERT_TRUE(found.load((folder + "/found.fl2d").c_str()));
    fill(drawn, 64, 48, [](int x, int y) { return std::hypot(x - 30, y - 25) - 15; });
    EXPECT_GT(diceOf(found, drawn), 0.97);
    const Outcome early = run("segment dark.pgm -o early.svg -q --max-steps 1 --weight 5");
    EXPECT_EQ(early.status, 5);
    EXPECT_NE(early.err.find("still moving"), std::string::npos) << early.err;
    EXPECT_EQ(read("early.svg").rfind("<svg", 0), 0U);
    EXPECT_EQ(run("segment dark.pgm -o a.svg --picture z.jpg").status, 2);
    EXPECT_EQ(run("segment dark.pgm -o a.svg --level nan").status, 2);
    EXPECT_EQ(run("segment dark.pgm -o a.svg --init dark.pgm --inside below").status, 2);
    EXPECT_TRUE(std::filesystem::exists(folder + "/over.png"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/frames/000010.png"));
    EXPECT_EQ(run("segment dark.pgm -o found.fl2d").status, 2);
    for (const char* every : {"00", "0", "15", "99999999990"})
        EXPECT_EQ(run("segment dark.pgm -o a.svg --every " + std::string(every)).status, 2) << every;
    EXPECT_EQ(run("segment dark.pgm -o a.svg --max-steps 0").status, 2);
    EXPECT_EQ(run("segment dark.pgm -o a.svg --init square.pgm").status, 2);
    EXPECT_EQ(run("segment dark.pgm -o a.svg --level 200").status, 4);
    for (const char* how : {"", " --implicit", " --band"}) {
        const Outcome gone = run(std::string("segment square.pgm -o a.svg --weight 1000") + how);
        EXPECT_EQ(gone.status, 4) << how << gone.err;
        EXPECT_NE(gone.err.find("nothing is left of the outline after 10 steps"), std::string::npos)
            << gone.err;
    }
}

/// Shapes in noise, which the tool once began to look for by circles, and lost.
TEST_F(Tool, SegmentLosesNothingThatOtsuSees) {
    std::mt19937 random(7);
    const auto noise = [&] {  // nearly Gaussian, of deviation 1, with the same numbers everywhere
        double sum = -6;
        for (int i = 0; i < 12; ++i) sum += static_cast<double>(random()) / 4294967296.0;
        return sum;
    };
    const std::function<double(double, double)> shapes[] = {
        [](double x, double y) { return std::hypot(x, y) - 40; },
        [](double x, double y) { return std::hypot(x, y) - 36 - 12 * std::sin(5 * std::atan2(y, x)); },
        [](double x, double y) { return std::min(std::hypot(x + 30, y) - 24, std::hypot(x - 32, y) - 20); }};
    FullLevelSet2D drawn, found;
    for (const auto& shape : shapes)
        for (const auto& [contrast, deviation] : {std::pair{80, 10}, {60, 20}, {30, 8}}) {
            fill(drawn, 130, 110, [&](int x, int y) { return shape(x - 65, y - 55); });
            std::string pgm = "P5 130 110 255\n";
            for (int i = 0; i < 130 * 110; ++i)
                pgm += static_cast<char>(static_cast<unsigned char>(std::clamp(
                    60 + (drawn.data()[i] <= 0 ? contrast : 0) + deviation * noise(), 0.0, 255.0)));
            write("shape.pgm", pgm);
            for (const std::string spacing : {"1,1", "1,1.5"}) {
                ASSERT_EQ(run("segment shape.pgm -q -f -o found.fl2d --spacing " + spacing).status, 0);
                ASSERT_TRUE(found.load((folder + "/found.fl2d").c_str()));
                EXPECT_GT(diceOf(found, drawn), 0.99) << contrast;
            }
        }
}

TEST_F(Tool, MeasuresDistancesByFourMethods) {
    // A strip is longer than the distances by segments reach.
    std::string strip = "P5 200 8 1\n", disc = "P5 100 90 1\n";
    for (int i = 0; i < 200 * 8; ++i) strip += static_cast<char>(i % 200 < 20);
    const auto discAt = [](int x, int y) { return std::hypot(x - 50.3, y - 44.1) - 35; };
    for (int i = 0; i < 100 * 90; ++i) disc += static_cast<char>(discAt(i % 100, i / 100) <= 0);
    write("strip.pgm", strip);
    write("disc.pgm", disc);
    FullLevelSet2D field;
    for (const std::string method : {"projection", "fmm", "segments", "brute"})
        for (const char* mask : {"", " --pixels"}) {
            ASSERT_EQ(run("distance strip.pgm -f -o d.fl2d --spacing 2,2 --method " + method + mask).status,
                      0);
            ASSERT_TRUE(field.load((folder + "/d.fl2d").c_str()));
            for (const int x : {0, 19, 20, 60, 199})
                EXPECT_NEAR(field.get(x, 3), 2 * (x - 19.5), 1e-9) << method << x;
        }
    EXPECT_EQ(run("distance strip.pgm -f -o d.fl2d --spacing 2,1 --method brute").status, 2);
    // What the staircase of a mask hides is found again.
    const auto largestError = [&](const std::string& how) {
        EXPECT_EQ(run("distance disc.pgm -f -o d.fl2d " + how).status, 0);
        EXPECT_TRUE(field.load((folder + "/d.fl2d").c_str()));
        double largest = 0;
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 100; ++x)
                largest = std::max(largest, std::abs(field.get(x, y) - discAt(x, y)));
        return largest;
    };
    EXPECT_LT(largestError(""), 0.5);
    EXPECT_GT(largestError("--pixels --method brute"), 0.45);
    EXPECT_EQ(field.get(50, 79), -0.5) << "half a sample from one outside";
}

TEST_F(Tool, DemoFindsTheShapesItHasDrawn) {
    ASSERT_EQ(run("demo -o demo -q").status, 0);
    FullLevelSet2D found;
    ASSERT_TRUE(found.load((folder + "/demo/4-smooth.fl2d").c_str()));
    FullLevelSet2D drawn;
    fill(drawn, 512, 512, [](int x, int y) { return quorbin::tool::demoShapes(x, y); });
    // Curvature takes away 2 pi from each outline and unit of time, noise or not.
    EXPECT_GT(diceOf(found, drawn), 0.96);
    quorbin::curvatureFlow(drawn, 50);
    EXPECT_GT(diceOf(found, drawn), 0.99);
    EXPECT_EQ(run("demo -o demo").status, 2);
    EXPECT_EQ(run("demo -o demo -f --input square.pgm").status, 4);
}

}  // namespace
