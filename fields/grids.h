#pragma once

#include <array>

#include <quorbin.h>

#include "../io/failure.h"

/// Pictures and volumes by the same names: along z a picture has one point, at spacing 1.
namespace quorbin::fields {

inline std::array<int, 3> sizeOf(const FullLevelSet2D& grid) {
    return {grid.getWidth(), grid.getHeight(), 1};
}
inline std::array<int, 3> sizeOf(const FullLevelSet3D& grid) {
    return {grid.getWidth(), grid.getHeight(), grid.getDepth()};
}
inline std::array<double, 3> spacingOf(const FullLevelSet2D& grid) {
    return {grid.getXSpace(), grid.getYSpace(), 1};
}
inline std::array<double, 3> spacingOf(const FullLevelSet3D& grid) {
    return {grid.getXSpace(), grid.getYSpace(), grid.getZSpace()};
}

/// Makes room for a grid; throws Failure where there is none.
inline void initGrid(FullLevelSet2D& grid, const std::array<int, 3>& size,
                     const std::array<double, 3>& spacing) {
    grid.init(size[0], size[1], spacing[0], spacing[1]);
    if (sizeOf(grid) != std::array{size[0], size[1], 1})
        throw io::Failure(
            io::kFailed, fmt::format("a field of {} × {} points does not fit into memory", size[0], size[1]));
}
inline void initGrid(FullLevelSet3D& grid, const std::array<int, 3>& size,
                     const std::array<double, 3>& spacing) {
    grid.init(size[0], size[1], size[2], spacing[0], spacing[1], spacing[2]);
    if (sizeOf(grid) != size)
        throw io::Failure(io::kFailed, fmt::format("a field of {} × {} × {} points does not fit into memory",
                                                   size[0], size[1], size[2]));
}

}  // namespace quorbin::fields
