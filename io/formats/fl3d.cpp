#include <algorithm>
#include <cstdint>
#include <cstring>

#include "../failure.h"
#include "../quiet_output.h"
#include "formats.h"

namespace quorbin::io {

namespace {

Image read(InputFile& file, const ReadOptions&) {
    FullLevelSet3D field;
    {
        const QuietOutput quiet;
        if (!field.load(file.pathForOthers().c_str()))
            refuse("is no whole FL3D or FR3D file; give all of it");
    }
    Image image;
    setVolumeSize(image, field.getWidth(), field.getHeight(), field.getDepth());
    image.placement.spacing = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    std::copy_n(field.data(), image.samples.size(), image.samples.begin());
    image.isField = true;
    return image;
}

/// By the header as docs/formats.md has it.
std::optional<Plane> planeIn(InputFile& file, const PlaneChoice& choice, const ReadOptions&) {
    const Bytes& bytes = file.start();
    constexpr std::size_t kHeader = 40;
    if (bytes.size() < kHeader) return std::nullopt;
    std::int32_t sizes[3];
    Image volume;
    std::memcpy(sizes, bytes.data() + 4, sizeof sizes);
    std::memcpy(volume.placement.spacing.data(), bytes.data() + 16, 3 * sizeof(double));
    describeVolume(volume, sizes[0], sizes[1], sizes[2]);
    volume.isField = true;
    return planeOf(file, {kHeader, {'f', sizeof(double)}}, volume, choice);
}

void save(const FullLevelSet3D& field, OutputFile& out) {
    const MemoryFile file;
    if (!field.save(file.path().c_str()))
        throw Failure(kFailed, "there is not enough memory for the file to write");
    file.forEachBlock([&](const char* bytes, std::size_t count) { out.write(bytes, count); });
}

void write(const VolumeDocument& document, OutputFile& out) { save(document.field, out); }

/// Inside and outside only, in runs.
void writeSides(const VolumeDocument& document, OutputFile& out) {
    FullLevelSet3D sides;
    sides = document.field;
    std::transform(sides.data(), sides.data() + pointsOf(sides), sides.data(),
                   [](double value) { return value <= 0 ? -1.0 : 1.0; });
    save(sides, out);
}

}  // namespace

Format fl3dFormat() {
    Format format{"FL3D", "fl3d"};
    format.holds = Holds::kVolumes;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "FL3D"); };
    format.read = read;
    format.readPlane = planeIn;
    format.writeVolume = write;
    return format;
}

Format fr3dFormat() {
    Format format{"FR3D", "fr3d"};
    format.holds = Holds::kVolumes;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "FR3D"); };
    format.read = read;
    format.writeVolume = writeSides;
    return format;
}

}  // namespace quorbin::io
