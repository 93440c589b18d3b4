#include <nifti2.h>

#include <cfloat>
#include <cstring>

#include "io/failure.h"
#include "io/format.h"
#include "tool/volume_tool.h"

using namespace quorbin::io;

namespace {

using Values = std::vector<double>;

class Nifti : public VolumeTool {
 protected:
    /// A NIfTI-2 file of so many points along each axis.
    void write(const std::string& name, const std::vector<std::int64_t>& size, short type, short bits,
               const std::string& samples) const {
        nifti_2_header header = {};
        header.sizeof_hdr = 540;
        std::memcpy(header.magic, "n+2\0\r\n\032\n", 8);
        std::fill(header.dim, header.dim + 8, 1);
        header.dim[0] = static_cast<std::int64_t>(size.size());
        std::copy(size.begin(), size.end(), header.dim + 1);
        std::fill(header.pixdim, header.pixdim + 8, 1);
        header.pixdim[3] = 2.5;
        header.datatype = type;
        header.bitpix = bits;
        header.vox_offset = 544;
        std::ofstream(folder + "/" + name, std::ios::binary)
            << std::string(reinterpret_cast<const char*>(&header), sizeof header) << std::string(4, '\0')
            << samples;
    }
    quorbin::io::Image readBack(const std::string& name, const ReadOptions& options = {}) const {
        InputFile file(folder + "/" + name);
        const bool isStack = isVolume(file);
        quorbin::io::Image image = readImage(file, options);
        EXPECT_EQ(image.isVolume, isStack);
        return image;
    }
    Values samplesOf(const std::string& name, std::optional<long long> frame,
                     const std::string& channel = "") const {
        ReadOptions options;
        options.frame = frame;
        options.channel = channel;
        return readBack(name, options).samples;
    }
};

TEST_F(Nifti, IsReadByWhatItIsAndNotByItsName) {
    write("two.nii", {2, 1, 2}, DT_UINT8, 8, "\1\2\3\4");
    ASSERT_EQ(std::system(("cd " + folder +
                           " && gzip -c two.nii > two.nii.gz && cp two.nii.gz pressed.nii && "
                           "cp two.nii plain.nii.gz && cp two.nii two.bin")
                              .c_str()),
              0);
    for (const char* name : {"two.nii", "two.nii.gz", "pressed.nii", "plain.nii.gz", "two.bin"}) {
        EXPECT_EQ(readBack(name).samples, (Values{1, 2, 3, 4})) << name;
        EXPECT_EQ(readBack(name).placement.spacing[2], 2.5) << name;
        EXPECT_EQ(run("info - < " + std::string(name)), 0) << read("err");
    }
}

TEST_F(Nifti, HoldsFramesChannelsColoursAndPictures) {
    const std::string numbers = "\1\2\3\4\5\6\7\10\11\12\13\14";
    write("time.nii", {1, 1, 2, 3}, DT_UINT8, 8, numbers);
    EXPECT_EQ(samplesOf("time.nii", 2), (Values{5, 6}));
    EXPECT_THROW(samplesOf("time.nii", {}), Failure);
    EXPECT_THROW(samplesOf("time.nii", 3), Failure);
    write("vectors.nii", {1, 1, 2, 2, 3}, DT_UINT8, 8, numbers);
    EXPECT_EQ(samplesOf("vectors.nii", 1, "2"), (Values{11, 12}));
    EXPECT_THROW(samplesOf("vectors.nii", 1), Failure);
    write("colour.nii", {2, 1, 2}, DT_RGB24, 24, numbers);
    EXPECT_EQ(samplesOf("colour.nii", {}, "g"), (Values{2, 5, 8, 11}));
    EXPECT_NEAR(samplesOf("colour.nii", {})[0], 0.299 + 2 * 0.587 + 3 * 0.114, 1e-12);
    write("picture.nii", {3, 2}, DT_UINT8, 8, numbers);
    const quorbin::io::Image picture = readBack("picture.nii");
    EXPECT_FALSE(picture.isVolume);
    EXPECT_EQ(picture.samples, (Values{1, 2, 3, 4, 5, 6}));
    write("picture.nii", {300000, 700, 5}, DT_UINT8, 8, numbers);
    EXPECT_THROW(readBack("picture.nii"), Failure);  // before there is room made for it
    std::fstream(folder + "/picture.nii", std::ios::in | std::ios::out | std::ios::binary)
        .seekp(16)
        .put('\x77');
    EXPECT_THROW(readBack("picture.nii"), Failure);  // which has more dimensions than there are
}

TEST_F(Nifti, TakesANumberForWhatIsNotFinite) {
    const float values[] = {1, NAN, -INFINITY, 4};
    write("holes.nii", {2, 1, 2}, DT_FLOAT32, 32, {reinterpret_cast<const char*>(values), sizeof values});
    EXPECT_EQ(run("convert holes.nii -o a.npy"), 2);
    EXPECT_NE(read("err").find("--nan VALUE"), std::string::npos) << read("err");
    ASSERT_EQ(run("convert holes.nii --nan -7 --level 0 --inside below -o a.npy"), 0) << read("err");
    EXPECT_EQ(readBack("a.npy").samples, (Values{1, -7, -7, 4}));
}

TEST_F(Nifti, MasksOfVolumesAreBytesOnTheSameGrid) {
    writeBall(false);
    writeNifti();
    const Values ball = readBack("ball.fl3d").samples;
    for (const auto& [name, inside] : {std::pair("a.nii", 1), {"a.nii.gz", 1}, {"a.tif", 255}}) {
        ASSERT_EQ(run("mask ball.nii --level 100 -f -o " + std::string(name)), 0) << read("err");
        const quorbin::io::Image mask = readBack(name);
        EXPECT_FALSE(mask.isField);
        const quorbin::io::Image source = readBack("ball.nii");
        EXPECT_EQ(mask.placement.affine, inside == 1 ? source.placement.affine : std::nullopt) << name;
        EXPECT_EQ(mask.placement.spacing[2], 2) << name;
        for (std::size_t i = 0; i < ball.size(); ++i)
            ASSERT_EQ(mask.samples[i], ball[i] <= 1e-12 ? inside : 0) << name;
    }
    EXPECT_LT(std::filesystem::file_size(folder + "/a.nii"), ball.size() + 400);
}

TEST_F(Nifti, FieldsAsFloatsKeepEverySide) {
    const double values[] = {1e-300, -1e-300, 1e100, -1e100, 0, 0.1};
    const std::string bytes(reinterpret_cast<const char*>(values), sizeof values);
    write("extreme.nii", {3, 1, 2}, DT_FLOAT64, 64, bytes);
    write("extreme2d.nii", {3, 2}, DT_FLOAT64, 64, bytes);
    const Values expected = {FLT_TRUE_MIN, 0, FLT_MAX, -FLT_MAX, 0, static_cast<double>(0.1F)};
    for (const std::string input : {"extreme.nii", "extreme2d.nii"})
        for (const std::string name : {"a.npy", "a.tif", "a.nii", "a.nii.gz"}) {
            if (input == "extreme2d.nii" && name.find("nii") != std::string::npos) continue;
            ASSERT_EQ(run("convert " + input + " --level 0 --inside below --float -f -o " + name), 0)
                << read("err");
            EXPECT_EQ(readBack(name).samples, expected) << input << name;
            EXPECT_TRUE(readBack(name).isField) << name;
        }
}

}  // namespace
