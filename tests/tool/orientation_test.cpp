#include <tiffio.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "io/format.h"
#include "io/memory_file.h"

using namespace quorbin::io;

namespace {

/// What is seen of the picture abc/def by each orientation, from 1.
constexpr std::array<const char*, 8> kSeen = {"abc/def",  "cba/fed",  "fed/cba",  "def/abc",
                                              "ad/be/cf", "da/eb/fc", "fc/eb/da", "cf/be/ad"};
constexpr int kWidth = 3, kHeight = 2;
/// The grey of a letter.
constexpr int greyOf(int i) { return 20 + 40 * i; }

/// The picture as letters, of squares of so many pixels.
std::string lettersOf(const quorbin::io::Image& image, int side) {
    std::string letters;
    for (int y = side / 2; y < image.height; y += side) {
        for (int x = side / 2; x < image.width; x += side) {
            const double grey = image.samples[static_cast<std::size_t>(y * image.width + x)];
            letters += static_cast<char>('a' + std::lround((grey - greyOf(0)) / (greyOf(1) - greyOf(0))));
        }
        letters += '/';
    }
    letters.pop_back();
    return letters;
}

quorbin::io::Image readBytes(const Bytes& bytes) {
    const MemoryFile copy;
    copy.write(bytes.data(), bytes.size());
    InputFile file(copy.path());
    return readImage(file);
}

/// A JPEG of squares of 8 pixels, with EXIF data before its tables.
Bytes jpeg(const std::string& exif) {
    Bytes pixels;
    for (int y = 0; y < 8 * kHeight; ++y)
        for (int x = 0; x < 8 * kWidth; ++x)
            pixels.push_back(static_cast<unsigned char>(greyOf(y / 8 * kWidth + x / 8)));
    unsigned char* made = nullptr;
    unsigned long size = 0;
    tjhandle encoder = tjInitCompress();
    tjCompress2(encoder, pixels.data(), 8 * kWidth, 0, 8 * kHeight, TJPF_GRAY, &made, &size, TJSAMP_GRAY, 100,
                0);
    tjDestroy(encoder);
    Bytes bytes(made, made + size);
    tjFree(made);
    const std::string start = "\xff\xe1" + std::string(1, '\0') + static_cast<char>(exif.size() + 2) + exif;
    bytes.insert(bytes.begin() + 2, start.begin(), start.end());
    return bytes;
}

/// EXIF data of two fields, in either byte order.
std::string exif(int orientation, bool isLittle) {
    const auto number = [&](unsigned value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> 8 * (isLittle ? i : bytes - 1 - i) & 255);
        return text;
    };
    const std::string fields = number(0x100, 2) + number(4, 2) + number(1, 4) + number(99, 4) +
                               number(0x112, 2) + number(3, 2) + number(1, 4) +
                               number(static_cast<unsigned>(orientation), 2) + number(0, 2);
    return std::string("Exif\0\0", 6) + (isLittle ? "II" : "MM") + number(42, 2) + number(8, 4) +
           number(2, 2) + fields + number(0, 4);
}

TEST(Orientation, OfAJpegIsThatOfItsExifData) {
    for (int orientation = 1; orientation <= 8; ++orientation)
        for (const bool isLittle : {false, true})
            EXPECT_EQ(lettersOf(readBytes(jpeg(exif(orientation, isLittle))), 8),
                      kSeen[static_cast<std::size_t>(orientation - 1)])
                << orientation;
    // What is no orientation, and data that are cut anywhere, leave the picture as it is.
    for (const int none : {0, 9, 0xffff})
        EXPECT_EQ(lettersOf(readBytes(jpeg(exif(none, true))), 8), kSeen[0]);
    const std::string whole = exif(6, false);
    for (std::size_t length = 0; length < whole.size() - 8; ++length)
        EXPECT_EQ(lettersOf(readBytes(jpeg(whole.substr(0, length))), 8), kSeen[0]) << length;
}

TEST(Orientation, OfATiffIsThatOfItsPages) {
    struct Case {
        std::uint16_t photometric, channels;
        int pages;
    };
    for (const Case& c :
         {Case{PHOTOMETRIC_MINISBLACK, 1, 1}, {PHOTOMETRIC_MINISBLACK, 1, 2}, {PHOTOMETRIC_SEPARATED, 4, 1}})
        for (std::uint16_t orientation = 1; orientation <= 8; ++orientation) {
            const MemoryFile file;
            TIFF* tiff = TIFFFdOpen(dup(file.descriptor()), "", "w");
            for (int page = 0; page < c.pages; ++page) {
                TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
                TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
                TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
                TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, c.channels);
                TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, c.photometric);
                TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
                for (int y = 0; y < kHeight; ++y) {
                    Bytes row;
                    for (int x = 0; x < kWidth; ++x) {
                        row.resize(row.size() + c.channels);  // no ink but black
                        const int grey = greyOf(y * kWidth + x);
                        row.back() = static_cast<unsigned char>(c.channels == 1 ? grey : 255 - grey);
                    }
                    TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0);
                }
                TIFFWriteDirectory(tiff);
            }
            TIFFClose(tiff);
            InputFile input(file.path());
            quorbin::io::Image image = readImage(input);
            const std::string seen = kSeen[orientation - 1U];
            EXPECT_EQ(lettersOf(image, 1), seen) << orientation;
            if (c.pages == 1) {
                EXPECT_EQ(unpacked(readPacked(input)).samples, image.samples);
                continue;
            }
            // A plane is read alone as it stands, or of the whole.
            EXPECT_EQ(readPlane(input, {}).has_value(), orientation == 1);
            ASSERT_EQ(image.depth, 2);
            std::rotate(image.samples.begin(), image.samples.begin() + kWidth * kHeight, image.samples.end());
            EXPECT_EQ(lettersOf(image, 1), seen) << orientation;
        }
}

}  // namespace
