#include <cmath>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "io/format.h"
#include "tool/volume_tool.h"

using namespace quorbin::io;

namespace {

class Planes : public VolumeTool {
 protected:
    void SetUp() override {
        VolumeTool::SetUp();
        writeBall(false);
    }
    std::size_t filesBeginningWith(const std::string& start) const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            count += entry.path().filename().string().rfind(start, 0) == 0 ? 1 : 0;
        return count;
    }
};

TEST_F(Planes, AreReadAloneAsTheyAreInTheWhole) {
    writeNifti();
    for (const char* name : {"a.nii", "a.npy", "a.tif", "a.raw", "f.npy", "f.tif", "f.nii", "a.nii.gz"})
        ASSERT_EQ(run(std::string("convert ball.fl3d -o ") + name + (name[0] == 'f' ? " --float" : "")), 0);
    for (const std::string name :
         {"ball.fl3d", "ball.nii", "a.nii", "a.npy", "a.tif", "a.raw", "f.npy", "f.tif", "f.nii"}) {
        const RawLayout layout{{25, 23, 14}, "float64"};
        const bool isRaw = name == "a.raw";
        InputFile file(folder + "/" + name);
        for (const std::size_t axis : {0U, 1U, 2U})
            for (const std::optional<int> at : {std::optional<int>(3), std::optional<int>()}) {
                const PlaneChoice choice{axis, at};
                const auto alone = isRaw ? readRawPlane(file, layout, choice) : readPlane(file, choice);
                ASSERT_TRUE(alone) << name;
                const quorbin::io::Image whole = isRaw ? readRaw(file, layout) : readImage(file);
                const Plane plane = planeOf(whole, choice);
                EXPECT_EQ(alone->picture.samples, plane.picture.samples) << name << axis;
                EXPECT_EQ(alone->picture.placement.spacing, plane.picture.placement.spacing) << name;
                EXPECT_EQ(alone->volume.isField, whole.isField) << name;
                EXPECT_EQ(alone->volume.placement.affine, whole.placement.affine) << name;
                // The same as by the library.
                if (axis == 1 && at) {
                    ASSERT_EQ(alone->picture.width, 25);
                    EXPECT_EQ(alone->picture.samples[7 + 25 * 9], whole.samples[7 + 25 * (3 + 23 * 9)]);
                }
            }
    }
    InputFile intensities(folder + "/ball.nii");
    EXPECT_FALSE(readPlane(intensities, {2, 3, true}));
    InputFile compressed(folder + "/a.nii.gz");
    EXPECT_FALSE(readPlane(compressed, {}));
    // What is cut short is refused, wherever the plane lies.
    for (const char* name : {"a.npy", "a.nii", "ball.fl3d"}) {
        std::filesystem::resize_file(folder + "/" + name,
                                     std::filesystem::file_size(folder + "/" + name) - 1);
        EXPECT_EQ(run(std::string("slice ") + name + " --at 0 -o none.npy"), 2) << name;
    }
}

TEST_F(Planes, OfAVolumeThatDoesNotFitIntoMemoryAreRead) {
    std::ofstream(folder + "/large.raw", std::ios::binary) << '\0';
    std::filesystem::resize_file(folder + "/large.raw",
                                 1290ULL * 1290 * 1290 * 8);  // without blocks on the disk
    EXPECT_EQ(run("slice large.raw --size 1290,1290,1290 --type float64 --axis y -o a.npy"), 0)
        << read("err");
}

TEST_F(Planes, AreDrawnInTheShapeThatTheyHaveInTheWorld) {
    writeNifti();
    // A disc of radius 8 about (12, 13), where samples lie 2 apart along z.
    for (const char* name : {"ball.nii", "ball.fl3d"})
        ASSERT_EQ(run(std::string("slice ") + name + " --axis y --at 11 -o " + name + ".png"), 0)
            << read("err");
    InputFile file(folder + "/ball.nii.png");
    const quorbin::io::Image picture = readImage(file);
    EXPECT_EQ(picture.width, 25);
    EXPECT_EQ(picture.height, 27);
    for (int y = 0; y < 27; ++y)
        for (int x = 0; x < 25; ++x) {
            const double outward = std::hypot(x - 12, y - 13) - 8;
            const double wanted = 255 * (0.5 - std::clamp(outward, -5.0, 5.0) / 10);
            EXPECT_NEAR(picture.samples[static_cast<std::size_t>(x + 25 * y)], wanted, 12) << x << ' ' << y;
        }
    InputFile colours(folder + "/ball.fl3d.png");
    const quorbin::io::Image drawn = readImage(colours);
    EXPECT_EQ(drawn.width * 27, drawn.height * 25);
}

