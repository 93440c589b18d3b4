#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

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

}  // namespace
