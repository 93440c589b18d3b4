#include <png.h>
#include <webp/encode.h>

#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "fields/from_samples.h"
#include "io/failure.h"
#include "io/format.h"

using namespace quorbin::io;
using namespace quorbin::fields;

namespace {

/// What the tool reads of a file with these bytes.
quorbin::io::Image readBytes(const Bytes& bytes, const std::string& channel = {}) {
    const MemoryFile copy;
    copy.write(bytes.data(), bytes.size());
    InputFile file(copy.path());
    ReadOptions options;
    options.channel = channel;
    return readImage(file, options);
}

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

Bytes png(int width, int height, int colorType, int depth, const std::vector<unsigned char>& pixels,
          const std::vector<png_color>& palette = {}, int interlace = PNG_INTERLACE_ADAM7) {
    Bytes out;
    png_structp file = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(file);
    png_set_write_fn(
        file, &out,
        [](png_structp f, png_bytep data, png_size_t count) {
            auto& bytes = *static_cast<Bytes*>(png_get_io_ptr(f));
            bytes.insert(bytes.end(), data, data + count);
        },
        nullptr);
    png_set_IHDR(file, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), depth,
                 colorType, interlace, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!palette.empty()) png_set_PLTE(file, info, palette.data(), static_cast<int>(palette.size()));
    png_write_info(file, info);
    const std::size_t rowBytes = png_get_rowbytes(file, info);
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
        rows.push_back(const_cast<png_bytep>(pixels.data() + y * rowBytes));
    png_write_image(file, rows.data());
    png_write_end(file, nullptr);
    png_destroy_write_struct(&file, &info);
    return out;
}

std::string npy(const std::string& descr, const std::string& order, const std::string& shape,
                const std::string& data) {
    std::string header =
        "{'descr': '" + descr + "', 'fortran_order': " + order + ", 'shape': (" + shape + "), }\n";
    const char length[2] = {static_cast<char>(header.size()), 0};
    return std::string("\x93NUMPY\x01\x00", 8) + std::string(length, 2) + header + data;
}

TEST(PngReader, TakesEveryGreyPictureAndChannelsOfColour) {
    using Values = std::vector<double>;
    EXPECT_EQ(readBytes(png(3, 1, PNG_COLOR_TYPE_GRAY, 8, {0, 7, 255}), "").samples, (Values{0, 7, 255}));
    EXPECT_EQ(readBytes(png(2, 1, PNG_COLOR_TYPE_GRAY, 16, {1, 2, 255, 254}), "").samples,
              (Values{258, 65534}));
    EXPECT_EQ(readBytes(png(3, 1, PNG_COLOR_TYPE_GRAY, 1, {0xa0}), "").samples, (Values{255, 0, 255}));
    EXPECT_EQ(readBytes(png(2, 1, PNG_COLOR_TYPE_GRAY_ALPHA, 8, {9, 0, 8, 255}), "").samples, (Values{9, 8}));
    EXPECT_EQ(readBytes(png(2, 1, PNG_COLOR_TYPE_RGB, 8, {5, 5, 5, 6, 6, 6}), "").samples, (Values{5, 6}));
    EXPECT_EQ(readBytes(png(2, 1, PNG_COLOR_TYPE_PALETTE, 8, {1, 0}, {{3, 3, 3}, {4, 4, 4}}), "").samples,
              (Values{4, 3}));
    const Bytes colour = png(1, 1, PNG_COLOR_TYPE_RGB, 8, {10, 20, 30});
    EXPECT_EQ(readBytes(colour, "g").samples, (Values{20}));
    EXPECT_EQ(readBytes(colour, "2").samples, (Values{30}));
    for (const char* luminance : {"", "luma"})
        EXPECT_NEAR(readBytes(colour, luminance).samples[0], 18.15, 1e-12) << luminance;
    for (const char* none : {"a", "3"}) EXPECT_THROW(readBytes(colour, none), Failure) << none;
    Bytes cut = colour;
    cut.resize(cut.size() / 2);
    EXPECT_THROW(readBytes(cut, "r"), Failure);
}

