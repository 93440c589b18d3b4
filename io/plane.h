#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "image.h"
#include "input_file.h"
#include "sample_types.h"

namespace quorbin::io {

/// Which plane of a volume: across x (0), y (1) or z (2), at an index there, the middle one where none is
/// given.
struct PlaneChoice {
    std::size_t axis = 2;
    std::optional<int> at;
    bool ofFieldsAlone = false;  ///< leaves files of intensities, of which the whole is wanted, unread
};

/// A plane of a volume, as a picture of the two other axes in their order.
struct Plane {
    Image volume;  ///< without its samples
    int index;     ///< of the plane
    Image picture;
};

/// Whether a plane of a volume is to be read.
inline bool isWanted(const PlaneChoice& choice, const Image& volume) {
    return volume.isField || !choice.ofFieldsAlone;
}

/// The two axes of a plane, and how many planes there are.
std::array<std::size_t, 2> axesOfPlane(std::size_t axis);
int planesAcross(const Image& volume, std::size_t axis);

/// Makes a plane without samples; refuses an index that there is not.
Plane describePlane(const Image& volume, const PlaneChoice& choice);

/// Takes the samples of a plane from those of a volume, x fastest, wherever they are: read(first, count, out)
/// has to bring some that follow each other.
template <class Read>
void readPlaneBy(Plane& plane, std::size_t axis, Read read) {
    const auto width = static_cast<std::size_t>(plane.volume.width),
               height = static_cast<std::size_t>(plane.volume.height),
               depth = static_cast<std::size_t>(plane.volume.depth),
               at = static_cast<std::size_t>(plane.index), layer = width * height;
    double* const out = plane.picture.samples.data();
    if (axis == 2) return read(at * layer, layer, out);
    if (axis == 1) {
        for (std::size_t z = 0; z < depth; ++z) read(z * layer + at * width, width, out + z * width);
        return;
    }
    std::vector<double> samples(layer);
    for (std::size_t z = 0; z < depth; ++z) {
        read(z * layer, layer, samples.data());
        for (std::size_t y = 0; y < height; ++y) out[z * height + y] = samples[y * width + at];
    }
}

/// A plane of a volume that is in memory.
Plane planeOf(const Image& volume, const PlaneChoice& choice);

/// Samples that stand in a file as they are, x fastest.
struct ArrayInFile {
    std::size_t start;
    SampleType type;
    bool isBigEndian = false;
};

/// A plane of a volume that is described without samples. Nothing where the file is a stream or too short, of
/// which the reader of the whole knows what to say.
std::optional<Plane> planeOf(InputFile& file, const ArrayInFile& array, const Image& volume,
                             const PlaneChoice& choice);

}  // namespace quorbin::io
