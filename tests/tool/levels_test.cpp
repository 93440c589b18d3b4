#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "fields/from_samples.h"
#include "tool/volume_tool.h"

namespace {

TEST(OtsuLevel, LiesWithinABinOfScikitImagesOnSamplesThatAreNotWhole) {
    const auto u = [](int i) { return std::fmod((i + 1) * 0.6180339887498949, 1.0); };
    const auto w = [](int i) { return std::fmod((i + 1) * 0.7548776662466927, 1.0); };
    const struct {
        const char* name;
        std::function<double(int)> sample;
        double threshold;  // of skimage.filters.threshold_otsu, which takes 256 bins
    } cases[] = {
        {"wave", [&](int i) { return 0.3 * std::sin(2 * M_PI * u(i)) + 0.1 * w(i); }, 0.0483213},
        {"cube", [&](int i) { return u(i) * u(i) * u(i); }, 0.372973},
        {"exponential", [&](int i) { return -std::log(1 - 0.999 * u(i)); }, 1.53727},
        {"two humps", [&](int i) { return (w(i) < 0.3 ? 0.7 : 0.3) + 0.5 * (u(i) - 0.5); }, 0.434967},
        {"two humps, small", [&](int i) { return 1e-6 * ((w(i) < 0.6 ? 0.7 : 0.1) + 0.7 * (u(i) - 0.5)); },
         4.48278e-07},
        {"a span of 20", [&](int i) { return (w(i) < 0.5 ? 5 : 15) + 12 * (u(i) - 0.5); }, 10.0432},
    };
    for (const auto& c : cases) {
        std::vector<double> samples;
        for (int i = 0; i < 10000; ++i) samples.push_back(c.sample(i));
        const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
        EXPECT_NEAR(quorbin::fields::otsuLevel(samples), c.threshold, (*high - *low) / 256) << c.name;
    }
}

class Levels : public VolumeTool {
 protected:
    void writeNpy(const std::string& name, const std::string& shape,
                  const std::vector<double>& values) const {
        std::string header = "{'descr': '<f8', 'fortran_order': False, 'shape': (" + shape + "), }";
        header.append(117 - header.size(), ' ').append("\n");
        std::string bytes = std::string("\x93NUMPY\x01\x00\x76\x00", 10) + header;
        bytes.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(double));
        std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
    }
    std::vector<double> valuesOf(const std::string& name) const {
        const std::string bytes = read(name);
        std::vector<double> values(bytes.size() < 128 ? 0 : (bytes.size() - 128) / sizeof(double));
        std::memcpy(values.data(), bytes.data() + 128, values.size() * sizeof(double));
        return values;
    }
    /// Ends with a status and one line that says something.
    void expectRefusal(int status, const std::string& words, const std::string& says) const {
        EXPECT_EQ(run(words), status) << words;
        EXPECT_NE(read("err").find(says), std::string::npos) << words << ": " << read("err");
        EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
    }
};

TEST_F(Levels, NoCommandWritesWhatIsNotFinite) {
    writeNifti();
    std::ptrdiff_t insideAtSlopeOne[2] = {};
    for (const float slope : {1.0F, 1e-3F, 1e-30F, 1e30F}) {
        std::string nifti = read("ball.nii");
        nifti.replace(112, sizeof slope, reinterpret_cast<const char*>(&slope), sizeof slope);
        std::ofstream(folder + "/scaled.nii", std::ios::binary) << nifti;
        for (const int slice : {0, 1}) {
            ASSERT_EQ(run(std::string(slice ? "slice" : "convert") + " scaled.nii -f -o a.npy"), 0)
                << read("err");
            const std::vector<double> field = valuesOf("a.npy");
            ASSERT_TRUE(std::all_of(field.begin(), field.end(), [](double v) { return std::isfinite(v); }));
            const auto inside = std::count_if(field.begin(), field.end(), [](double v) { return v <= 0; });
            if (slope == 1) insideAtSlopeOne[slice] = inside;
            EXPECT_NEAR(static_cast<double>(inside), static_cast<double>(insideAtSlopeOne[slice]),
                        0.01 * static_cast<double>(field.size()))
                << slope;
        }
    }
    writeNpy("huge.npy", "1, 3", {-1.7e308, 0, 1.7e308});
    expectRefusal(2, "convert huge.npy -o c.npy", "huge.npy: holds values beyond 1e+150, 2 of them");
    expectRefusal(2, "mask huge.npy --level 1e308 -o c.npy", "--level: give a number from -1e+150 to 1e+150");
}

