#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "formats/readers.h"

inline constexpr long long kMostAlongAnAxis = 1 << 20;

/// Where a file places index (x, y, z) in the world: three rows of a 3 × 4 matrix.
using Affine = std::array<std::array<double, 4>, 3>;

/// The content of a volume file, x fastest, then y, then z. Samples are intensities, or the values of a level
/// set.
struct Volume {
    std::string format;
    int width = 0, height = 0, depth = 0;
    std::vector<double> samples;
    bool isField = false;
    std::array<double, 3> spacing = {1, 1, 1};
    std::optional<Affine> affine;
    int placeCode = 0, lengthUnit = 0;  ///< NIfTI's numbers for what the affine and the spacing are in
};

/// How a file of samples without a header is laid out, little-endian; sizes from 1 to kMostAlongAnAxis.
struct RawLayout {
    std::array<long long, 3> size;
    std::string type;
};

/// Whether a file's content is that of a volume format.
bool isVolume(const std::string& path);

/// Reads NIfTI (.nii, .nii.gz), FL3D, FR3D, a 3D NPY file or a TIFF stack, which the content tells, or
/// samples laid out as given. Whatever is wrong is a Failure that names the file.
Volume readVolume(const std::string& path, const std::optional<RawLayout>& raw);

/// Written into a file of a foreign format to say that it holds the values of a level set, not intensities.
inline constexpr char kFieldMark[] = "level set, inside <= 0";

Volume readNifti(const std::string& path);
Volume readTiff(const Bytes& bytes);
bool isTiff(const Bytes& bytes);
int tiffPages(const Bytes& bytes);

/// Refuses sizes that make no volume.
void checkSize(long long width, long long height, long long depth);

/// Sizes of a volume as the library takes them; anything else is refused.
void setSize(Volume& volume, long long width, long long height, long long depth);
