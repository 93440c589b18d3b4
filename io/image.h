#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace quorbin::io {

inline constexpr long long kMostAlongAnAxis = 1 << 20;

/// Samples are within ± this, so that sums and squares of them are numbers too.
inline constexpr double kLargestSample = 1e150;

/// Where a file places index (x, y, z) in the world: three rows of a 3 × 4 matrix.
using Affine = std::array<std::array<double, 4>, 3>;

/// Where samples lie: the distance between neighbours along x, y and z, 1 where the file does not say, and
/// the matrix that places them, if the file has one.
struct Placement {
    std::array<double, 3> spacing = {1, 1, 1};
    std::optional<Affine> affine;
    int placeCode = 0, lengthUnit = 0;  ///< NIfTI's numbers for what the affine and the spacing are in
};

/// The content of a file: a picture, with rows from the top of the file, or a volume, x fastest, then y, then
/// z. Samples are grey values, or the values of a level set.
struct Image {
    std::string format;
    bool isVolume = false;
    int width = 0, height = 0, depth = 1;
    std::vector<double> samples;
    bool isField = false;
    Placement placement;
    std::vector<std::string> notes = {};  ///< what a user should know of the reading, each of one line
};

/// Sizes as the library takes them; anything else is refused. Makes room for the samples.
void setPictureSize(Image& image, long long width, long long height);
void setVolumeSize(Image& image, long long width, long long height, long long depth);

/// The same without room for samples.
void describePicture(Image& image, long long width, long long height);
void describeVolume(Image& image, long long width, long long height, long long depth);

/// Refuses sizes that make no volume.
void checkVolumeSize(long long width, long long height, long long depth);

/// How a file of samples without a header is laid out, little-endian; sizes from 1 to kMostAlongAnAxis.
struct RawLayout {
    std::array<long long, 3> size;
    std::string type;
};

/// Written into a file of a foreign format to say that it holds the values of a level set, not intensities.
inline constexpr char kFieldMark[] = "level set, inside <= 0";

}  // namespace quorbin::io
