#include "tiff_write.h"

#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <vector>

#include <fmt/format.h>

#include "../failure.h"
#include "../memory_file.h"
#include "../sample_output.h"

namespace quorbin::io {

namespace {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

constexpr std::uint8_t kWhite = 255;

[[noreturn]] void fail() { throw Failure(kFailed, "the TIFF file could not be made in memory"); }

/// What becomes the pages.
struct Stack {
    const double* values;
    int width, height, depth;
    double spacing[3];
    SampleOutput samples;
    bool isField;
};

void writePage(TIFF* tiff, const Stack& stack, int z, const std::string& description) {
    const SampleType type = stack.samples.type();
    const auto width = static_cast<std::size_t>(stack.width), height = static_cast<std::size_t>(stack.height);
    constexpr std::size_t kStrip = 1 << 20;  // bytes, about
    const std::size_t rows = std::clamp(kStrip / (width * type.size), std::size_t{1}, height);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, stack.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, stack.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(8 * type.size));
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT,
                 type.isFloatingPoint() ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    // Runs of a mask make few bytes; a field's would hardly become fewer.
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, type.isFloatingPoint() ? COMPRESSION_NONE : COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<int>(rows));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 1 / stack.spacing[0]);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 1 / stack.spacing[1]);
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, description.c_str());
    const double* const page = stack.values + static_cast<std::size_t>(z) * width * height;
    std::vector<unsigned char> strip;
    for (std::size_t y = 0; y < height; y += rows) {
        strip.clear();
        sendSamples(stack.samples, page + y * width, width * std::min(rows, height - y),
                    [&](const void* bytes, std::size_t count) {
                        const auto* from = static_cast<const unsigned char*>(bytes);
                        strip.insert(strip.end(), from, from + count);
                    });
        const auto count = static_cast<tmsize_t>(strip.size());
        if (TIFFWriteEncodedStrip(tiff, static_cast<std::uint32_t>(y / rows), strip.data(), count) != count)
            fail();
    }
    if (TIFFWriteDirectory(tiff) == 0) fail();
}

void write(const Stack& stack, OutputFile& out) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    const MemoryFile file;
    {
        const double points = static_cast<double>(stack.width) * stack.height * stack.depth;
        // Beyond 4 GB only the newer kind of file will do, which fewer programs read.
        const bool isLarge = points * static_cast<double>(stack.samples.type().size) > 4e9;
        const std::unique_ptr<TIFF, CloseTiff> tiff(
            TIFFFdOpen(dup(file.descriptor()), "", isLarge ? "w8" : "w"));
        if (!tiff) fail();
        // As ImageJ has it, which is where others look for the distance of the pages.
        const std::string description =
            fmt::format("ImageJ=1.53\nimages={0}\nslices={0}\nspacing={1}\n{2}", stack.depth,
                        stack.spacing[2], stack.isField ? fmt::format("{}\n", kFieldMark) : "");
        for (int z = 0; z < stack.depth; ++z) writePage(tiff.get(), stack, z, description);
    }
    file.forEachBlock([&](const char* bytes, std::size_t count) { out.write(bytes, count); });
}

}  // namespace

void writeTiff(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    write({field.data(),
           field.getWidth(),
           field.getHeight(),
           field.getDepth(),
           {field.getXSpace(), field.getYSpace(), field.getZSpace()},
           {document.isFloat, document.isMask ? kWhite : std::uint8_t{0}},
           !document.isMask},
          out);
}

void writeTiff(const PictureDocument& document, OutputFile& out) {
    const FullLevelSet2D& field = document.field;
    const bool isMask = document.drawing == Drawing::kMask;
    write({field.data(),
           field.getWidth(),
           field.getHeight(),
           1,
           {field.getXSpace(), field.getYSpace(), 1},
           {document.isFloat, isMask ? kWhite : std::uint8_t{0}},
           !isMask},
          out);
}

}  // namespace quorbin::io
