#include <cstdint>

#include "io/failure.h"
#include "io/format.h"
#include "tool/volume_tool.h"

using namespace quorbin::io;

namespace {

class ItkFormats : public VolumeTool {
 protected:
    quorbin::io::Image readBack(const std::string& name) const {
        InputFile file(folder + "/" + name);
        return readImage(file);
    }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
    }

    /// A number of two or four bytes, little-endian.
    static std::string bytesOf(std::uint32_t number, int count) {
        std::string bytes;
        for (int i = 0; i < count; ++i, number >>= 8) bytes += static_cast<char>(number & 255);
        return bytes;
    }
    static std::string element(std::uint32_t group, std::uint32_t number, const std::string& kind,
                               std::string value) {
        if (value.size() % 2 != 0) value += kind == "UI" ? '\0' : ' ';
        const int size = static_cast<int>(value.size());
        const auto length = static_cast<std::uint32_t>(size);
        return bytesOf(group, 2) + bytesOf(number, 2) + kind +
               (kind == "OW" ? bytesOf(0, 2) + bytesOf(length, 4) : bytesOf(length, 2)) + value;
    }

    /// A slice of 4 × 3 samples 0, 1, 2 ..., shown as 2 × sample - 1000, turned in its plane.
    static std::string slice(const std::string& series, const std::string& name, double z,
                             const std::string& shades = "MONOCHROME2") {
        const std::string syntax = element(2, 0x10, "UI", "1.2.840.10008.1.2.1"),
                          kind = element(2, 2, "UI", "1.2.840.10008.5.1.4.1.1.2"),
                          uid = element(2, 3, "UI", "1.2.3." + name), meta = kind + uid + syntax;
        std::string pixels;
        for (std::uint32_t i = 0; i < 12; ++i) pixels += bytesOf(i, 2);
        return std::string(128, '\0') + "DICM" +
               element(2, 0, "UL", bytesOf(static_cast<std::uint32_t>(meta.size()), 4)) + meta +
               element(8, 0x16, "UI", "1.2.840.10008.5.1.4.1.1.2") + element(8, 0x18, "UI", "1.2.3." + name) +
               element(8, 0x60, "CS", "CT") + element(0x20, 0xd, "UI", "1.2.3") +
               element(8, 0x103e, "LO", "scan " + series) + element(0x20, 0xe, "UI", "1.2.3." + series) +
               element(0x20, 0x13, "IS", name) + element(0x20, 0x32, "DS", "10\\20\\" + std::to_string(z)) +
               element(0x20, 0x37, "DS", "0\\1\\0\\-1\\0\\0") + element(0x28, 2, "US", bytesOf(1, 2)) +
               element(0x28, 4, "CS", shades) + element(0x28, 0x10, "US", bytesOf(3, 2)) +
               element(0x28, 0x11, "US", bytesOf(4, 2)) + element(0x28, 0x30, "DS", "0.75\\0.5") +
               element(0x28, 0x100, "US", bytesOf(16, 2)) + element(0x28, 0x101, "US", bytesOf(16, 2)) +
               element(0x28, 0x102, "US", bytesOf(15, 2)) + element(0x28, 0x103, "US", bytesOf(0, 2)) +
               element(0x28, 0x1052, "DS", "-1000") + element(0x28, 0x1053, "DS", "2") +
               element(0x7fe0, 0x10, "OW", pixels);
    }

    static std::string nrrd(const std::string& space) {
        std::string text =
            "NRRD0004\ntype: uint16\ndimension: 3\nsizes: 3 2 2\n" + space + "endian: big\nencoding: raw\n\n";
        for (int i = 0; i < 12; ++i) text += std::string("\1", 1) + static_cast<char>(i);
        return text;
    }
};

TEST_F(ItkFormats, CarryAFieldThereAndBackWithItsPlace) {
    writeNifti();
    ASSERT_EQ(run("convert ball.nii --level 100 -o field.nii"), 0) << read("err");
    const quorbin::io::Image field = readBack("field.nii");
    for (const std::string name : {"field.nrrd", "field.mha"}) {
        ASSERT_EQ(run("convert ball.nii --level 100 -o " + name), 0) << read("err");
        const quorbin::io::Image back = readBack(name);
        EXPECT_EQ(back.samples, field.samples) << name;
        EXPECT_TRUE(back.isField) << name;
        EXPECT_EQ(back.placement.affine, field.placement.affine) << name;
        EXPECT_EQ(back.placement.spacing, field.placement.spacing) << name;
        ASSERT_EQ(run("convert " + name + " -f -o again.nii"), 0) << read("err");
        EXPECT_EQ(readBack("again.nii").placement.affine, field.placement.affine) << name;
        EXPECT_EQ(run("info - < " + name), 0) << read("err");
    }
    // A matrix of numbers that no decimal text of few digits has.
    ASSERT_EQ(run("convert ball.nii --level 100 --spacing 0.1,0.3,0.7 -o odd.mha"), 0) << read("err");
    EXPECT_EQ(readBack("odd.mha").placement.spacing, (std::array<double, 3>{0.1, 0.3, 0.7}));
}