TEST(PngReader, LeavesAlphaOutAndSaysSoWhereItWouldBeSeen) {
    using Values = std::vector<double>;
    const Bytes veiled = png(2, 1, PNG_COLOR_TYPE_RGB_ALPHA, 8, {5, 5, 5, 255, 6, 6, 6, 100}),
                plain = png(1, 1, PNG_COLOR_TYPE_RGB_ALPHA, 8, {5, 5, 5, 255}),
                grey = png(1, 1, PNG_COLOR_TYPE_GRAY_ALPHA, 16, {1, 2, 0, 3});
    EXPECT_EQ(readBytes(veiled).samples, (Values{5, 6}));
    EXPECT_EQ(readBytes(veiled).notes.size(), 1U);
    EXPECT_EQ(readBytes(veiled, "a").samples, (Values{255, 100}));
    EXPECT_TRUE(readBytes(veiled, "a").notes.empty());
    EXPECT_TRUE(readBytes(plain).notes.empty());
    EXPECT_EQ(readBytes(grey).samples, (Values{258}));
    EXPECT_EQ(readBytes(grey, "a").samples, (Values{3}));
}

TEST(WebpReader, TakesColourAndAlpha) {
    const std::uint8_t pixels[] = {10, 20, 30, 255, 7, 7, 7, 100};
    std::uint8_t* made = nullptr;
    const std::size_t size = WebPEncodeLosslessRGBA(pixels, 2, 1, 8, &made);
    Bytes bytes(made, made + size);
    WebPFree(made);
    EXPECT_NEAR(readBytes(bytes).samples[0], 18.15, 1e-12);
    EXPECT_EQ(readBytes(bytes).notes.size(), 1U);
    EXPECT_EQ(readBytes(bytes, "a").samples, (std::vector<double>{255, 100}));
    bytes.resize(bytes.size() / 2);
    EXPECT_THROW(readBytes(bytes), Failure);
}

