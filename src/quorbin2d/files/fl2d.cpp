#include <cstddef>
#include <cstdint>
#include <cstring>

#include "common/files/file.h"
#include "quorbin2d/full_level_set_2d.h"

using lset::detail::File;

namespace {

constexpr char kMagic[4] = {'F', 'L', '2', 'D'};

}  // namespace

bool FullLevelSet2D::save(const char* path) const {
    File file(path, "wb");
    if (!file) return false;
    const std::int32_t sizes[2] = {getWidth(), getHeight()};
    const double spacings[2] = {getXSpace(), getYSpace()};
    // A subclass may report other sizes than it stores, but not larger ones.
    const std::size_t points = sizes[0] < 0 || sizes[1] < 0
                                   ? size() + 1
                                   : static_cast<std::size_t>(sizes[0]) * static_cast<std::size_t>(sizes[1]);
    return points <= size() && file.write(kMagic, 4) && file.write(sizes, 2) && file.write(spacings, 2) &&
           file.write(values_.get(), points) && file.close();
}

bool FullLevelSet2D::load(const char* path) {
    File file(path, "rb");
    if (!file) return false;
    char magic[4];
    std::int32_t sizes[2];
    double spacings[2];
    if (!file.read(magic, 4) || std::memcmp(magic, kMagic, sizeof kMagic) != 0) return false;
    if (!file.read(sizes, 2) || !file.read(spacings, 2)) return false;
    if (!adopt(sizes[0], sizes[1], spacings[0], spacings[1])) return false;
    const std::size_t present = file.readSome(values_.get(), size());
    if (present == size()) return true;
    values_[present] = 0.0;  // of which some bytes may have come
    return false;
}
