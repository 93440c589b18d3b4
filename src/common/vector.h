#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace lset::detail {

/// A point or direction in world units.
template <std::size_t dimensions>
using Vector = std::array<double, dimensions>;

template <std::size_t dimensions>
double dot(const Vector<dimensions>& a, const Vector<dimensions>& b) {
    double sum = a[0] * b[0];
    for (std::size_t i = 1; i < dimensions; ++i) sum += a[i] * b[i];
    return sum;
}

template <std::size_t dimensions>
double lengthOf(const Vector<dimensions>& a) {
    return std::sqrt(dot(a, a));
}

template <std::size_t dimensions>
Vector<dimensions> difference(const Vector<dimensions>& a, const Vector<dimensions>& b) {
    Vector<dimensions> result;
    for (std::size_t i = 0; i < dimensions; ++i) result[i] = a[i] - b[i];
    return result;
}

/// a + scale · b
template <std::size_t dimensions>
Vector<dimensions> sum(const Vector<dimensions>& a, double scale, const Vector<dimensions>& b) {
    Vector<dimensions> result;
    for (std::size_t i = 0; i < dimensions; ++i) result[i] = a[i] + scale * b[i];
    return result;
}

template <std::size_t dimensions>
Vector<dimensions> scaled(const Vector<dimensions>& a, double scale) {
    Vector<dimensions> result;
    for (std::size_t i = 0; i < dimensions; ++i) result[i] = scale * a[i];
    return result;
}

/// A grid point in world units.
template <std::size_t dimensions>
Vector<dimensions> worldOf(const std::array<int, dimensions>& p, const Vector<dimensions>& h) {
    Vector<dimensions> result;
    for (std::size_t i = 0; i < dimensions; ++i) result[i] = h[i] * p[i];
    return result;
}

/// A symmetric matrix.
template <std::size_t dimensions>
using Symmetric = std::array<std::array<double, dimensions>, dimensions>;

template <std::size_t dimensions>
Vector<dimensions> product(const Symmetric<dimensions>& m, const Vector<dimensions>& v) {
    Vector<dimensions> result;
    for (std::size_t i = 0; i < dimensions; ++i) result[i] = dot(m[i], v);
    return result;
}

}  // namespace lset::detail