TEST(PnmReader, TakesColourAndBitmaps) {
    using Values = std::vector<double>;
    EXPECT_NEAR(readBytes(bytesOf("P3 1 1 99 10 20 30")).samples[0], 18.15, 1e-12);
    EXPECT_EQ(readBytes(bytesOf(std::string("P6 2 1 255\n") + "abcdef"), "g").samples, (Values{'b', 'e'}));
    EXPECT_EQ(readBytes(bytesOf("P1 3 2 # ink\n010\n1 1 1")).samples, (Values{1, 0, 1, 0, 0, 0}));
    EXPECT_EQ(readBytes(bytesOf(std::string("P4 9 2\n") + "\x80\x7f\x7f\x80")).samples,
              (Values{0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    for (const char* bad : {"P1 2 2 0 1 2 1", "P4 9 9\nxx", "P6 2 2 255\nabc", "P3 1 1 9 1 2", "P1 2 2 01"})
        EXPECT_THROW(readBytes(bytesOf(bad)), Failure) << bad;
}

TEST(PgmReader, TakesPlainAndBinaryFiles) {
    EXPECT_EQ(readBytes(bytesOf("P2 # made by hand\n2 2\n# most\n9\n0 3\n9 1\n"), "").samples,
              (std::vector<double>{0, 3, 9, 1}));
    EXPECT_EQ(readBytes(bytesOf(std::string("P5 2 1 255\n") + '\xff' + '\x01'), "").samples,
              (std::vector<double>{255, 1}));
    EXPECT_EQ(readBytes(bytesOf(std::string("P5 1 1 65535\n") + '\x01' + '\x02'), "").samples,
              (std::vector<double>{258}));
    for (const char* bad : {"P5", "P2 2 2 9 1 2 3", "P2 1 1 9 12", "P5 9 9 255\nx", "P2 -1 1 9 1",
                            "P2 1 1 0 0", "P5 999999999 999999999 255\n", "P2 99999999999999999999 1 1 1"})
        EXPECT_THROW(readBytes(bytesOf(bad), ""), Failure) << bad;
}

TEST(NpyReader, TakesEveryPlainNumber) {
    const double pi = 3.25;
    std::string number(8, '\0');
    std::memcpy(number.data(), &pi, 8);
    const quorbin::io::Image field = readBytes(bytesOf(npy("<f8", "False", "1, 1", number)), "");
    EXPECT_TRUE(field.isField);
    EXPECT_EQ(field.samples, (std::vector<double>{3.25}));
    EXPECT_EQ(readBytes(bytesOf(npy(">u2", "False", "1, 2", std::string("\1\2\0\3", 4))), "").samples,
              (std::vector<double>{258, 3}));
    EXPECT_EQ(readBytes(bytesOf(npy("<f2", "False", "1, 2", std::string("\0\x3e\0\xc2", 4)))).samples,
              (std::vector<double>{1.5, -3}));
    const quorbin::io::Image columns =
        readBytes(bytesOf(npy("|i1", "True", "2, 3", "\x01\x02\x03\x04\x05\xff")), "");
    EXPECT_EQ(columns.width, 3);
    EXPECT_EQ(columns.samples, (std::vector<double>{1, 3, 5, 2, 4, -1}));
    EXPECT_FALSE(columns.isField);
    for (const std::string& bad :
         {npy("<f8", "False", "2, 1", number), npy("<c16", "False", "1, 1", number + number),
          npy("<f8", "False", "1,", number), npy("<f8", "False", "1, 1, 1, 1", number),
          npy("<f8", "False", "9999999999, 9999999999", ""), std::string("\x93NUMPY"),
          npy("<f8", "False", "0, 1", "")})
        EXPECT_THROW(readBytes(bytesOf(bad), ""), Failure) << bad;
}

TEST(FieldFromPicture, TakesMasksLevelsAndOtsu) {
    quorbin::io::Image picture;
    picture.width = 4;
    picture.height = 1;
    FullLevelSet2D field;
    std::string note;
    picture.samples = {0, 9, 9, 0};
    makeField(picture, {}, field, note);
    EXPECT_EQ(std::vector<double>(field.data(), field.data() + 4),
              (std::vector<double>{4.5, -4.5, -4.5, 4.5}));
    picture.samples = {10, 12, 200, 202};
    makeField(picture, {}, field, note);
    EXPECT_EQ(note, "level 106 (Otsu)");
    FieldOptions below;
    below.level = 12;
    below.insideAbove = false;
    below.spacing = Spacing{2, 3};
    makeField(picture, below, field, note);
    EXPECT_EQ(field.get(1, 0), 0.0);
    EXPECT_EQ(field.get(3, 0), 190.0);
    EXPECT_EQ(field.getYSpace(), 3.0);
    for (const double all : {0.0, 255.0}) {
        picture.samples = std::vector<double>(4, all);
        makeField(picture, {}, field, note);
        EXPECT_EQ(field.get(0, 0) <= 0, all > 0);
    }
    picture.isField = true;
    picture.samples = {-1, 0, 1, 2};
    picture.placement.spacing = {0.5, 0.25, 1};
    makeField(picture, {}, field, note);
    EXPECT_EQ(field.get(3, 0), 2.0);
    EXPECT_EQ(field.getXSpace(), 0.5);
    FieldOptions grown;
    grown.level = 1;
    makeField(picture, grown, field, note);
    EXPECT_EQ(field.get(3, 0), 1.0);
}

TEST(PngReader, TakesRowsAsTheyComeOrInterlacedAndRefusesHalfAFile) {
    const std::vector<unsigned char> pixels{0, 10, 20, 30, 40, 50};
    const Bytes whole = png(3, 2, PNG_COLOR_TYPE_GRAY, 8, pixels, {}, PNG_INTERLACE_NONE);
    const std::vector<double> expected(pixels.begin(), pixels.end());
    EXPECT_EQ(readBytes(whole).samples, expected);
    EXPECT_EQ(readBytes(png(3, 2, PNG_COLOR_TYPE_GRAY, 8, pixels)).samples, expected);
    EXPECT_THROW(readBytes(Bytes(whole.begin(), whole.end() - 20)), Failure);
}

}  // namespace
