#pragma once

#include <array>
#include <vector>

#include <quorbin.h>

#include "../io/image.h"

namespace quorbin::fields {

/// A part of a grid by indices along x, y and z: from is its first point, to lies one beyond its last. A
/// picture has the one index 0 along z.
struct Crop {
    std::array<int, 3> from = {0, 0, 0}, to = {1, 1, 1};
};

/// Leaves the part alone. Refuses one that is empty or reaches beyond the grid. Points of a volume stay where
/// they are in the world; those of a picture, whose files have no place for its origin, count from the corner
/// of the part.
void crop(FullLevelSet2D& field, const Crop& part);
void crop(FullLevelSet3D& field, const Crop& part, io::Placement& placement);

/// The same of samples, which are as many as a grid's of this size.
std::vector<double> cropped(const std::vector<double>& samples, const std::array<int, 3>& size,
                            const Crop& part);

}  // namespace quorbin::fields
