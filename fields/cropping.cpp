#include "cropping.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "../io/failure.h"
#include "grids.h"
#include "placing.h"

namespace quorbin::fields {

namespace {

void requirePart(const std::array<int, 3>& size, const Crop& part) {
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (part.from[axis] < 0 || part.from[axis] >= part.to[axis] || part.to[axis] > size[axis])
            io::refuse(
                "has {} points along {}, and --crop goes from {} up to {}; give a first index from 0 and a "
                "larger second one up to {}",
                size[axis], "xyz"[axis], part.from[axis], part.to[axis], size[axis]);
}

void copyPart(const double* from, const std::array<int, 3>& size, const Crop& part, double* to) {
    const auto width = static_cast<std::size_t>(size[0]), height = static_cast<std::size_t>(size[1]);
    const int across = part.to[0] - part.from[0];
    for (int z = part.from[2]; z < part.to[2]; ++z)
        for (int y = part.from[1]; y < part.to[1]; ++y) {
            const std::size_t row =
                (static_cast<std::size_t>(z) * height + static_cast<std::size_t>(y)) * width;
            to = std::copy_n(from + row + part.from[0], across, to);
        }
}

}  // namespace

std::vector<double> cropped(const std::vector<double>& samples, const std::array<int, 3>& size,
                            const Crop& part) {
    requirePart(size, part);
    std::size_t points = 1;
    for (std::size_t axis = 0; axis < 3; ++axis)
        points *= static_cast<std::size_t>(part.to[axis] - part.from[axis]);
    std::vector<double> made(points);
    copyPart(samples.data(), size, part, made.data());
    return made;
}

void crop(FullLevelSet2D& field, const Crop& part) {
    requirePart(sizeOf(field), part);
    FullLevelSet2D cropped;
    initGrid(cropped, {part.to[0] - part.from[0], part.to[1] - part.from[1], 1}, spacingOf(field));
    copyPart(field.data(), sizeOf(field), part, cropped.data());
    field = std::move(cropped);
}

void crop(FullLevelSet3D& field, const Crop& part, io::Placement& placement) {
    requirePart(sizeOf(field), part);
    FullLevelSet3D cropped;
    initGrid(cropped, {part.to[0] - part.from[0], part.to[1] - part.from[1], part.to[2] - part.from[2]},
             spacingOf(field));
    copyPart(field.data(), sizeOf(field), part, cropped.data());
    field = std::move(cropped);
    startAt(placement, part.from);
}

}  // namespace quorbin::fields
