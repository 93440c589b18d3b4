#include "tiff_page.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "../failure.h"

namespace quorbin::io {

TiffPage::TiffPage(TIFF* tiff) : tiff_(tiff) {
    std::uint16_t format = SAMPLEFORMAT_UINT, planes = PLANARCONFIG_CONTIG, compression = COMPRESSION_NONE;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width_);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height_);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits_);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &format);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &channels_);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planes);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &compression);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &orientation_);
    if (TIFFIsCODECConfigured(compression) == 0)
        refuse("is compressed in a way (number {}) that cannot be read; save it with LZW, Deflate or none",
               compression);
    photometric_ = channels_ < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric_);
    if (compression == COMPRESSION_JPEG && photometric_ == PHOTOMETRIC_YCBCR) {
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        photometric_ = PHOTOMETRIC_RGB;
    }
    isPlanar_ = planes == PLANARCONFIG_SEPARATE && channels_ > 1;
    isTiled_ = TIFFIsTiled(tiff) != 0;
    takeKind(format);
    takeColours();
}

void TiffPage::takeKind(std::uint16_t format) {
    if (format == SAMPLEFORMAT_COMPLEXINT || format == SAMPLEFORMAT_COMPLEXIEEEFP)
        refuse("holds complex numbers; give one part of them, or their size, as float32");
    type_ = {format == SAMPLEFORMAT_IEEEFP ? 'f' : format == SAMPLEFORMAT_INT ? 'i' : 'u', bits_ / 8U};
    const bool isWhole = bits_ % 8 == 0 && withSampleType(type_, [](auto) {});
    if (!isWhole && !(type_.kind == 'u' && bits_ >= 1 && bits_ < 16))
        refuse("has {} bits a sample; give 1 to 16, 32 or 64, or floating-point numbers of 16, 32 or 64",
               bits_);
}

void TiffPage::takeColours() {
    layout_.count = channels_;
    layout_.opaque = type_.isFloatingPoint() ? 1 : std::ldexp(1.0, bits_) - 1;
    std::uint16_t extras = 0, *kinds = nullptr;
    TIFFGetFieldDefaulted(tiff_, TIFFTAG_EXTRASAMPLES, &extras, &kinds);
    for (std::uint16_t i = extras; i-- > 0 && extras < channels_;)
        if (kinds[i] == EXTRASAMPLE_ASSOCALPHA || kinds[i] == EXTRASAMPLE_UNASSALPHA)
            layout_.alpha = std::size_t{channels_} - extras + i;
    switch (photometric_) {
        case PHOTOMETRIC_MINISWHITE:
        case PHOTOMETRIC_MINISBLACK:
            break;
        case PHOTOMETRIC_RGB:
            layout_.isColour = channels_ >= 3;
            break;
        case PHOTOMETRIC_PALETTE:
            takePalette();
            break;
        default:
            char why[1024] = "";
            if (TIFFRGBAImageOK(tiff_, why) == 0)
                refuse("holds colours in a way (number {}) that cannot be read; save it as RGB or in grey",
                       photometric_);
            isConverted_ = true;
            layout_ = {3, true};
    }
}

void TiffPage::takePalette() {
    std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
    if (channels_ != 1 || type_.kind != 'u' || bits_ > 16 ||
        TIFFGetField(tiff_, TIFFTAG_COLORMAP, &red, &green, &blue) == 0)
        refuse("has a palette that cannot be read; save it in grey or as RGB");
    const std::size_t count = std::size_t{1} << bits_;
    // Colours have 16 bits, of which old writers fill the lower 8.
    const bool isOld = std::all_of(red, red + count, [](auto v) { return v < 256; }) &&
                       std::all_of(green, green + count, [](auto v) { return v < 256; }) &&
                       std::all_of(blue, blue + count, [](auto v) { return v < 256; });
    const int shift = isOld ? 0 : 8;
    for (std::size_t i = 0; i < count; ++i)
        palette_.push_back({static_cast<double>(red[i] >> shift), static_cast<double>(green[i] >> shift),
                            static_cast<double>(blue[i] >> shift)});
    layout_ = {3, true};
}

double TiffPage::size() const { return static_cast<double>(width_) * height_ * channels_ * bits_ / 8; }

bool TiffPage::isLike(const TiffPage& other) const {
    return width_ == other.width_ && height_ == other.height_ && type_.kind == other.type_.kind &&
           bits_ == other.bits_ && orientation_ == other.orientation_ && channels_ == other.channels_ &&
           layout_.count == other.layout_.count && layout_.isColour == other.layout_.isColour &&
           layout_.alpha == other.layout_.alpha;
}

void TiffPage::read(ChannelChoice& channels, const TakeRow& take) const {
    isConverted_ ? readColours(channels, take) : readBlocks(channels, take);
}

bool TiffPage::readBlock(std::uint32_t x, std::uint32_t y, std::uint16_t plane, Bytes& block) const {
    if (isTiled_) return TIFFReadTile(tiff_, block.data(), x, y, 0, plane) >= 0;
    if (!isPlanar_) return TIFFReadScanline(tiff_, block.data(), y) >= 0;
    return TIFFReadEncodedStrip(tiff_, TIFFComputeStrip(tiff_, y, plane), block.data(),
                                static_cast<tmsize_t>(block.size())) >= 0;
}

