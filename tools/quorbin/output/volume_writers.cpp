#include "output/volume_writers.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "failure.h"
#include "memory_file.h"
#include "output/format_name.h"
#include "output/npy_header.h"

namespace {

void save(const FullLevelSet3D& field, OutputFile& out) {
    const MemoryFile file;
    if (!field.save(file.path().c_str()))
        throw Failure(kFailed, "there is not enough memory for the file to write");
    file.forEachBlock([&](const char* bytes, std::size_t count) { out.write(bytes, count); });
}

void writeFl3d(const VolumeDocument& document, OutputFile& out) { save(document.field, out); }

/// Inside and outside only, in runs.
void writeFr3d(const VolumeDocument& document, OutputFile& out) {
    FullLevelSet3D sides;
    sides = document.field;
    std::transform(sides.data(), sides.data() + pointsOf(sides), sides.data(),
                   [](double value) { return value <= 0 ? -1.0 : 1.0; });
    save(sides, out);
}

void writeRaw(const VolumeDocument& document, OutputFile& out) {
    out.write(document.field.data(), pointsOf(document.field) * sizeof(double));
}

void writeNpyVolume(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    out.write(npyHeader(fmt::format("{}, {}, {}", field.getDepth(), field.getHeight(), field.getWidth())));
    writeRaw(document, out);
}

constexpr VolumeWriter kWriters[] = {{"fl3d", writeFl3d},    {"fr3d", writeFr3d},     {"nii", writeNii},
                                     {"nii.gz", writeNiiGz}, {"npy", writeNpyVolume}, {"tif", writeTiff},
                                     {"tiff", writeTiff},    {"vti", writeVti},       {"raw", writeRaw}};

}  // namespace

std::size_t pointsOf(const FullLevelSet3D& field) {
    return static_cast<std::size_t>(field.getWidth()) * static_cast<std::size_t>(field.getHeight()) *
           static_cast<std::size_t>(field.getDepth());
}

const VolumeWriter& volumeWriterFor(const std::string& path, const std::string& format) {
    const std::string name = formatName(path, format, "fl3d");
    const auto* writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                      [&](const VolumeWriter& w) { return name == w.name; });
    if (writer != std::end(kWriters)) return *writer;
    if (name.empty()) return kWriters[0];
    refuse("{}: a volume is written as {}; end the name in one of these, or add --format", path,
           kVolumeFormats);
}
