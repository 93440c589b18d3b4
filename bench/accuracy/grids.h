#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <type_traits>

#include <quorbin.h>

#include "shapes.h"

namespace accuracy {

inline constexpr int dimensions(const FullLevelSet2D&) { return 2; }
inline constexpr int dimensions(const FullLevelSet3D&) { return 3; }

/// Calls visit(value, place) for each sample, in the order in which they lie.
template <class Visit>
void visitSamples(FullLevelSet2D& grid, Visit&& visit) {
    double* value = grid.data();
    for (int y = 0; y < grid.getHeight(); ++y)
        for (int x = 0; x < grid.getWidth(); ++x)
            visit(*value++, Point{x * grid.getXSpace(), y * grid.getYSpace(), 0});
}
template <class Visit>
void visitSamples(FullLevelSet3D& grid, Visit&& visit) {
    double* value = grid.data();
    for (int z = 0; z < grid.getDepth(); ++z)
        for (int y = 0; y < grid.getHeight(); ++y)
            for (int x = 0; x < grid.getWidth(); ++x)
                visit(*value++, Point{x * grid.getXSpace(), y * grid.getYSpace(), z * grid.getZSpace()});
}

/// A grid over n world units an axis, with a spacing of 1, but stretch along the last axis.
inline void setUp(FullLevelSet2D& grid, int n, double stretch) {
    grid.init(n, static_cast<int>(n / stretch), 1, stretch);
}
inline void setUp(FullLevelSet3D& grid, int n, double stretch) {
    grid.init(n, n, static_cast<int>(n / stretch), 1, 1, stretch);
}

template <class Grid>
Grid gridOf(const Shape& shape, int n, double stretch = 1) {
    Grid grid;
    setUp(grid, n, stretch);
    visitSamples(grid, [&](double& value, const Point& place) { value = shape(place); });
    return grid;
}

/// Grids are copied by assignment only.
template <class LevelSet>
LevelSet copyOf(const LevelSet& levelSet) {
    LevelSet copy;
    copy = levelSet;
    return copy;
}

/// Area within the closed contours, or volume within the closed mesh.
template <class LevelSet>
double enclosed(const LevelSet& levelSet) {
    if constexpr (std::is_base_of_v<LevelSet2D, LevelSet>) {
        double sum = 0;
        for (const quorbin::Polygon& region : quorbin::contours(levelSet)) sum += quorbin::area(region);
        return sum;
    } else {
        return quorbin::enclosedVolume(quorbin::mesh(levelSet));
    }
}

/// Calls visit(i, x, y[, z]) for each sample, i counting them as they lie.
template <class Visit>
void visitIndices(const FullLevelSet2D& grid, Visit&& visit) {
    std::ptrdiff_t i = 0;
    for (int y = 0; y < grid.getHeight(); ++y)
        for (int x = 0; x < grid.getWidth(); ++x) visit(i++, x, y);
}
template <class Visit>
void visitIndices(const FullLevelSet3D& grid, Visit&& visit) {
    std::ptrdiff_t i = 0;
    for (int z = 0; z < grid.getDepth(); ++z)
        for (int y = 0; y < grid.getHeight(); ++y)
            for (int x = 0; x < grid.getWidth(); ++x) visit(i++, x, y, z);
}

/// Calls visit(x, y[, z]) for the samples around one, itself included, up to two away along each axis.
template <class Visit>
void visitAround(const FullLevelSet2D& grid, Visit&& visit, int x, int y) {
    for (int v = std::max(y - 2, 0); v <= std::min(y + 2, grid.getHeight() - 1); ++v)
        for (int u = std::max(x - 2, 0); u <= std::min(x + 2, grid.getWidth() - 1); ++u) visit(u, v);
}
template <class Visit>
void visitAround(const FullLevelSet3D& grid, Visit&& visit, int x, int y, int z) {
    for (int w = std::max(z - 2, 0); w <= std::min(z + 2, grid.getDepth() - 1); ++w)
        for (int v = std::max(y - 2, 0); v <= std::min(y + 2, grid.getHeight() - 1); ++v)
            for (int u = std::max(x - 2, 0); u <= std::min(x + 2, grid.getWidth() - 1); ++u) visit(u, v, w);
}

/// A band with the corners of the cells that the interface crosses and all finite samples within two of them,
/// so that cubics through four samples an axis have what they need.
template <class Grid>
auto wideBandOf(const Grid& grid) {
    auto band = quorbin::bandOf(grid, false);
    const auto cells = band;
    const auto add = [&](auto... at) {
        if (std::isfinite(grid.get(at...))) band(at...) = grid.get(at...);
    };
    visitIndices(grid, [&](std::ptrdiff_t, auto... at) {
        if (cells.have(at...)) visitAround(grid, add, at...);
    });
    return band;
}

/// Puts the values of a band into the grid. Samples that are not stored become infinite, on the side of the
/// last stored one before them in their row, and outside where there is none.
template <class Grid, class Band>
void writeBack(const Band& band, Grid& grid) {
    double side = 1;
    visitIndices(grid, [&](std::ptrdiff_t i, int x, auto... others) {
        if (x == 0) side = 1;
        const bool isStored = band.have(x, others...);
        if (isStored) side = band.get(x, others...) <= 0 ? -1 : 1;
        grid.data()[i] = isStored ? band.get(x, others...) : side * HUGE_VAL;
    });
}

/// The longest stable explicit step of curvature flow.
inline double stepLimit(const FullLevelSet2D& grid) {
    return 1 / (2 / std::pow(grid.getXSpace(), 2) + 2 / std::pow(grid.getYSpace(), 2));
}
inline double stepLimit(const FullLevelSet3D& grid) {
    return 1 / (2 / std::pow(grid.getXSpace(), 2) + 2 / std::pow(grid.getYSpace(), 2) +
                2 / std::pow(grid.getZSpace(), 2));
}

}  // namespace accuracy
