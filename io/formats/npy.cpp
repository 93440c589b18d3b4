#include <algorithm>
#include <cctype>
#include <regex>

#include "../failure.h"
#include "../sample_output.h"
#include "../sample_types.h"
#include "formats.h"

namespace quorbin::io {

namespace {

/// The array of an NPY file, of any number of dimensions, the last of which is the one along which neighbours
/// lie.
struct NpyArray {
    std::vector<long long> shape;
    /// The values in that order. Refuses what ends early.
    std::vector<double> values() const;

    const Bytes& bytes;
    std::size_t dataStart;
    SampleType type;
    bool isBigEndian, isFortran;
};

std::vector<long long> parseShape(const std::string& text) {
    std::vector<long long> shape;
    const std::regex size("\\s*(\\d{1,10})\\s*,?");
    auto at = text.cbegin();
    std::smatch found;
    while (std::regex_search(at, text.cend(), found, size, std::regex_constants::match_continuous)) {
        shape.push_back(std::stoll(found[1]));
        at = found[0].second;
    }
    if (!std::all_of(at, text.cend(), [](unsigned char c) { return std::isspace(c) != 0; }) || shape.empty())
        refuse("has the shape ({}); give an array of two dimensions, or three for a volume", text);
    return shape;
}

/// Reads the header; bytes must outlive the array.
NpyArray parseNpy(const Bytes& bytes) {
    if (bytes.size() < 12) refuse("ends within its NPY header; give the whole file");
    const bool isVersion1 = bytes[6] == 1;
    const std::size_t lengthBytes = isVersion1 ? 2 : 4;
    std::size_t length = 0;
    for (std::size_t i = lengthBytes; i-- > 0;) length = length << 8 | bytes[8 + i];
    const std::size_t start = 8 + lengthBytes;
    if (length > bytes.size() - start) refuse("ends within its NPY header; give the whole file");
    const std::string text(
        bytes.begin() + static_cast<std::ptrdiff_t>(start),
        bytes.begin() + static_cast<std::ptrdiff_t>(start + std::min<std::size_t>(length, 10000)));

    std::smatch descr, order, shape;
    if (!std::regex_search(text, descr, std::regex("'descr'\\s*:\\s*'([<>|=])([a-zA-Z])(\\d{1,3})'")) ||
        !std::regex_search(text, order, std::regex("'fortran_order'\\s*:\\s*(True|False)")) ||
        !std::regex_search(text, shape, std::regex("'shape'\\s*:\\s*\\(([^)]*)\\)")))
        refuse("has an NPY header that cannot be read; give an array of plain numbers");
    return {parseShape(shape[1]), bytes,
            start + length,       {descr[2].str()[0], static_cast<std::size_t>(std::stoi(descr[3]))},
            descr[1] == ">",      order[1] == "True"};
}

std::vector<double> NpyArray::values() const {
    if (!withSampleType(type, [](auto) {}))
        refuse("holds numbers of type {}{}; give bool, integers, or float16, 32 or 64", type.kind, type.size);
    std::size_t points = 1;
    for (const long long size : shape) points *= static_cast<std::size_t>(size);
    if ((bytes.size() - dataStart) / type.size < points)
        refuse("ends within its values; give the whole file");
    std::vector<double> inFile(points);
    if (isBigEndian) {
        Bytes swapped(bytes.begin() + static_cast<std::ptrdiff_t>(dataStart), bytes.end());
        for (std::size_t i = 0; i < points; ++i)
            std::reverse(swapped.data() + i * type.size, swapped.data() + (i + 1) * type.size);
        decodeSamples(type, swapped.data(), points, inFile.data());
    } else {
        decodeSamples(type, bytes.data() + dataStart, points, inFile.data());
    }
    if (!isFortran) return inFile;
    std::vector<double> result(points);
    std::vector<std::size_t> index(shape.size());
    for (const double value : inFile) {
        std::size_t to = 0;
        for (std::size_t d = 0; d < shape.size(); ++d)
            to = to * static_cast<std::size_t>(shape[d]) + index[d];
        for (std::size_t d = 0; d < shape.size() && ++index[d] == static_cast<std::size_t>(shape[d]); ++d)
            index[d] = 0;
        result[to] = value;
    }
    return result;
}

bool holdsVolume(InputFile& file, const ReadOptions&) { return parseNpy(file.start()).shape.size() == 3; }

Image read(InputFile& file, const ReadOptions&) {
    const NpyArray array = parseNpy(file.all());
    const std::vector<long long>& shape = array.shape;
    Image image;
    if (shape.size() == 2)
        setPictureSize(image, shape[1], shape[0]);
    else if (shape.size() == 3)
        setVolumeSize(image, shape[2], shape[1], shape[0]);
    else
        refuse("has {} dimension{}; give an array of two, or three for a volume", shape.size(),
               shape.size() == 1 ? "" : "s");
    image.samples = array.values();
    image.isField = array.type.isFloatingPoint();
    return image;
}

std::optional<Plane> planeIn(InputFile& file, const PlaneChoice& choice, const ReadOptions&) {
    const NpyArray array = parseNpy(file.start());
    if (array.isFortran) return std::nullopt;
    Image volume;
    describeVolume(volume, array.shape[2], array.shape[1], array.shape[0]);
    volume.isField = array.type.isFloatingPoint();
    return planeOf(file, {array.dataStart, array.type, array.isBigEndian}, volume, choice);
}

/// The header of a file of floating-point numbers in C order, with the shape as text.
std::string headerOf(const SampleOutput& output, const std::string& shape) {
    std::string header = fmt::format("{{'descr': '<f{}', 'fortran_order': False, 'shape': ({}), }}",
                                     output.type().size, shape);
    constexpr std::size_t kPreamble = 10, kAlignment = 64;
    header.append(kAlignment - (kPreamble + header.size() + 1) % kAlignment, ' ').append("\n");
    const char length[2] = {static_cast<char>(header.size() % 256), static_cast<char>(header.size() / 256)};
    return std::string("\x93NUMPY\x01\x00", 8) + std::string(length, sizeof length) + header;
}

void write(const SampleOutput& output, const std::string& shape, const double* values, std::size_t count,
           OutputFile& out) {
    out.write(headerOf(output, shape));
    sendSamples(output, values, count, [&](const void* bytes, std::size_t size) { out.write(bytes, size); });
}

void writePicture(const PictureDocument& document, OutputFile& out) {
    const FullLevelSet2D& field = document.field;
    write({document.isFloat}, fmt::format("{}, {}", field.getHeight(), field.getWidth()), field.data(),
          pointsOf(field), out);
}

void writeVolume(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    write({document.isFloat},
          fmt::format("{}, {}, {}", field.getDepth(), field.getHeight(), field.getWidth()), field.data(),
          pointsOf(field), out);
}

}  // namespace

Format npyFormat() {
    Format format{"NPY", "npy"};
    format.holds = Holds::kEither;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "\x93NUMPY"); };
    format.holdsVolume = holdsVolume;
    format.read = read;
    format.readPlane = planeIn;
    format.writesFloats = true;
    format.writePicture = writePicture;
    format.writeVolume = writeVolume;
    return format;
}

}  // namespace quorbin::io
