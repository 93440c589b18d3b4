#include <tiffio.h>
#include <unistd.h>

#include <memory>

#include <fmt/format.h>

#include "../failure.h"
#include "../memory_file.h"
#include "tiff_write.h"

namespace quorbin::io {

namespace {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

[[noreturn]] void fail() { throw Failure(kFailed, "the TIFF file could not be made in memory"); }

void writePage(TIFF* tiff, const FullLevelSet3D& field, int z, const std::string& description) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, field.getWidth());
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, field.getHeight());
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 64);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, field.getHeight());
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 1 / field.getXSpace());
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 1 / field.getYSpace());
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, description.c_str());
    const std::size_t points = pointsOf(field) / static_cast<std::size_t>(field.getDepth());
    double* const values = const_cast<double*>(field.data()) + static_cast<std::size_t>(z) * points;
    const auto bytes = static_cast<tmsize_t>(points * sizeof(double));
    if (TIFFWriteEncodedStrip(tiff, 0, values, bytes) != bytes || TIFFWriteDirectory(tiff) == 0) fail();
}

}  // namespace

void writeTiff(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    const MemoryFile file;
    {
        // Beyond 4 GB only the newer kind of file will do, which fewer programs read.
        const bool isLarge = pointsOf(field) * sizeof(double) > 4'000'000'000;
        const std::unique_ptr<TIFF, CloseTiff> tiff(
            TIFFFdOpen(dup(file.descriptor()), "", isLarge ? "w8" : "w"));
        if (!tiff) fail();
        // As ImageJ has it, which is where others look for the distance of the pages.
        const std::string description = fmt::format("ImageJ=1.53\nimages={0}\nslices={0}\nspacing={1}\n{2}\n",
                                                    field.getDepth(), field.getZSpace(), kFieldMark);
        for (int z = 0; z < field.getDepth(); ++z) writePage(tiff.get(), field, z, description);
    }
    file.forEachBlock([&](const char* bytes, std::size_t count) { out.write(bytes, count); });
}

}  // namespace quorbin::io
