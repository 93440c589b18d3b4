#include <tiffio.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "../failure.h"
#include "../sample_types.h"
#include "formats.h"
#include "tiff_write.h"

namespace quorbin::io {

namespace {

/// A TIFF file in memory, for libtiff to read.
struct Source {
    const Bytes& bytes;
    std::size_t at = 0;
};

tmsize_t readSome(thandle_t handle, void* out, tmsize_t count) {
    auto& source = *static_cast<Source*>(handle);
    const std::size_t some = std::min(static_cast<std::size_t>(count), source.bytes.size() - source.at);
    std::memcpy(out, source.bytes.data() + source.at, some);
    source.at += some;
    return static_cast<tmsize_t>(some);
}

toff_t seekTo(thandle_t handle, toff_t offset, int whence) {
    auto& source = *static_cast<Source*>(handle);
    const toff_t base = whence == SEEK_CUR ? source.at : whence == SEEK_END ? source.bytes.size() : 0;
    source.at = static_cast<std::size_t>(std::min<toff_t>(base + offset, source.bytes.size()));
    return source.at;
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t) { return -1; }
int closeNothing(thandle_t) { return 0; }
toff_t sizeOf(thandle_t handle) { return static_cast<Source*>(handle)->bytes.size(); }

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, CloseTiff>;

Tiff openTiff(Source& source) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    // m: without mapping the file, which is in memory already.
    Tiff tiff(TIFFClientOpen("", "rm", &source, readSome, writeNothing, seekTo, closeNothing, sizeOf, nullptr,
                             nullptr));
    if (!tiff) refuse("is no whole TIFF file; give all of it");
    return tiff;
}

struct Page {
    std::uint32_t width = 0, height = 0;
    SampleType type{};
    bool isWhiteZero = false;  // 0 is white

    bool operator==(const Page& other) const {
        return width == other.width && height == other.height && type.kind == other.type.kind &&
               type.size == other.type.size;
    }
};

Page currentPage(TIFF* tiff) {
    Page page;
    std::uint16_t bits = 1, format = SAMPLEFORMAT_UINT, channels = 1;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &page.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &page.height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &format);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &channels);
    if (channels != 1) refuse("has {} channels; give a TIFF in grey", channels);
    if (TIFFIsTiled(tiff) != 0) refuse("is laid out in tiles; give a TIFF laid out in strips");
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
    page.type = {format == SAMPLEFORMAT_IEEEFP ? 'f' : format == SAMPLEFORMAT_INT ? 'i' : 'u', bits / 8U};
    if (bits % 8 != 0 || !withSampleType(page.type, [](auto) {}))
        refuse("has {} bits a sample; give 8, 16 or 32, or floating-point numbers", bits);
    page.isWhiteZero = photometric == PHOTOMETRIC_MINISWHITE && page.type.kind == 'u';
    return page;
}

void readSpacing(TIFF* tiff, Image& image) {
    // Resolution is samples a unit; the distance of the pages stands in the description, as ImageJ writes it.
    const char* description = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &description) == 0) return;
    image.isField = std::strstr(description, kFieldMark) != nullptr;
    if (std::strncmp(description, "ImageJ=", 7) != 0) return;
    float perUnit[2] = {0, 0};
    TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &perUnit[0]);
    TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &perUnit[1]);
    for (std::size_t axis = 0; axis < 2; ++axis)
        if (perUnit[axis] > 0) image.placement.spacing[axis] = 1 / static_cast<double>(perUnit[axis]);
    const char* spacing = std::strstr(description, "spacing=");
    double between = 0;
    if (spacing != nullptr && std::sscanf(spacing, "spacing=%lf", &between) == 1 && between > 0)
        image.placement.spacing[2] = between;
}

bool matches(InputFile& file) {
    const Bytes& bytes = file.start();
    constexpr std::size_t kMagic = 4;
    return bytes.size() > kMagic &&
           (std::memcmp(bytes.data(), "II*", kMagic) == 0 ||
            std::memcmp(bytes.data(), "MM\0*", kMagic) == 0 ||
            std::memcmp(bytes.data(), "II+", kMagic) == 0 || std::memcmp(bytes.data(), "MM\0+", kMagic) == 0);
}

bool holdsVolume(InputFile& file) {
    Source source{file.all()};
    return TIFFNumberOfDirectories(openTiff(source).get()) > 1;
}

Image read(InputFile& file, const ReadOptions&) {
    const Bytes& bytes = file.all();
    Source source{bytes};
    const Tiff tiff = openTiff(source);
    const Page first = currentPage(tiff.get());
    Image image;
    readSpacing(tiff.get(), image);
    const int pages = static_cast<int>(TIFFNumberOfDirectories(tiff.get()));
    // Compressed samples may be few bytes, but no more than a thousand to one.
    if (static_cast<double>(first.width) * first.height * pages * static_cast<double>(first.type.size) >
        1e4 * static_cast<double>(bytes.size()))
        refuse("is no whole TIFF file; give all of it");
    if (pages > 1)
        setVolumeSize(image, first.width, first.height, pages);
    else
        setPictureSize(image, first.width, first.height);
    std::vector<unsigned char> row(static_cast<std::size_t>(TIFFScanlineSize(tiff.get())));
    double* out = image.samples.data();
    for (int z = 0; z < pages; ++z) {
        if (TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(z)) == 0)
            refuse("ends within its {} pages; give the whole file", pages);
        if (!(currentPage(tiff.get()) == first))
            refuse("has pages of different sizes or types; give a stack of one kind");
        for (std::uint32_t y = 0; y < first.height; ++y, out += first.width) {
            if (TIFFReadScanline(tiff.get(), row.data(), y) < 0)
                refuse(
                    "cannot be read beyond row {} of page {}; give the whole file, or one compressed in "
                    "another way",
                    y, z);
            decodeSamples(first.type, row.data(), first.width, out);
            if (first.isWhiteZero) {
                const double black = std::ldexp(1.0, 8 * static_cast<int>(first.type.size)) - 1;
                std::transform(out, out + first.width, out, [=](double sample) { return black - sample; });
            }
        }
    }
    if (TIFFLastDirectory(tiff.get()) == 0) refuse("ends within its pages; give the whole file");
    return image;
}

}  // namespace

Format tiffFormat() {
    Format format{"TIFF", "tif tiff"};
    format.holds = Holds::kEither;
    format.matches = matches;
    format.holdsVolume = holdsVolume;
    format.read = read;
    format.writeVolume = writeTiff;
    return format;
}

}  // namespace quorbin::io