TEST_F(ItkFormats, ReadNrrdFromEveryWorld) {
    const std::string axes = "space directions: (0,2,0) (-3,0,0) (0,0,4)\nspace origin: (5,6,7)\n";
    write("lps.nrrd", nrrd("space: left-posterior-superior\n" + axes));
    write("ras.nrrd", nrrd("space: right-anterior-superior\n" + axes));
    write("none.nrrd", nrrd("spacings: 2 3 4\n"));
    const quorbin::io::Image volume = readBack("lps.nrrd");
    for (int i = 0; i < 12; ++i) EXPECT_EQ(volume.samples[static_cast<std::size_t>(i)], 256 + i);
    EXPECT_FALSE(volume.isField);
    EXPECT_EQ(volume.placement.spacing, (std::array<double, 3>{2, 3, 4}));
    EXPECT_EQ(volume.placement.affine, (Affine{{{0, 3, 0, -5}, {-2, 0, 0, -6}, {0, 0, 4, 7}}}));
    EXPECT_EQ(readBack("ras.nrrd").placement.affine, (Affine{{{0, -3, 0, 5}, {2, 0, 0, 6}, {0, 0, 4, 7}}}));
    EXPECT_EQ(readBack("none.nrrd").placement.spacing, (std::array<double, 3>{2, 3, 4}));
    EXPECT_FALSE(readBack("none.nrrd").placement.affine);
}

TEST_F(ItkFormats, ReadSeriesOfDicomByPlaceAndNotByName) {
    std::filesystem::create_directories(folder + "/series");
    const double places[] = {2.5, -5, 0, -2.5};
    for (int i = 0; i < 4; ++i) {
        const std::string name = std::to_string(i + 1);
        write("series/" + name, slice("1", name, places[i]));
    }
    write("series/readme.txt", "no image");
    const quorbin::io::Image volume = readBack("series");
    EXPECT_TRUE(volume.isVolume);
    EXPECT_EQ(volume.depth, 4);
    EXPECT_EQ(volume.samples[0], -1000);
    EXPECT_EQ(volume.samples[5], -990);
    EXPECT_EQ(volume.placement.spacing, (std::array<double, 3>{0.5, 0.75, 2.5}));
    EXPECT_EQ(volume.placement.affine, (Affine{{{0, 0.75, 0, -10}, {-0.5, 0, 0, -20}, {0, 0, 2.5, -5}}}));
    EXPECT_TRUE(volume.notes.empty());
    const quorbin::io::Image picture = readBack("series/3");
    EXPECT_FALSE(picture.isVolume);
    EXPECT_EQ(picture.width, 4);

    std::filesystem::remove(folder + "/series/3");
    EXPECT_EQ(run("info series"), 2) << "one is missing";
    EXPECT_NE(read("err").find("series: has images at uneven distances"), std::string::npos) << read("err");
}

TEST_F(ItkFormats, WantANumberWhereAFolderHasSeveralSeries) {
    std::filesystem::create_directories(folder + "/series");
    for (int i = 0; i < 3; ++i) write("series/" + std::to_string(i), slice("2", std::to_string(i), i));
    ASSERT_EQ(run("info series --series 0"), 0) << "it is the only one: " << read("err");
    write("series/other", slice("1", "9", 0));
    for (const std::string none : {"", " --series 2"}) {
        EXPECT_EQ(run("info series" + none), 2);
        EXPECT_NE(read("err").find("0 (1 image, scan 1), 1 (3 images, scan 2)"), std::string::npos)
            << read("err");
        EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
    }
    EXPECT_EQ(run("info series --series 0"), 0) << read("err");
    EXPECT_NE(read("out").find("picture, 4 × 3 points"), std::string::npos) << read("out");
    EXPECT_EQ(run("info series --series 1"), 0) << read("err");
    EXPECT_NE(read("out").find("volume, 4 × 3 × 3 points"), std::string::npos) << read("out");
    EXPECT_EQ(run("slice series --series 1 --at 2 -o a.npy"), 0) << read("err");
    EXPECT_EQ(run("contour series --series 1 -o a.csv"), 0) << read("err");
    EXPECT_EQ(run("info series/other --series 0"), 2);
    EXPECT_NE(read("err").find("is one file; leave out --series"), std::string::npos) << read("err");
}

