#pragma once

#include <array>
#include <cstddef>
#include <tuple>

#include "common/stepped.h"

/// Difference formulas on a band of any number of dimensions, read through its slot get. A band has no edge
/// at which a difference would become another. The first operand is read first.
namespace lset::detail {

template <std::size_t dimensions>
using BandPoint = std::array<int, dimensions>;

template <class Band, std::size_t dimensions>
double valueAt(const Band& band, const BandPoint<dimensions>& p) {
    return std::apply([&](auto... c) { return band.get(c...); }, p);
}

template <std::size_t axis, class Band, std::size_t dimensions>
double valueBeside(const Band& band, BandPoint<dimensions> p, int by) {
    p[axis] = stepped(p[axis], by);
    return valueAt(band, p);
}

template <std::size_t axis, class Band, std::size_t dimensions>
double backward(const Band& band, const BandPoint<dimensions>& p, double h) {
    const double here = valueAt(band, p);
    const double before = valueBeside<axis>(band, p, -1);
    return (here - before) / h;
}

template <std::size_t axis, class Band, std::size_t dimensions>
double forward(const Band& band, const BandPoint<dimensions>& p, double h) {
    const double after = valueBeside<axis>(band, p, 1);
    const double here = valueAt(band, p);
    return (after - here) / h;
}

template <std::size_t axis, class Band, std::size_t dimensions>
double central(const Band& band, const BandPoint<dimensions>& p, double h) {
    const double after = valueBeside<axis>(band, p, 1);
    const double before = valueBeside<axis>(band, p, -1);
    return (after - before) / (h + h);
}

/// The value of a point and those after and before it along each axis, read in this order.
template <std::size_t dimensions>
struct BandCross {
    double here;
    std::array<double, 2 * dimensions> beside;

    /// The one-sided difference along an axis: backward for a speed > 0, forward for any other.
    double upwind(std::size_t axis, double speed, double h) const {
        return (speed > 0.0 ? here - beside[2 * axis + 1] : beside[2 * axis] - here) / h;
    }
};

template <std::size_t axis = 0, class Band, std::size_t dimensions>
void readBeside(const Band& band, const BandPoint<dimensions>& p,
                std::array<double, 2 * dimensions>& beside) {
    beside[2 * axis] = valueBeside<axis>(band, p, 1);
    beside[2 * axis + 1] = valueBeside<axis>(band, p, -1);
    if constexpr (axis + 1 < dimensions) readBeside<axis + 1>(band, p, beside);
}

template <class Band, std::size_t dimensions>
BandCross<dimensions> readCross(const Band& band, const BandPoint<dimensions>& p) {
    BandCross<dimensions> cross{};
    cross.here = valueAt(band, p);
    readBeside(band, p, cross.beside);
    return cross;
}

/// The sum of the terms along all axes but x, added to that.
template <std::size_t dimensions>
double addAcross(double sum, const BandCross<dimensions>& cross, const std::array<double, dimensions>& h) {
    const double minusTwice = cross.here * -2.0;
    for (std::size_t axis = 1; axis < dimensions; ++axis)
        sum =
            sum + ((minusTwice + cross.beside[2 * axis]) + cross.beside[2 * axis + 1]) / (h[axis] * h[axis]);
    return sum;
}

/// The Laplacian of getCurvature, whose x term begins with the value after the point.
template <std::size_t dimensions>
double laplacian(const BandCross<dimensions>& cross, const std::array<double, dimensions>& h) {
    const double minusTwice = cross.here * -2.0;
    return addAcross(((cross.beside[0] + minusTwice) + cross.beside[1]) / (h[0] * h[0]), cross, h);
}

/// The Laplacian of getCurvatureAndUpwind, whose x term begins with the value before the point: the last bit
/// may differ.
template <std::size_t dimensions>
double laplacianFromBefore(const BandCross<dimensions>& cross, const std::array<double, dimensions>& h) {
    const double minusTwice = cross.here * -2.0;
    return addAcross(((cross.beside[1] + minusTwice) + cross.beside[0]) / (h[0] * h[0]), cross, h);
}

}  // namespace lset::detail
