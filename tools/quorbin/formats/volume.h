#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

/// The content of a volume file, x fastest, then y, then z. Samples are intensities, or the values of a level set.
struct Volume {
    std::string format;
    int width = 0, height = 0, depth = 0;
    std::vector<double> samples;
    bool isField = false;
    std::array<double, 3> spacing = {1, 1, 1};
    /// Where the file places index (x, y, z) in the world: three rows of a 3 × 4 matrix.
    std::optional<std::array<std::array<double, 4>, 3>> affine;
};

/// Reads NIfTI (.nii, .nii.gz), FL3D, FR3D or a 3D NPY file; the content tells which. Whatever is wrong is a Failure that names
/// the file.
Volume readVolume(const std::string& path);
