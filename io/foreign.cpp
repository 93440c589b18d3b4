#include "foreign.h"

#include <algorithm>
#include <string>
#include <vector>

#include "failure.h"

namespace quorbin::io {

namespace {

/// A format by what stands at a place of its files.
struct Foreign {
    const char* name;
    std::size_t at;
    std::string magic;
    const char* instead;
};

constexpr char kAsPicture[] = "save the picture as PNG or TIFF";
constexpr char kAsVolume[] = "convert it to NIfTI";

const std::vector<Foreign>& foreignFormats() {
    using namespace std::string_literals;
    static const std::vector<Foreign> all = {
        {"GIF", 0, "GIF8", kAsPicture},
        {"JPEG 2000", 0, "\0\0\0\x0cjP  "s, kAsPicture},
        {"JPEG 2000", 0, "\xff\x4f\xff\x51", kAsPicture},
        {"JPEG XL", 0, "\0\0\0\x0cJXL "s, kAsPicture},
        {"AVIF or HEIC", 4, "ftyp", kAsPicture},
        {"OpenEXR", 0, "\x76\x2f\x31\x01", kAsPicture},
        {"PSD", 0, "8BPS", kAsPicture},
        {"PAM", 0, "P7\n", kAsPicture},
        {"PDF", 0, "%PDF", kAsPicture},
        {"SVG", 0, "<svg", kAsPicture},
        {"MINC or another netCDF", 0, "CDF", kAsVolume},
        {"VTK", 0, "# vtk", kAsVolume},
        {"VTK", 0, "<VTKFile", kAsVolume},
        {"HDF5", 0, "\x89HDF", "write its array as NPY, as numpy.save does"},
        {"MAT", 0, "MATLAB", "write its array as NPY, as numpy.save does"},
        {"ZIP", 0, "PK\3\4", "unpack it; of an .npz, the .npy in it"},
        {"bzip2", 0, "BZh", "uncompress it"},
        {"xz", 0,
         "\xfd"
         "7zXZ",
         "uncompress it"},
    };
    return all;
}

}  // namespace

void refuseForeign(InputFile& file) {
    const Bytes& start = file.start();
    for (const Foreign& format : foreignFormats())
        if (start.size() > format.at + format.magic.size() &&
            std::equal(format.magic.begin(), format.magic.end(),
                       start.begin() + static_cast<std::ptrdiff_t>(format.at),
                       [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; }))
            refuse("is {}, which is not read here; {}", format.name, format.instead);
}

}  // namespace quorbin::io
