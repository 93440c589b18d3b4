#include <tiffio.h>

#include <cmath>
#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "io/failure.h"
#include "io/format.h"

using namespace quorbin::io;

namespace {

using Values = std::vector<double>;
using Numbers = std::vector<std::uint16_t>;

/// What a page is made of; sample(point, channel) is its bits.
struct Page {
    std::uint32_t width = 5, height = 3;
    std::uint16_t bits = 8, format = SAMPLEFORMAT_UINT, channels = 1, photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t planes = PLANARCONFIG_CONTIG, compression = COMPRESSION_LZW;
    std::vector<std::uint16_t> extras;
    bool isTiled = false;
    std::string description;
    std::function<std::uint64_t(std::size_t point, std::size_t channel)> sample;
};

/// Packs count samples of so many bits, high bits first, whole bytes as the machine has them.
Bytes packed(const Page& page, std::size_t count, const std::function<std::uint64_t(std::size_t)>& sampleAt) {
    Bytes row((count * page.bits + 7) / 8 + 8);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t value = sampleAt(i);
        if (page.bits % 8 == 0)
            std::memcpy(&row[i * page.bits / 8], &value, page.bits / 8);
        else
            for (std::size_t b = 0; b < page.bits; ++b)
                if ((value >> (page.bits - 1 - b) & 1) != 0) {
                    const std::size_t bit = i * page.bits + b;
                    row[bit / 8] = static_cast<unsigned char>(row[bit / 8] | 128 >> bit % 8);
                }
    }
    return row;
}

void writePage(TIFF* tiff, const Page& page) {
    constexpr std::uint32_t kTile = 16;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, page.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, page.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, page.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, page.format);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, page.channels);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, page.photometric);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, page.planes);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, page.compression);
    if (!page.extras.empty())
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, page.extras.size(), page.extras.data());
    if (!page.description.empty()) TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, page.description.c_str());
    if (page.photometric == PHOTOMETRIC_PALETTE) {
        std::vector<std::uint16_t> colours[3];
        for (std::size_t c = 0; c < 3; ++c)
            for (std::size_t i = 0; i < std::size_t{1} << page.bits; ++i)
                colours[c].push_back(static_cast<std::uint16_t>((10 * (c + 1) + i) * 257));
        TIFFSetField(tiff, TIFFTAG_COLORMAP, colours[0].data(), colours[1].data(), colours[2].data());
    }
    const bool isPlanar = page.planes == PLANARCONFIG_SEPARATE;
    const std::size_t beside = isPlanar ? 1 : page.channels, width = page.width;
    if (page.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTile);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTile);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 2);
    }
    for (std::size_t plane = 0; plane < (isPlanar ? page.channels : 1U); ++plane) {
        const auto row = [&](std::size_t y, std::size_t x0, std::size_t wide) {
            return packed(page, wide * beside, [&](std::size_t i) {
                const std::size_t x = std::min(x0 + i / beside, width - 1);
                return page.sample(std::min<std::size_t>(y, page.height - 1) * width + x,
                                   isPlanar ? plane : i % beside);
            });
        };
        for (std::uint32_t y = 0; y < page.height; y += page.isTiled ? kTile : 1) {
            if (!page.isTiled) {
                TIFFWriteScanline(tiff, row(y, 0, width).data(), y, static_cast<std::uint16_t>(plane));
                continue;
            }
            for (std::uint32_t x = 0; x < page.width; x += kTile) {
                Bytes tile;
                for (std::size_t r = 0; r < kTile; ++r) {
                    const Bytes one = row(y + r, x, kTile);
                    tile.insert(tile.end(), one.begin(), one.begin() + TIFFTileRowSize(tiff));
                }
                TIFFWriteTile(tiff, tile.data(), x, y, 0, static_cast<std::uint16_t>(plane));
            }
        }
    }
    TIFFWriteDirectory(tiff);
}

