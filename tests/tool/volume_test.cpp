#include <boost/archive/iterators/binary_from_base64.hpp>
#include <boost/archive/iterators/transform_width.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <tiffio.h>

#include <cstdint>

#include "io/failure.h"
#include "io/format.h"
#include "tool/volume_tool.h"

using namespace quorbin::io;

namespace {

class VolumeFormats : public VolumeTool {
 protected:
    quorbin::io::Image readBack(const std::string& name, bool isRaw = false) const {
        InputFile file(folder + "/" + name);
        return isRaw ? readRaw(file, {{25, 23, 14}, "float64"}) : readImage(file);
    }
    std::vector<double> ballSamples() const {
        FullLevelSet3D ball;
        ball.load((folder + "/ball.fl3d").c_str());
        return {ball.data(), ball.data() + 25 * 23 * 14};
    }
};

TEST_F(VolumeFormats, CarryAFieldThereAndBack) {
    writeBall(false);
    const std::vector<double> ball = ballSamples();
    for (const std::string name : {"a.fl3d", "a.nii", "a.nii.gz", "a.npy", "a.tif", "a.raw"}) {
        ASSERT_EQ(run("convert ball.fl3d -o " + name), 0) << read("err");
        const quorbin::io::Image volume = readBack(name, name == "a.raw");
        EXPECT_EQ(volume.samples, ball) << name;
        EXPECT_TRUE(volume.isField) << name;
        EXPECT_EQ(volume.placement.spacing[2], name == "a.npy" || name == "a.raw" ? 1 : 2) << name;
    }
    ASSERT_EQ(run("convert ball.fl3d -o a.fr3d"), 0);
    const quorbin::io::Image sides = readBack("a.fr3d");
    for (std::size_t i = 0; i < ball.size(); ++i) ASSERT_EQ(sides.samples[i], ball[i] <= 0 ? -1 : 1);
    ASSERT_EQ(run("info a.raw --size 25,23,14 --type float64 --spacing 1,1,2 --json"), 0) << read("err");
    const std::string told = read("out");
    const auto at = told.find("\"volume\": ");
    ASSERT_NE(at, std::string::npos) << told;
    EXPECT_NEAR(std::strtod(told.c_str() + at + 10, nullptr), 4 / 3.0 * M_PI * 512, 40);
    // What cannot be read twice is looked at for what it is, and then read on.
    for (const std::string name : {"a.fl3d", "a.npy"}) {
        EXPECT_EQ(run("distance - -f -o b.npy < " + name), 0) << read("err");
        EXPECT_EQ(
            std::system(
                ("cat " + folder + "/" + name + " | " QUORBIN_TOOL " info /dev/stdin >/dev/null").c_str()),
            0);
    }
}

TEST_F(VolumeFormats, KeepWhereNiftiPlacesItAndTellFieldsFromIntensities) {
    writeNifti();
    ASSERT_EQ(run("convert ball.nii --level 100 -o field.nii.gz"), 0) << read("err");
    const quorbin::io::Image image = readBack("ball.nii"), field = readBack("field.nii.gz");
    EXPECT_FALSE(image.isField);
    EXPECT_TRUE(field.isField);
    EXPECT_EQ(image.placement.affine, field.placement.affine);
    EXPECT_EQ(field.placement.spacing, (std::array<double, 3>{1, 1, 2}));
    for (std::size_t i = 0; i < field.samples.size(); ++i)
        ASSERT_EQ(field.samples[i], 100 - image.samples[i]) << "the order of the voxels";
}

TEST_F(VolumeFormats, VtiIsXmlWithTheBytesOfTheField) {
    writeBall(false);
    ASSERT_EQ(run("convert ball.fl3d -o a.vti"), 0) << read("err");
    boost::property_tree::ptree tree;
    boost::property_tree::read_xml(folder + "/a.vti", tree);
    const auto& image = tree.get_child("VTKFile.ImageData");
    EXPECT_EQ(image.get<std::string>("<xmlattr>.WholeExtent"), "0 24 0 22 0 13");
    EXPECT_EQ(image.get<std::string>("<xmlattr>.Spacing"), "1 1 2");
    EXPECT_EQ(image.get<std::string>("Piece.PointData.DataArray.<xmlattr>.type"), "Float64");
    std::string text = tree.get<std::string>("VTKFile.AppendedData");
    text.erase(0, text.find('_') + 1);
    text.erase(text.find_last_not_of("=\n") + 1);
    using Decode =
        boost::archive::iterators::transform_width<boost::archive::iterators::binary_from_base64<const char*>,
                                                   8, 6>;
    std::string bytes;
    const std::vector<double> ball = ballSamples();
    for (Decode at(text.data()); bytes.size() < 8 + 8 * ball.size(); ++at) bytes += static_cast<char>(*at);
    std::uint64_t size = 0;
    std::memcpy(&size, bytes.data(), 8);
    ASSERT_EQ(size, 8 * ball.size());
    EXPECT_EQ(std::memcmp(bytes.data() + 8, ball.data(), size), 0);
}

TEST_F(VolumeFormats, VtiIsPlacedByTheMatrix) {
    writeNifti();
    ASSERT_EQ(run("convert ball.nii -o placed.vti"), 0) << read("err");
    EXPECT_NE(
        read("placed.vti").find("Origin=\"30 -5 7\" Spacing=\"1 1 2\" Direction=\"-1 0 0 0 1 0 0 0 1\""),
        std::string::npos)
        << read("placed.vti").substr(0, 400);
}

TEST_F(VolumeFormats, VtpIsXmlThatNamesEveryArray) {
    writeBall(false);
    ASSERT_EQ(run("mesh ball.fl3d -o a.vtp"), 0) << read("err");
    boost::property_tree::ptree tree;
    boost::property_tree::read_xml(folder + "/a.vtp", tree);
    const auto& piece = tree.get_child("VTKFile.PolyData.Piece");
    const auto points = piece.get<std::size_t>("<xmlattr>.NumberOfPoints");
    const auto polys = piece.get<std::size_t>("<xmlattr>.NumberOfPolys");
    EXPECT_EQ(polys, 2 * points - 4);  // a closed surface without holes
    const auto inBase64 = [](std::size_t count) { return (count + 8 + 2) / 3 * 4; };
    std::size_t offset = inBase64(12 * points);
    EXPECT_EQ(piece.get<std::size_t>("PointData.DataArray.<xmlattr>.offset"), offset);
    offset += inBase64(12 * points);
    EXPECT_EQ(piece.get<std::size_t>("Polys.DataArray.<xmlattr>.offset"), offset);
    offset += inBase64(12 * polys) + inBase64(8 * polys);
    EXPECT_EQ(tree.get<std::string>("VTKFile.AppendedData").size(), offset + std::strlen("\n_\n"));
}

TEST_F(VolumeFormats, ReadTiffStacksOfManyKinds) {
    const auto write = [&](const char* mode, int bits, int format, const auto& sampleOf) {
        TIFF* tiff = TIFFOpen((folder + "/a.tif").c_str(), mode);
        for (int z = 0; z < 3; ++z) {
            TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 4);
            TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 2);
            TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
            TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, format);
            TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
            TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
            for (std::uint32_t y = 0; y < 2; ++y) {
                std::array<decltype(sampleOf(0)), 4> row{};
                for (int x = 0; x < 4; ++x)
                    row[static_cast<std::size_t>(x)] = sampleOf(x + 4 * (static_cast<int>(y) + 2 * z));
                TIFFWriteScanline(tiff, row.data(), y, 0);
            }
            TIFFWriteDirectory(tiff);
        }
        TIFFClose(tiff);
        const quorbin::io::Image volume = readBack("a.tif");
        EXPECT_EQ(volume.depth, 3);
        for (int i = 0; i < 24; ++i)
            ASSERT_EQ(volume.samples[static_cast<std::size_t>(i)], static_cast<double>(sampleOf(i))) << bits;
    };
    write("w", 8, SAMPLEFORMAT_UINT, [](int i) { return static_cast<std::uint8_t>(10 * i); });
    write("wb", 16, SAMPLEFORMAT_UINT, [](int i) { return static_cast<std::uint16_t>(2000 * i); });
    write("w8", 16, SAMPLEFORMAT_INT, [](int i) { return static_cast<std::int16_t>(100 * i - 1000); });
    write("w", 32, SAMPLEFORMAT_IEEEFP, [](int i) { return static_cast<float>(i) / 2; });
    std::filesystem::resize_file(folder + "/a.tif", 200);
    EXPECT_THROW(readBack("a.tif"), Failure);
}