/// Tiles, or strips where planes lie one after the other, or else rows.
void TiffPage::readBlocks(ChannelChoice& channels, const TakeRow& take) const {
    std::uint32_t across = width_, down = 1;
    tmsize_t rowBytes = TIFFScanlineSize(tiff_), bytes = rowBytes;
    if (isTiled_) {
        TIFFGetField(tiff_, TIFFTAG_TILEWIDTH, &across);
        TIFFGetField(tiff_, TIFFTAG_TILELENGTH, &down);
        rowBytes = TIFFTileRowSize(tiff_);
        bytes = TIFFTileSize(tiff_);
    } else if (isPlanar_) {
        TIFFGetFieldDefaulted(tiff_, TIFFTAG_ROWSPERSTRIP, &down);
        down = std::min(down, height_);
        bytes = TIFFStripSize(tiff_);
    }
    constexpr double kLargestBlock = 1e4;  // times the samples of the page, of which it may hold one
    if (rowBytes <= 0 || bytes <= 0 || static_cast<double>(bytes) > kLargestBlock * size() + 1e6)
        refuse("has tiles of {} × {} samples, which cannot be; give the whole file", across, down);
    const std::uint16_t planes = isPlanar_ ? channels_ : 1;
    const std::size_t beside = isPlanar_ ? 1 : channels_;  // samples of a point in a plane
    std::vector<Bytes> blocks(planes, Bytes(static_cast<std::size_t>(bytes)));
    std::vector<double> row(std::size_t{across} * beside), points(std::size_t{across} * layout_.count);
    std::vector<double> strip(std::size_t{std::min(down, height_)} * width_);
    for (std::uint32_t y = 0; y < height_; y += down) {
        const std::uint32_t high = std::min(down, height_ - y);
        for (std::uint32_t x = 0; x < width_; x += across) {
            for (std::uint16_t plane = 0; plane < planes; ++plane)
                if ((!isPlanar_ || channels.uses(plane)) && !readBlock(x, y, plane, blocks[plane])) fail(y);
            const std::size_t wide = std::min(across, width_ - x);
            for (std::uint32_t r = 0; r < high; ++r) {
                for (std::size_t plane = 0; plane < planes; ++plane) {
                    decode(blocks[plane].data() + r * static_cast<std::size_t>(rowBytes), wide * beside,
                           row.data());
                    if (!palette_.empty())
                        for (std::size_t i = 0; i < wide; ++i)
                            std::copy_n(palette_[static_cast<std::size_t>(row[i])].data(), 3, &points[3 * i]);
                    else if (isPlanar_)
                        for (std::size_t i = 0; i < wide; ++i) points[i * planes + plane] = row[i];
                }
                const bool isReady = palette_.empty() && !isPlanar_;
                channels.take(isReady ? row.data() : points.data(), wide,
                              strip.data() + std::size_t{r} * width_ + x);
            }
        }
        for (std::uint32_t r = 0; r < high; ++r) take(strip.data() + std::size_t{r} * width_);
    }
}

void TiffPage::readColours(ChannelChoice& channels, const TakeRow& take) const {
    std::vector<std::uint32_t> raster(std::size_t{width_} * height_);
    // As it is kept: libtiff would turn it, but not by a quarter.
    if (TIFFReadRGBAImageOriented(tiff_, width_, height_, raster.data(), orientation_, 1) == 0) fail(0);
    std::vector<double> row(width_);
    for (std::size_t i = 0; i < raster.size(); ++i) {
        const double rgb[3] = {static_cast<double>(TIFFGetR(raster[i])),
                               static_cast<double>(TIFFGetG(raster[i])),
                               static_cast<double>(TIFFGetB(raster[i]))};
        channels.take(rgb, 1, &row[i % width_]);
        if ((i + 1) % width_ == 0) take(row.data());
    }
}

void TiffPage::decode(const unsigned char* bytes, std::size_t samples, double* out) const {
    if (bits_ % 8 == 0)
        decodeSamples(type_, bytes, samples, out);
    else  // packed, the highest bit first
        for (std::size_t i = 0, bit = 0; i < samples; ++i) {
            unsigned value = 0;
            for (std::uint16_t b = 0; b < bits_; ++b, ++bit)
                value = value << 1 | (bytes[bit / 8] >> (7 - bit % 8) & 1U);
            out[i] = value;
        }
    if (photometric_ != PHOTOMETRIC_MINISWHITE || type_.kind != 'u') return;
    const double black = std::ldexp(1.0, bits_) - 1;
    for (std::size_t i = 0; i < samples; ++i)
        if (layout_.alpha != i % channels_ || isPlanar_) out[i] = black - out[i];
}

void TiffPage::fail(std::uint32_t row) const {
    refuse("cannot be read beyond row {} of a page; give the whole file, or one compressed in another way",
           row);
}

}  // namespace quorbin::io
