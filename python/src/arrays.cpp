#include "arrays.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

#include <fmt/core.h>

namespace quorbin::python {

namespace {

/// Squares and cubes of what lies between are numbers, and so are distances and times.
constexpr double kLeastSpacing = 1e-100, kLargestSpacing = 1e100;

std::string indexOf(const Values& values, std::size_t place) {
    std::string text;
    for (std::size_t axis = values.ndim(); axis-- > 0;) {
        const std::size_t size = values.shape(axis);
        text = std::to_string(place % size) + (text.empty() ? "" : ", ") + text;
        place /= size;
    }
    return "[" + text + "]";
}

/// By the bits, of which those of infinity are the largest that are a number's: compilers make vectors of
/// integers of this, and none of comparisons.
bool hasNotANumber(const double* begin, const double* end) {
    constexpr std::uint64_t kInfinity = 0x7ff0000000000000, kMagnitude = 0x7fffffffffffffff;
    std::uint64_t differences = 0;
    for (const double* p = begin; p != end; ++p) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, p, sizeof bits);
        differences |= kInfinity - (bits & kMagnitude);
    }
    return (differences & ~kMagnitude) != 0;
}

}  // namespace

Lattice latticeOf(const Values& values, const Spacing& spacing) {
    const std::size_t axes = values.ndim();
    if (axes != 2 && axes != 3)
        throw std::invalid_argument(fmt::format(
            "the field has {} ax{}; it must have 2, (y, x), or 3, (z, y, x)", axes, axes == 1 ? "is" : "es"));
    if (spacing.size() != 1 && spacing.size() != axes)
        throw std::invalid_argument(fmt::format(
            "spacing has {} values; give one number, or {} in the order of the axes", spacing.size(), axes));
    Lattice lattice;
    lattice.isVolume = axes == 3;
    for (std::size_t axis = 0; axis < axes; ++axis) {
        const std::size_t size = values.shape(axes - 1 - axis);
        if (size > static_cast<std::size_t>(std::numeric_limits<int>::max()))
            throw std::invalid_argument("the field has more than 2147483647 samples along an axis");
        const double h = spacing[spacing.size() == 1 ? 0 : axes - 1 - axis];
        if (!(h >= kLeastSpacing && h <= kLargestSpacing))
            throw std::invalid_argument(fmt::format("spacing is {}; it must be positive, from {} to {}", h,
                                                    kLeastSpacing, kLargestSpacing));
        lattice.size[axis] = static_cast<int>(size);
        lattice.spacing[axis] = h;
        lattice.points *= size;
    }
    return lattice;
}

const double* firstNotANumber(const double* begin, const double* end) {
    constexpr std::ptrdiff_t kBlock = 1024;  // since a loop that may stop anywhere is a slow one
    while (begin != end) {
        const double* const stop = end - begin > kBlock ? begin + kBlock : end;
        if (hasNotANumber(begin, stop))
            return std::find_if(begin, stop, [](double value) { return std::isnan(value); });
        begin = stop;
    }
    return end;
}

void checkNumbers(const Values& values, bool nanIsOutside) {
    if (nanIsOutside) return;
    const double* const end = values.data() + values.size();
    const double* const found = [&] {
        const nb::gil_scoped_release unlocked;
        return firstNotANumber(values.data(), end);
    }();
    if (found != end) throwNotANumber(values, static_cast<std::size_t>(found - values.data()));
}

void throwNotANumber(const Values& values, std::size_t place) {
    throw std::invalid_argument(fmt::format(
        "the value at {} is not a number; replace it, or take such values for outside by nan=\"outside\"",
        indexOf(values, place)));
}

void requireInterface(const Values& values) {
    const double* const begin = values.data();
    const double* const end = begin + values.size();
    if (begin == end) throw NoInterface("the field is empty");
    const bool isInside = *begin <= 0;
    const bool isOneSided = [&] {
        const nb::gil_scoped_release unlocked;
        return std::all_of(begin, end, [=](double value) { return (value <= 0) == isInside; });
    }();
    if (isOneSided)
        throw NoInterface(
            fmt::format("the field has no interface: all of its values are {}", isInside ? "≤ 0" : "> 0"));
}

void requireField(const Values& values, const Spacing& spacing, bool nanIsOutside) {
    latticeOf(values, spacing);
    checkNumbers(values, nanIsOutside);
    requireInterface(values);
}

}  // namespace quorbin::python