TEST_F(VolumeFormats, AreMeasuredAndCut) {
    writeBall(false);
    ASSERT_EQ(run("distance ball.fl3d -o distance.npy"), 0) << read("err");
    const quorbin::io::Image distance = readBack("distance.npy");
    EXPECT_NEAR(distance.samples[12 + 25 * (11 + 23 * 13)], 13 - 8, 0.01);
    ASSERT_EQ(run("slice ball.fl3d --axis y --at 11 -o slice.npy"), 0) << read("err");
    EXPECT_EQ(run("info slice.npy"), 0);
    EXPECT_NE(read("out").find("25 × 14 points"), std::string::npos);
    writeNifti();
    ASSERT_EQ(run("slice ball.nii -o slice.png"), 0) << read("err");
    EXPECT_EQ(run("contour slice.png"), 0);
    EXPECT_NE(read("out").find("1 polygon"), std::string::npos);
    EXPECT_EQ(run("slice ball.nii --at 14 -o beyond.png"), 2);
    EXPECT_FALSE(std::filesystem::exists(folder + "/beyond.png"));
}

TEST_F(VolumeFormats, SayWhatIsWrong) {
    writeBall(false);
    ASSERT_EQ(run("convert ball.fl3d -o ball.raw"), 0);
    ASSERT_EQ(run("convert ball.fl3d -o ball.nii && " QUORBIN_TOOL " convert ball.fl3d -o ball.nii.gz"), 0);
    const std::string nifti = read("ball.nii");
    const auto writeAltered = [&](const char* name, std::size_t at, const std::string& bytes) {
        std::string altered = nifti;
        altered.replace(at, bytes.size(), bytes);
        std::ofstream(folder + "/" + name, std::ios::binary) << altered;
    };
    const std::string nan("\0\0\0\0\0\0\xf8\x7f", 8), nanOf4Bytes("\0\0\xc0\x7f", 4);
    writeAltered("notfinite.nii", 352 + 800, nan);
    writeAltered("unplaced.nii", 254, std::string("\1\0", 2));  // sform_code
    {
        std::string altered = read("unplaced.nii");
        altered.replace(280, 4, nanOf4Bytes);  // srow_x
        std::ofstream(folder + "/unplaced.nii", std::ios::binary) << altered;
    }
    ASSERT_EQ(std::system(("gzip -c " + folder + "/ball.raw > " + folder + "/tar.nii.gz").c_str()), 0);
    std::ofstream(folder + "/short.nii", std::ios::binary) << nifti.substr(0, 5000);
    writeAltered("header.nii", 40, std::string("\x63\0", 2));  // the number of dimensions
    const std::tuple<const char*, const char*> cases[] = {
        {"segment ball.fl3d -o a.svg", "is a volume; quorbin slice"},
        {"mesh ball.raw -o a.ply", "--size and --type"},
        {"mesh ball.raw -o a.ply --size 25,23,14", "--type"},
        {"mesh ball.raw -o a.ply --size 25,23,15 --type float64", "ball.raw: has"},
        {"mesh ball.raw -o a.ply --size 25,23,0 --type float64", "--size 25,23,0"},
        {"convert ball.fl3d -o a.svg", "a.svg: its ending tells no format that a volume is written in"},
        {"distance ball.fl3d --method brute -o a.npy", "--method projection or fmm"},
        {"convert ball.fl3d --spacing 1,1 -o a.npy", "three numbers"},
        {"smooth ball.fl3d --steps 5 --frames f -o a.npy", "is a volume; --frames are of pictures"},
        {"mesh ball.fl3d --band --cap -o a.ply", "--cap"},
        {"mesh ball.fl3d -o a.ply --picture a.png --view 400,0", "--view 400,0"},
        {"mesh ball.fl3d -o a.ply --picture a.ply", "--picture a.ply"},
        {"mesh ball.fl3d -o - --picture -", "--picture -"},
        {"smooth ball.fl3d -o a.npy --steps 1 --band --spacing 1,1,1000", "differ too much"},
        {"info missing.raw", "missing.raw: cannot be opened"},
        {"info ball.raw --size 25,23,14 --type float64 --spacing 1,1", "ball.raw: is a volume"},
        {"info /dev/zero --size 5,5,5 --type uint8", "/dev/zero: has at least"},
        {"info notfinite.nii", "notfinite.nii: holds values that are not finite"},
        {"info unplaced.nii", "unplaced.nii: is placed by a matrix that is not finite"},
        {"info tar.nii.gz", "tar.nii.gz: is compressed and holds no NIfTI"},
        {"info ball.nii --channel r --frame 1", "ball.nii: has no frame 1"},
        {"info ball.fl3d --frame 0", "ball.fl3d: is FL3D, without frames"},
        {"info ball.fl3d --channel x", "--channel x: is no channel"},
        {"info notfinite.nii --nan inf", "--nan inf"},
        {"convert ball.fl3d --float -o a.fl3d", "a.fl3d: --float goes with tif, npy"},
        {"mask ball.fl3d -o a.fl3d",
         "a.fl3d: its ending tells no format that a mask of a volume is written in"},
        {"info short.nii", "short.nii: ends within its samples"},
        {"info header.nii", "header.nii: has a NIfTI header that cannot be read"},
    };
    for (const auto& [words, says] : cases) {
        EXPECT_EQ(run(words), 2) << words;
        EXPECT_NE(read("err").find(says), std::string::npos) << read("err");
        EXPECT_EQ(read("err").find('\n'), read("err").size() - 1) << read("err");
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        EXPECT_NE(entry.path().stem(), "a") << entry.path();
}

}  // namespace