TEST_F(Planes, BecomeAStackOfOutlines) {
    ASSERT_EQ(run("contour ball.fl3d -o ball.geojson"), 0) << read("err");
    const auto json = nlohmann::json::parse(read("ball.geojson"));
    ASSERT_EQ(json["features"].size(), 8U);
    for (const auto& feature : json["features"]) {
        const auto& known = feature["properties"];
        const int slice = known["slice"];
        EXPECT_EQ(known["position"], 2.0 * slice);
        EXPECT_EQ(known["axis"], "z");
        const double below = 2.0 * slice - 13;
        EXPECT_NEAR(known["area"].get<double>(), M_PI * (64 - below * below), 2);
        EXPECT_EQ(feature["geometry"]["coordinates"][0][0].size(), 2U);
    }
    ASSERT_EQ(run("contour ball.fl3d --axis y -o ball.csv --open"), 0) << read("err");
    EXPECT_EQ(read("ball.csv").rfind("slice,position,line,closed,x,z\n", 0), 0U);
    ASSERT_EQ(run("contour ball.fl3d -q --json -o ball.svg"), 0) << read("err");
    const auto told = nlohmann::json::parse(read("out"));
    EXPECT_EQ(told["written"].size(), 8U);
    EXPECT_EQ(told["planes"], 8);
    EXPECT_EQ(told["level"], 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/ball-03.svg"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/ball-10.svg"));
    ASSERT_EQ(run("contour ball.fl3d -q -o new/ --format png"), 0) << read("err");
    EXPECT_TRUE(std::filesystem::exists(folder + "/new/ball-06.png"));
    writeNifti();
    ASSERT_EQ(run("contour ball.nii --level 100 --affine -o placed.geojson"), 0) << read("err");
    const auto first = nlohmann::json::parse(read("placed.geojson"))["features"][0];
    EXPECT_EQ(first["properties"]["origin"], (std::vector<double>{30, -5, 13}));
    EXPECT_EQ(first["geometry"]["coordinates"][0][0][2], 13);  // 7 + 2 × slice 3
}

TEST_F(Planes, HaveTheLevelOfTheWholeInJson) {
    writeNifti();
    double ofWhole = NAN;
    for (const char* command : {"info", "slice -o a.fl2d", "contour"}) {
        ASSERT_EQ(run(std::string(command) + " ball.nii --json"), 0) << read("err");
        const double level = nlohmann::json::parse(read("out"))["level"];
        if (std::isnan(ofWhole)) ofWhole = level;
        EXPECT_EQ(level, ofWhole) << command;
    }
    const std::pair<std::string, double> cases[] = {
        {"ball.nii --level 100", 100}, {"ball.fl3d --level 2", 2}, {"ball.fl3d", 0}};
    for (const auto& [words, level] : cases) {
        ASSERT_EQ(run("slice -f -o a.fl2d --json " + words), 0) << read("err");
        EXPECT_EQ(nlohmann::json::parse(read("out"))["level"], level) << words;
    }
}

TEST_F(Planes, OfOutlinesAreAllRefusedOrAllWritten) {
    ASSERT_EQ(run("slice ball.fl3d -o plane.fl2d"), 0);
    std::ofstream(folder + "/a-10.svg") << "mine";
    const std::pair<const char*, const char*> cases[] = {
        {"contour ball.fl3d -o a.svg", "a-10.svg: exists"},
        {"contour ball.fl3d --affine -o b.csv", "ball.fl3d: places its voxels nowhere"},
        {"contour ball.fl3d --affine -o b.svg", "b.svg: SVG has planes alone"},
        {"contour ball.fl3d -o - --format svg", "-o -: would be a file a plane"},
        {"contour plane.fl2d --axis x", "plane.fl2d: is a picture; leave out --axis"},
    };
    for (const auto& [words, says] : cases) {
        EXPECT_EQ(run(words), 2) << words;
        EXPECT_NE(read("err").find(says), std::string::npos) << read("err");
    }
    EXPECT_EQ(run("contour ball.fl3d --level -20 -o b.svg"), 4);
    EXPECT_EQ(filesBeginningWith("a-"), 1U);
    EXPECT_EQ(filesBeginningWith("b."), 0U);
    EXPECT_EQ(filesBeginningWith("b-"), 0U);
}

}  // namespace