TEST_F(ItkFormats, ShowDicomWhoseLowestSamplesAreWhiteAsViewersDo) {
    write("black.dcm", slice("1", "1", 0));
    write("white.dcm", slice("1", "1", 0, "MONOCHROME1"));
    const std::vector<double> black = readBack("black.dcm").samples, white = readBack("white.dcm").samples;
    for (std::size_t i = 1; i < black.size(); ++i) {
        EXPECT_EQ(black[i] - black[i - 1], 2);
        EXPECT_EQ(white[i] - white[i - 1], -2);
    }
}

TEST_F(ItkFormats, WriteMasksAsBytesWithTheirPlace) {
    writeNifti();
    ASSERT_EQ(run("mask ball.nii --level 100 -o mask.nii"), 0) << read("err");
    const quorbin::io::Image mask = readBack("mask.nii");
    for (const std::string name : {"mask.nrrd", "mask.mha"}) {
        ASSERT_EQ(run("mask ball.nii --level 100 -o " + name), 0) << read("err");
        const quorbin::io::Image back = readBack(name);
        EXPECT_EQ(back.samples, mask.samples) << name;
        EXPECT_FALSE(back.isField) << name;
        EXPECT_EQ(back.placement.affine, mask.placement.affine) << name;
        EXPECT_LT(read(name).size(), mask.samples.size() + 1000) << name;
    }
}

TEST_F(ItkFormats, ReadAnalyzeBesideThem) {
    writeNifti();
    std::string header = read("ball.nii").substr(0, 348);
    header.replace(252, 4, 4, '\0');  // the codes of its place
    header.replace(344, 4, 4, '\0');  // the mark of NIfTI
    header.replace(108, 4, 4, '\0');  // where samples begin
    write("ball.hdr", header);
    write("ball.img", read("ball.nii").substr(352));
    EXPECT_EQ(readBack("ball.hdr").samples, readBack("ball.nii").samples);
    EXPECT_FALSE(readBack("ball.img").placement.affine);
}

TEST_F(ItkFormats, RefuseBrokenFilesInOneLine) {
    writeNifti();
    ASSERT_EQ(run("convert ball.nii -o a.nrrd && " QUORBIN_TOOL " convert ball.nii -o a.mha"), 0)
        << read("err");
    std::string bmp = "BM" + bytesOf(54 + 16 * 3, 4) + bytesOf(0, 4) + bytesOf(54, 4) + bytesOf(40, 4) +
                      bytesOf(4, 4) + bytesOf(4, 4) + bytesOf(1, 2) + bytesOf(24, 2) + std::string(24, '\0');
    for (int i = 0; i < 16; ++i) bmp += std::string(3, static_cast<char>(i));
    write("a.bmp", bmp);
    EXPECT_EQ(readBack("a.bmp").samples.front(), 12) << "rows go up in the file";
    write("a.dcm", slice("1", "1", 0));
    std::string mrc(1024 + 24, '\0');
    mrc.replace(0, 16, bytesOf(3, 4) + bytesOf(2, 4) + bytesOf(2, 4) + bytesOf(1, 4));
    const std::string grid = bytesOf(3, 4) + bytesOf(2, 4) + bytesOf(2, 4);
    const std::string cell = bytesOf(0x40400000, 4) + bytesOf(0x40000000, 4) + bytesOf(0x40000000, 4);
    mrc.replace(28, 24, grid + cell);
    mrc.replace(64, 12, bytesOf(1, 4) + bytesOf(2, 4) + bytesOf(3, 4));
    mrc.replace(208, 8, std::string("MAP DA\0\0", 8));
    mrc.replace(1024 + 22, 2, bytesOf(7, 2));
    write("a.mrc", mrc);
    EXPECT_EQ(readBack("a.mrc").samples.back(), 7);
    for (const std::string ending : {"nrrd", "mha", "bmp", "dcm", "mrc"}) {
        const std::string whole = read("a." + ending);
        for (const std::size_t part : {1, 2, 4, 7}) {
            write("b." + ending, whole.substr(0, whole.size() * part / 8));
            EXPECT_EQ(run("info b." + ending), 2) << ending << " cut to " << part << " eighths";
            EXPECT_EQ(read("err").find("quorbin: b." + ending + ": "), 0U) << read("err");
            EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
        }
    }
    EXPECT_EQ(run("info ."), 2);
    EXPECT_NE(read("err").find("holds b.dcm"), std::string::npos) << read("err");
}

}  // namespace