/// Two regions that touch along a ragged line and diagonally, on a background.
class Labels : public Levels {
 protected:
    void SetUp() override {
        VolumeTool::SetUp();
        std::vector<double> samples(kWidth * kHeight);
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const int x = i % kWidth, y = i / kWidth, ragged = x + x * y * 7919 % 3;
            samples[static_cast<std::size_t>(i)] = y < 2 ? 1 : ragged < 9 ? 1 : 3;
        }
        writeNpy("labels.npy", "14, 20", samples);
        std::vector<double> layers;
        for (int z = 0; z < 3; ++z) layers.insert(layers.end(), samples.begin(), samples.end());
        writeNpy("volume.npy", "3, 14, 20", layers);
    }
    /// The number that follows a word in what was printed last.
    double number(const std::string& word) const {
        const std::string told = read("out");
        const auto at = told.find(word);
        return at == std::string::npos ? NAN : std::strtod(told.c_str() + at + word.size(), nullptr);
    }
    /// Labels 1 to 4, of which by chance three and four meet in a cell.
    static std::vector<double> randomLabels(std::size_t count) {
        std::mt19937 random(1);
        std::vector<double> labels(count);
        for (double& label : labels) label = 1 + static_cast<double>(random() % 4);
        return labels;
    }
    static constexpr int kWidth = 20, kHeight = 14;
};

TEST_F(Labels, ShareTheirOutlinesAndTogetherFillThePicture) {
    double together = 0;
    for (const char* label : {"1", "3"}) {
        ASSERT_EQ(run(std::string("contour labels.npy --label ") + label), 0) << read("err");
        together += number("area ");
    }
    EXPECT_EQ(together, (kWidth - 1) * (kHeight - 1));
    ASSERT_EQ(run("contour labels.npy --label all -q -o part.csv"), 0) << read("err");
    double enclosed = 0;
    for (const char* label : {"1", "3"}) {
        ASSERT_EQ(run(std::string("info volume.npy --label ") + label), 0) << read("err");
        const double volume = number("volume ");
        ASSERT_EQ(run(std::string("mesh volume.npy --cap -f -o a.ply --label ") + label), 0) << read("err");
        EXPECT_NEAR(number("volume "), volume, 1e-3);
        enclosed += volume;
    }
    EXPECT_NEAR(enclosed, (kWidth - 1) * (kHeight - 1) * 2, 1e-3);
    // The same points, half way between samples, but for those on the border.
    const auto inner = [&](const std::string& name) {
        std::istringstream lines(read(name));
        std::vector<std::string> points;
        for (std::string line; std::getline(lines, line);)
            if (line.find(".5") != std::string::npos) points.push_back(line.substr(line.find(',')));
        std::sort(points.begin(), points.end());
        return points;
    };
    EXPECT_GT(inner("part-1.csv").size(), 10U);
    EXPECT_EQ(inner("part-1.csv"), inner("part-3.csv"));
}

TEST_F(Labels, FillEveryPlaneOfAVolumeExactlyOnceTogether) {
    writeNpy("random.npy", "6, 4, 5", randomLabels(6 * 4 * 5));
    const std::pair<std::string, double> axes[] = {{"x", 5 * 3 * 5}, {"y", 4 * 4 * 5}, {"z", 6 * 4 * 3}};
    for (const auto& [axis, whole] : axes) {
        double together = 0, ofSlice = 0;
        for (const std::string label : {"1", "2", "3", "4"}) {
            const std::string words = " random.npy --label " + label + " --axis " + axis;
            ASSERT_EQ(run("contour" + words + " -f -o a.geojson"), 0) << read("err");
            together += number("area ");
            ASSERT_EQ(run("slice" + words + " --at 1 -f -q -o b.geojson"), 0) << read("err");
            const auto json = nlohmann::json::parse(read("b.geojson"));
            for (const auto& feature : json["features"])
                ofSlice += feature["properties"]["area"].get<double>();
        }
        EXPECT_NEAR(together, whole, 1e-9) << axis;
        EXPECT_NEAR(ofSlice, whole / (axis == "x" ? 5 : axis == "y" ? 4 : 6), 1e-9) << axis;
    }
}

TEST_F(Labels, ConvertedWholeOrInPartFillThePictureToo) {
    writeNpy("random.npy", "10, 12", randomLabels(10 * 12));
    const std::pair<std::string, double> parts[] = {{"", 11 * 9}, {" --crop 2,1:10,8", 7 * 6}};
    for (const auto& [words, whole] : parts) {
        double together = 0;
        for (const std::string label : {"1", "2", "3", "4"}) {
            ASSERT_EQ(run("convert random.npy -f -o a.geojson --label " + label + words), 0) << read("err");
            const auto json = nlohmann::json::parse(read("a.geojson"));
            for (const auto& feature : json["features"])
                together += feature["properties"]["area"].get<double>();
        }
        EXPECT_NEAR(together, whole, 1e-9) << words;
    }
}

