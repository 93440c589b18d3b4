#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "common/files/file.h"
#include "quorbin3d/files/runs.h"
#include "quorbin3d/full_level_set_3d.h"

using namespace lset::detail;

namespace {

constexpr char kRaw[4] = {'F', 'L', '3', 'D'}, kRuns[4] = {'F', 'R', '3', 'D'};

/// Whether a run of bytes stands for the value. The tolerance is part of the format.
bool isByte(double value) { return std::abs(value - 1) < 0.001 || std::abs(value + 1) < 0.001 || value == 0; }

constexpr std::size_t kTooMany = SIZE_MAX;

/// The number of points of a grid with these sizes, or kTooMany where it does not hold as many: a subclass
/// may report other sizes than it stores, but not larger ones.
std::size_t pointsWithin(std::size_t held, const std::int32_t (&sizes)[3]) {
    if (std::any_of(sizes, sizes + 3, [](std::int32_t s) { return s < 0; })) return kTooMany;
    if (std::count(sizes, sizes + 3, 0) > 0) return 0;
    std::size_t points = 1;
    for (const std::int32_t s : sizes) {
        if (points > held / static_cast<std::size_t>(s)) return kTooMany;
        points *= static_cast<std::size_t>(s);
    }
    return points;
}

}  // namespace

bool FullLevelSet3D::save(const char* path) const {
    File file(path, "wb");
    if (!file) return false;
    const std::int32_t sizes[3] = {getWidth(), getHeight(), getDepth()};
    const double spacings[3] = {getXSpace(), getYSpace(), getZSpace()};
    const std::size_t points = pointsWithin(size(), sizes);
    if (points == kTooMany) return false;
    const double* const values = values_.get();
    const bool inRuns = std::all_of(values, values + points, isByte);
    if (!file.write(inRuns ? kRuns : kRaw, 4) || !file.write(sizes, 3) || !file.write(spacings, 3))
        return false;
    return (inRuns ? writeRuns(values, points, file) : file.write(values, points)) && file.close();
}

bool FullLevelSet3D::load(const char* path) {
    File file(path, "rb");
    if (!file) return false;
    char magic[4];
    std::int32_t sizes[3];
    double spacings[3];
    if (!file.read(magic, 4)) return false;
    const bool inRuns = std::memcmp(magic, kRuns, sizeof magic) == 0;
    if (!inRuns && std::memcmp(magic, kRaw, sizeof magic) != 0) return false;
    if (!file.read(sizes, 3) || !file.read(spacings, 3)) return false;
    if (!adopt(sizes[0], sizes[1], sizes[2], spacings[0], spacings[1], spacings[2])) return false;
    if (inRuns) return readRuns(values_.get(), size(), file);
    const std::size_t present = file.readSome(values_.get(), size());
    if (present == size()) return true;
    values_[present] = 0.0;  // of which some bytes may have come
    return false;
}
