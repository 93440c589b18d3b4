#include "arrays.h"

#include <algorithm>
#include <cmath>
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
    const auto isNone = [](double value) { return std::isnan(value); };
    while (begin != end) {
        const double* const stop = end - begin > kBlock ? begin + kBlock : end;
        const std::ptrdiff_t half = (stop - begin) / 2;
        long long found = 0;  // as wide as a value, so that the loop is vectorised; values go in pairs
        for (std::ptrdiff_t i = 0; i < half; ++i)
            found += std::isunordered(begin[i], begin[half + i]) ? 1 : 0;
        if (found > 0 || isNone(*(stop - 1))) return std::find_if(begin, stop, isNone);
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
