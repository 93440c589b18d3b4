#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include <nanobind/ndarray.h>
#include <quorbin.h>

namespace quorbin::python {

namespace nb = nanobind;

/// Arrays of NumPy in C order, with the axes (y, x) or (z, y, x). Python has made them so before.
using Values = nb::ndarray<const double, nb::c_contig, nb::device::cpu>;
using Result = nb::ndarray<double, nb::c_contig, nb::device::cpu>;

/// Distances between neighbours in the order of the axes.
using Spacing = std::vector<double>;

/// What is thrown for a field that has no value ≤ 0, or none above.
using quorbin::NoInterface;

/// How many samples there are along x, y and z; 1 along the z of a picture. Throws std::invalid_argument for
/// other than two or three axes.
struct Lattice {
    std::array<int, 3> size = {1, 1, 1};
    std::array<double, 3> spacing = {1, 1, 1};
    bool isVolume = false;
    std::size_t points = 1;
};
Lattice latticeOf(const Values& values, const Spacing& spacing);

/// Throws std::invalid_argument, naming the index of the first, where a value is not a number and may not be.
void checkNumbers(const Values& values, bool nanIsOutside);

/// The first value that is not a number, or end.
const double* firstNotANumber(const double* begin, const double* end);

/// Throws as checkNumbers does of the value at a place in memory.
[[noreturn]] void throwNotANumber(const Values& values, std::size_t place);

/// Throws NoInterface where all values are on one side.
void requireInterface(const Values& values);

/// All three, before anything is written: the axes and spacings, the numbers, the interface.
void requireField(const Values& values, const Spacing& spacing, bool nanIsOutside);

/// Calls body(grid) with a grid over the values, which it may read.
template <class Body>
decltype(auto) readGrid(const Values& values, const Spacing& spacing, Body body) {
    const auto [n, h, isVolume, points] = latticeOf(values, spacing);
    if (isVolume) {
        const FullLevelSet3D grid = gridOver(values.data(), n[0], n[1], n[2], h[0], h[1], h[2]);
        return body(grid);
    }
    const FullLevelSet2D grid = gridOver(values.data(), n[0], n[1], h[0], h[1]);
    return body(grid);
}

/// Calls body(a, b) with grids over two arrays of the same shape, which it may read.
template <class Body>
decltype(auto) readGrids(const Values& a, const Values& b, const Spacing& spacing, Body body) {
    const auto [n, h, isVolume, points] = latticeOf(a, spacing);
    if (isVolume) {
        const FullLevelSet3D first = gridOver(a.data(), n[0], n[1], n[2], h[0], h[1], h[2]);
        const FullLevelSet3D second = gridOver(b.data(), n[0], n[1], n[2], h[0], h[1], h[2]);
        return body(first, second);
    }
    const FullLevelSet2D first = gridOver(a.data(), n[0], n[1], h[0], h[1]);
    const FullLevelSet2D second = gridOver(b.data(), n[0], n[1], h[0], h[1]);
    return body(first, second);
}

/// Copies values into result, unless they are the same, and calls body(grid) with a grid over the result.
template <class Body>
decltype(auto) changeGrid(const Values& values, const Result& result, const Spacing& spacing, Body body) {
    const auto [n, h, isVolume, points] = latticeOf(values, spacing);
    if (points > 0 && result.data() != values.data()) {
        const nb::gil_scoped_release unlocked;
        std::copy_n(values.data(), points, result.data());
    }
    if (isVolume) {
        FullLevelSet3D grid = gridOver(result.data(), n[0], n[1], n[2], h[0], h[1], h[2]);
        return body(grid);
    }
    FullLevelSet2D grid = gridOver(result.data(), n[0], n[1], h[0], h[1]);
    return body(grid);
}

/// A NumPy array over the memory of what it takes over: a vector, or a grid.
template <class Value, class Owner>
nb::ndarray<nb::numpy, Value> arrayOver(Owner&& values, const std::vector<std::size_t>& shape) {
    auto* const kept = new Owner(std::move(values));
    const nb::capsule owner(kept, [](void* p) noexcept { delete static_cast<Owner*>(p); });
    return nb::ndarray<nb::numpy, Value>(kept->data(), shape.size(), shape.data(), owner);
}
template <class Value>
nb::ndarray<nb::numpy, Value> arrayOf(std::vector<Value>&& values, const std::vector<std::size_t>& shape) {
    return arrayOver<Value>(std::move(values), shape);
}
inline nb::ndarray<nb::numpy, double> arrayOf(FullLevelSet2D&& grid) {
    const auto height = static_cast<std::size_t>(grid.getHeight());
    const auto width = static_cast<std::size_t>(grid.getWidth());
    return arrayOver<double>(std::move(grid), {height, width});
}
inline nb::ndarray<nb::numpy, double> arrayOf(FullLevelSet3D&& grid) {
    const auto depth = static_cast<std::size_t>(grid.getDepth());
    const auto height = static_cast<std::size_t>(grid.getHeight());
    const auto width = static_cast<std::size_t>(grid.getWidth());
    return arrayOver<double>(std::move(grid), {depth, height, width});
}

/// Points in the order of the axes.
inline nb::tuple inAxisOrder(const brin::Vec2<double>& p) { return nb::make_tuple(p.y, p.x); }
inline nb::tuple inAxisOrder(const brin::Vec3<double>& p) { return nb::make_tuple(p.z, p.y, p.x); }
inline nb::tuple inAxisOrder(const brin::Vec2<int>& p) { return nb::make_tuple(p.y, p.x); }
inline nb::tuple inAxisOrder(const brin::Vec3<int>& p) { return nb::make_tuple(p.z, p.y, p.x); }

}  // namespace quorbin::python