/// A TIFF in memory, to be read with some options.
class TiffReader : public testing::Test {
 protected:
    void write(const std::vector<Page>& pages, const char* mode = "w") {
        file_ = std::make_unique<MemoryFile>();
        TIFF* tiff = TIFFFdOpen(dup(file_->descriptor()), "", mode);
        for (const Page& page : pages) writePage(tiff, page);
        TIFFClose(tiff);
    }
    quorbin::io::Image read(const std::string& channel = "", std::optional<long long> frame = {}) const {
        InputFile input(file_->path());
        ReadOptions options;
        options.channel = channel;
        options.frame = frame;
        const bool isStack = isVolume(input);
        quorbin::io::Image image = readImage(input, options);
        EXPECT_EQ(image.isVolume, isStack);
        return image;
    }
    std::string refusal(const std::string& channel = "", std::optional<long long> frame = {}) const {
        try {
            read(channel, frame);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "was read";
    }

 private:
    std::unique_ptr<MemoryFile> file_;
};

TEST_F(TiffReader, TakesEveryWidthAndLayoutOfSamples) {
    for (const bool isTiled : {false, true})
        for (const char* mode : {"wl", "wb", "w8"})
            for (const std::uint16_t channels : Numbers{1, 3})
                for (const std::uint16_t planes : Numbers{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE})
                    for (const std::uint16_t bits : Numbers{1, 2, 4, 8, 12, 16, 32}) {
                        Page page;
                        page.width = 37;
                        page.height = 19;
                        page.isTiled = isTiled;
                        page.bits = bits;
                        page.channels = channels;
                        page.planes = planes;
                        if (channels == 3) page.photometric = PHOTOMETRIC_RGB;
                        page.sample = [&](std::size_t i, std::size_t c) {
                            return (i * 2654435761U >> 3 ^ c * 40503) & ((std::uint64_t{1} << bits) - 1);
                        };
                        write({page}, mode);
                        const std::size_t channel = channels - 1U;
                        const Values samples = read(std::to_string(channel)).samples;
                        for (std::size_t i = 0; i < samples.size(); ++i)
                            ASSERT_EQ(samples[i], static_cast<double>(page.sample(i, channel)))
                                << bits << " bits, " << channels << " channels, " << mode << isTiled
                                << planes;
                    }
}

TEST_F(TiffReader, TakesHalvesExactly) {
    const std::pair<std::uint16_t, double> halves[] = {
        {0x3c00, 1},     {0xc000, -2},       {0x3555, 0.333251953125}, {0x0001, 0x1p-24},
        {0x7bff, 65504}, {0x8400, -0x1p-14}, {0x03ff, 0x3ffp-24}};
    Page page;
    page.width = 7;
    page.height = 1;
    page.bits = 16;
    page.format = SAMPLEFORMAT_IEEEFP;
    page.sample = [&](std::size_t i, std::size_t) { return halves[i].first; };
    write({page});
    const Values samples = read().samples;
    for (std::size_t i = 0; i < samples.size(); ++i) EXPECT_EQ(samples[i], halves[i].second) << i;
}

TEST_F(TiffReader, TakesColoursAsLuminance) {
    Page page;
    page.photometric = PHOTOMETRIC_PALETTE;
    page.bits = 4;
    page.sample = [](std::size_t i, std::size_t) { return i; };
    write({page});
    for (std::size_t i = 0; i < 15; ++i) {
        const double at = static_cast<double>(i);
        EXPECT_NEAR(read().samples[i], 0.299 * 10 + 0.587 * 20 + 0.114 * 30 + at, 1e-9);
        EXPECT_EQ(read("b").samples[i], 30 + at);
    }
    page.photometric = PHOTOMETRIC_RGB;
    page.bits = 16;
    page.channels = 4;
    page.extras = {EXTRASAMPLE_UNASSALPHA};
    page.sample = [](std::size_t i, std::size_t c) { return c == 3 ? (i == 2 ? 9 : 65535) : 1000 * c + i; };
    for (const std::uint16_t planes : Numbers{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
        page.planes = planes;
        write({page});
        EXPECT_NEAR(read().samples[4], 587 + 2 * 114 + 4, 1e-9);
        EXPECT_EQ(read().notes.size(), 1U);
        EXPECT_EQ(read("a").samples[2], 9);
    }
    page = Page{};
    page.photometric = PHOTOMETRIC_MINISWHITE;
    page.bits = 1;
    page.sample = [](std::size_t i, std::size_t) { return i % 2; };
    write({page});
    EXPECT_EQ(read().samples[0], 1);
    EXPECT_EQ(read().samples[1], 0);
}

TEST_F(TiffReader, TellsChannelsLayersAndFramesApart) {
    const std::size_t kC = 2, kZ = 3, kT = 2;
    const auto pages = [&](const std::string& description, const std::string& order) {
        std::vector<Page> all(kC * kZ * kT);
        for (std::size_t p = 0; p < all.size(); ++p) {
            std::size_t rest = p, value = 0;
            for (const char axis : order) {
                const std::size_t size = axis == 'Z' ? kZ : 2;
                value += rest % size * (axis == 'C' ? 100 : axis == 'Z' ? 10 : 1);
                rest /= size;
            }
            all[p].sample = [value](std::size_t, std::size_t) { return value; };
        }
        all[0].description = description;
        return all;
    };
    const auto check = [&](const std::string& what) {
        for (std::size_t c = 0; c < kC; ++c)
            for (std::size_t t = 0; t < kT; ++t) {
                const quorbin::io::Image volume = read(std::to_string(c), static_cast<long long>(t));
                ASSERT_EQ(volume.depth, 3) << what;
                for (std::size_t z = 0; z < kZ; ++z)
                    EXPECT_EQ(volume.samples[15 * z], static_cast<double>(100 * c + 10 * z + t)) << what;
            }
        EXPECT_NE(refusal().find("has 2 channels; choose one by --channel 0 to 1"), std::string::npos)
            << what;
        EXPECT_NE(refusal("1").find("has 2 frames; choose one by --frame 0 to 1"), std::string::npos) << what;
        EXPECT_NE(refusal("2", 0), "was read") << what;
        EXPECT_NE(refusal("0", 2), "was read") << what;
    };
    write(pages("ImageJ=1.53c\nimages=12\nchannels=2\nslices=3\nframes=2\nhyperstack=true\n", "CZT"));
    check("ImageJ");
    for (const std::string order : {"CZT", "ZCT", "TZC", "ZTC"}) {
        const std::string start = "<?xml version=\"1.0\"?><OME><Image><Pixels DimensionOrder=\"XY" + order +
                                  "\" SizeC=\"2\" SizeT=\"2\" SizeX=\"5\" SizeY=\"3\" SizeZ=\"3\" "
                                  "PhysicalSizeZ=\"2.5\" Type=\"uint8\">";
        write(pages(start + "<TiffData/></Pixels></Image></OME>", order));
        check(order);
        EXPECT_EQ(read("0", 0).placement.spacing, (std::array<double, 3>{1, 1, 2.5}));
    }
    // Where each plane is told of, the order does not matter.
    std::string planes = "<OME><Pixels DimensionOrder=\"XYTZC\" SizeC=\"2\" SizeT=\"2\" SizeZ=\"3\">";
    for (std::size_t i = 0; i < 12; ++i)
        planes += "<TiffData IFD=\"" + std::to_string(i) + "\" FirstC=\"" + std::to_string(i % 2) +
                  "\" FirstZ=\"" + std::to_string(i / 2 % 3) + "\" FirstT=\"" + std::to_string(i / 6) +
                  "\" PlaneCount=\"1\"/>";
    write(pages(planes + "</Pixels></OME>", "CZT"));
    check("TiffData");
    write(pages("<OME><Pixels SizeC=\"2\" SizeT=\"2\" SizeZ=\"4\"/></OME>", "CZT"));
    EXPECT_NE(refusal("0", 0).find("give an OME-TIFF in one file"), std::string::npos);
    write(pages("ImageJ=1.53c\nimages=12\nchannels=5\nslices=3\n", "CZT"));
    EXPECT_NE(refusal("0").find("has 12 pages"), std::string::npos);
    std::vector<Page> beside = pages("ImageJ=1.53c\nimages=2\nchannels=2\nmode=composite\n", "CZT");
    beside.resize(2);
    write(beside);
    EXPECT_EQ(read("1").samples, Values(15, 100));  // a picture
}

TEST_F(TiffReader, RefusesWhatHasNoMeaning) {
    Page page;
    page.sample = [](std::size_t i, std::size_t) { return i; };
    page.bits = 64;
    page.format = SAMPLEFORMAT_COMPLEXIEEEFP;
    page.compression = COMPRESSION_NONE;
    write({page});
    EXPECT_NE(refusal().find("complex numbers"), std::string::npos) << refusal();
    page.bits = 8;
    page.format = SAMPLEFORMAT_UINT;
    page.channels = 5;
    page.extras = {0, 0, 0, 0};
    write({page});
    EXPECT_NE(refusal().find("has 5 channels that are no colours"), std::string::npos) << refusal();
    EXPECT_EQ(read("4").samples[7], 7);
}

}  // namespace
