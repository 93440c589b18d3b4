#include "plane.h"

#include <algorithm>

#include "failure.h"

namespace quorbin::io {

std::array<std::size_t, 2> axesOfPlane(std::size_t axis) {
    return {axis == 0 ? std::size_t{1} : 0, axis == 2 ? std::size_t{1} : 2};
}

int planesAcross(const Image& volume, std::size_t axis) {
    return std::array{volume.width, volume.height, volume.depth}[axis];
}

Plane describePlane(const Image& volume, const PlaneChoice& choice) {
    const int count = planesAcross(volume, choice.axis);
    const int index = choice.at.value_or(count / 2);
    if (index < 0 || index >= count)
        refuse("has planes 0 to {} along {}; there is none at {}", count - 1, "xyz"[choice.axis], index);
    Plane plane{{}, index, {}};
    plane.volume.format = plane.picture.format = volume.format;
    plane.volume.isField = plane.picture.isField = volume.isField;
    plane.volume.placement = volume.placement;
    plane.volume.notes = volume.notes;
    describeVolume(plane.volume, volume.width, volume.height, volume.depth);
    const auto [across, down] = axesOfPlane(choice.axis);
    setPictureSize(plane.picture, planesAcross(volume, across), planesAcross(volume, down));
    plane.picture.placement.spacing = {volume.placement.spacing[across], volume.placement.spacing[down], 1};
    return plane;
}

Plane planeOf(const Image& volume, const PlaneChoice& choice) {
    Plane plane = describePlane(volume, choice);
    readPlaneBy(plane, choice.axis, [&](std::size_t first, std::size_t count, double* out) {
        std::copy_n(volume.samples.data() + first, count, out);
    });
    return plane;
}

std::optional<Plane> planeOf(InputFile& file, const ArrayInFile& array, const Image& volume,
                             const PlaneChoice& choice) {
    const auto points = static_cast<unsigned long long>(volume.width) *
                        static_cast<unsigned long long>(volume.height) *
                        static_cast<unsigned long long>(volume.depth);
    if (!isWanted(choice, volume) || !withSampleType(array.type, [](auto) {}) || file.isStream() ||
        file.size() < array.start + points * array.type.size)
        return std::nullopt;
    Plane plane = describePlane(volume, choice);
    Bytes bytes;
    const std::size_t size = array.type.size;
    readPlaneBy(plane, choice.axis, [&](std::size_t first, std::size_t count, double* out) {
        bytes.resize(count * size);
        file.readAt(array.start + first * size, bytes.data(), bytes.size());
        if (array.isBigEndian)
            for (std::size_t i = 0; i < count; ++i)
                std::reverse(bytes.data() + i * size, bytes.data() + (i + 1) * size);
        decodeSamples(array.type, bytes.data(), count, out);
    });
    return plane;
}

}  // namespace quorbin::io
