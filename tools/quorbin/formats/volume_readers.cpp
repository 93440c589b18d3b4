#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include <quorbin3d.h>

#include "failure.h"
#include "formats/npy.h"
#include "formats/readers.h"
#include "formats/samples.h"
#include "formats/volume.h"
#include "memory_file.h"
#include "quiet_output.h"

namespace {

void checkSpacing(const Volume& volume) {
    for (const double h : volume.spacing)
        if (!(h > 1e-100 && h < 1e100))
            refuse("has the spacings {}, {} and {}; they should be positive", volume.spacing[0],
                   volume.spacing[1], volume.spacing[2]);
}

bool isFl3d(const Bytes& start) { return startsWith(start, "FL3D") || startsWith(start, "FR3D"); }

Volume readFl3d(const std::string& path) {
    FullLevelSet3D field;
    {
        const QuietOutput quiet;
        if (!field.load(path.c_str())) refuse("is no whole FL3D or FR3D file; give all of it");
    }
    Volume volume;
    volume.format = "FL3D";
    setSize(volume, field.getWidth(), field.getHeight(), field.getDepth());
    volume.spacing = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    std::copy_n(field.data(), volume.samples.size(), volume.samples.begin());
    volume.isField = true;
    return volume;
}

Volume readFl3dStream(const std::string& path) {
    const Bytes bytes = readBytes(path);
    const MemoryFile file;
    file.write(bytes.data(), bytes.size());
    return readFl3d(file.path());
}

Volume readNpyVolume(const Bytes& bytes) {
    const NpyArray array = parseNpy(bytes);
    if (array.shape.size() != 3) refuse("has {} dimensions; a volume has three", array.shape.size());
    Volume volume;
    volume.format = "NPY";
    setSize(volume, array.shape[2], array.shape[1], array.shape[0]);
    volume.samples = array.values();
    volume.isField = array.type.isFloatingPoint();
    return volume;
}

Volume readRaw(const std::string& path, const RawLayout& layout) {
    const auto digits = std::min(layout.type.find_first_of("0123456789"), layout.type.size());
    const SampleType type{layout.type.front(), std::stoul("0" + layout.type.substr(digits)) / 8};
    const auto points = static_cast<std::size_t>(layout.size[0] * layout.size[1] * layout.size[2]);
    const Bytes bytes = readBytes(path, points * type.size);
    if (bytes.size() != points * type.size)
        refuse("has {}{} bytes; {} × {} × {} samples of type {} have {}",
               bytes.size() > points * type.size ? "at least " : "", bytes.size(), layout.size[0],
               layout.size[1], layout.size[2], layout.type, points * type.size);
    Volume volume;
    volume.format = "raw";
    setSize(volume, layout.size[0], layout.size[1], layout.size[2]);
    decodeSamples(type, bytes.data(), volume.samples.size(), volume.samples.data());
    volume.isField = type.isFloatingPoint();
    return volume;
}

bool endsIn(const std::string& path, const std::string& ending) {
    return path.size() >= ending.size() &&
           path.compare(path.size() - ending.size(), ending.size(), ending) == 0;
}

bool hasNiftiName(const std::string& path) {
    return endsIn(path, ".nii") || endsIn(path, ".nii.gz") || endsIn(path, ".hdr") || endsIn(path, ".img");
}

/// By the first bytes, plain or compressed.
bool isNifti(const std::string& path, const Bytes& start) {
    const auto has = [&](std::size_t at, const char* magic) {
        return start.size() > at + 4 && std::memcmp(start.data() + at, magic, 2) == 0;
    };
    return has(344, "n+") || has(344, "ni") || has(4, "n+") || has(0, "\x1f\x8b") || hasNiftiName(path);
}

Volume readAny(const std::string& path, const std::optional<RawLayout>& raw) {
    if (raw) return readRaw(path, *raw);
    const Bytes start = readStart(path);
    if (isFl3d(start)) return isStream(path) ? readFl3dStream(path) : readFl3d(path);
    if (isNpy(start)) return readNpyVolume(readBytes(path));
    if (isTiff(start)) return readTiff(readBytes(path));
    if (!isNifti(path, start))
        refuse(
            "is of no known volume format; give NIfTI, FL3D, FR3D, 3D NPY or TIFF, or say what raw samples "
            "are by --size and --type");
    if (isStream(path) || !hasNiftiName(path))
        refuse("seems to be NIfTI, which is read from files only whose names end in .nii or .nii.gz");
    return readNifti(path);
}

}  // namespace

void checkSize(long long width, long long height, long long depth) {
    const auto isUsable = [](long long n) { return n >= 1 && n <= kMostAlongAnAxis; };
    if (!isUsable(width) || !isUsable(height) || !isUsable(depth) || width * height > INT_MAX / depth)
        refuse("has {} × {} × {} points; a volume has from 1 point to 2147483647", width, height, depth);
}

void setSize(Volume& volume, long long width, long long height, long long depth) {
    checkSize(width, height, depth);
    volume.width = static_cast<int>(width);
    volume.height = static_cast<int>(height);
    volume.depth = static_cast<int>(depth);
    volume.samples.resize(static_cast<std::size_t>(width * height * depth));
}

bool isVolume(const std::string& path) {
    const Bytes start = readStart(path);
    if (isFl3d(start) || isNifti(path, start)) return true;
    try {
        if (isNpy(start)) return parseNpy(start).shape.size() == 3;
        return isTiff(start) && tiffPages(readBytes(path)) > 1;
    } catch (const Failure& failure) {
        throw naming(path, failure);
    }
}

Volume readVolume(const std::string& path, const std::optional<RawLayout>& raw) {
    try {
        Volume volume = readAny(path, raw);
        checkSpacing(volume);
        if (!std::all_of(volume.samples.begin(), volume.samples.end(),
                         [](double v) { return std::isfinite(v); }))
            refuse("holds values that are not finite; replace them by numbers");
        return volume;
    } catch (const Failure& failure) {
        throw naming(path, failure);
    }
}