TEST_F(Labels, AreWrittenOneByOneByEveryCommand) {
    const std::pair<std::string, std::string> cases[] = {{"mask labels.npy", "png"},
                                                         {"distance labels.npy", "npy"},
                                                         {"smooth labels.npy --steps 2", "svg"},
                                                         {"convert volume.npy", "nii.gz"},
                                                         {"slice volume.npy", "npy"},
                                                         {"mesh volume.npy --picture m.png", "ply"}};
    for (const auto& [words, ending] : cases) {
        ASSERT_EQ(run(words + " --label all -o a." + ending), 0) << words << read("err");
        EXPECT_FALSE(std::filesystem::exists(folder + "/a." + ending));
        for (const char* label : {"1", "3"})
            EXPECT_TRUE(std::filesystem::remove(folder + "/a-" + label + "." + ending)) << words << label;
    }
    EXPECT_TRUE(std::filesystem::exists(folder + "/m-3.png"));
    ASSERT_EQ(run("info labels.npy --label all --json"), 0);
    EXPECT_NE(read("out").find("\"label 3\""), std::string::npos);
    // Nothing is written if one of the files is there already; what vanishes does not stop the others.
    std::ofstream(folder + "/b-3.png") << "mine";
    expectRefusal(2, "mask labels.npy --label all -o b.png", "b-3.png: exists");
    EXPECT_FALSE(std::filesystem::exists(folder + "/b-1.png"));
    std::vector<double> dot(400, 1);
    dot[210] = 2;
    writeNpy("dot.npy", "20, 20", dot);
    expectRefusal(4, "smooth dot.npy --label all --steps 9 -o c.svg",
                  "nothing is left of these labels, the others");
}

TEST_F(Labels, AndRangesExcludeLevelsAndAreRefusedWhereThereAreNone) {
    ASSERT_EQ(run("convert labels.npy --between 2,5 -o range.npy"), 0) << read("err");
    for (const double value : valuesOf("range.npy")) ASSERT_TRUE(value == 1 || value == -1);
    writeNpy("grey.npy", "1, 3", {0.25, 0.5, 1});
    for (const std::string words :
         {"--label 1 --level 2", "--label 1 --between 1,2", "--between 1,2 --level 1", "--between 2,1",
          "--between 1", "--label 1 --inside below", "--between 1,2 --inside above", "--label 1.5",
          "--label x"})
        EXPECT_EQ(run("mask labels.npy -o d.png " + words), 2) << words;
    expectRefusal(2, "mask labels.npy --label 2 -o d.png", "labels.npy: has no label 2; it has 0, 1 and 3");
    expectRefusal(2, "mask grey.npy --label 1 -o d.png",
                  "grey.npy: holds 0.25, which is not whole and so no label");
    expectRefusal(2, "mask labels.npy --label all -o -", "name them by -o");
    expectRefusal(2, "mask labels.npy --label all -o .", ".: is a folder");
}

TEST_F(Levels, SayHowToTakeFloatingPointValuesForAPicture) {
    std::vector<double> samples;
    for (int i = 0; i < 400; ++i)
        samples.push_back(std::hypot(i % 20 - 9, i / 20 - 8) < 5 ? 0.75 : 0.25 + i % 2 * 0.1);
    writeNpy("bright.npy", "20, 20", samples);
    expectRefusal(4, "contour bright.npy", "add --inside above --level 0.5");
    ASSERT_EQ(run("contour bright.npy --inside above --level 0.55"), 0);
    EXPECT_NE(read("out").find("1 polygon"), std::string::npos);
    expectRefusal(4, "contour bright.npy --level 2",
                  "its values are 0.25 to 0.75, so choose another --level");
    expectRefusal(2, "smooth bright.npy --level 0.5 --steps 1 --implicit --dt 1e300 -o a.npy",
                  "from 1e-100 to 1e100");
}

TEST_F(Levels, APngOfWhatIsSmoothedIsAMaskUnlessHeatIsWanted) {
    std::vector<double> samples;
    for (int i = 0; i < 400; ++i) samples.push_back(std::hypot(i % 20 - 9, i / 20 - 8) - 5);
    writeNpy("disc.npy", "20, 20", samples);
    ASSERT_EQ(run("smooth disc.npy --steps 4 -o a.png"), 0) << read("err");
    ASSERT_EQ(run("smooth disc.npy --steps 4 -o a.fl2d"), 0) << read("err");
    ASSERT_EQ(run("mask a.fl2d -o b.png"), 0) << read("err");
    EXPECT_EQ(read("a.png"), read("b.png"));
    ASSERT_EQ(run("smooth disc.npy --steps 4 --format heat -o c.png"), 0) << read("err");
    ASSERT_EQ(run("convert a.fl2d -o d.png"), 0) << read("err");
    EXPECT_EQ(read("c.png"), read("d.png"));
}

}  // namespace
