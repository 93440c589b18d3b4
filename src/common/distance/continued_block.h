#pragma once

#include <cstddef>
#include <cstdint>

namespace lset::detail {

constexpr unsigned kBlockSide = 4;

/// Axes along which a sample of a block is at its outside, as bits.
template <std::size_t dimensions>
unsigned outerAxes(unsigned sample) {
    unsigned axes = 0;
    for (std::size_t axis = 0; axis < dimensions; ++axis) {
        const unsigned c = sample >> (2 * axis) & (kBlockSide - 1);
        if (c == 0 || c == kBlockSide - 1) axes |= 1U << axis;
    }
    return axes;
}

/// Sets the samples of a block of four an axis (see LocalInterpolant) that are missing, as bits: continues
/// the field from the middle along straight lines, first along one axis, then where it takes two, and so
/// on. False if one in the middle is missing.
template <std::size_t dimensions, class Samples>
bool continueInto(std::uint64_t missing, Samples& samples) {
    for (int outer = 0; outer <= static_cast<int>(dimensions); ++outer)
        for (std::uint64_t left = missing; left != 0; left &= left - 1) {
            const auto i = static_cast<unsigned>(__builtin_ctzll(left));
            const unsigned axes = outerAxes<dimensions>(i);
            if (__builtin_popcount(axes) != outer) continue;
            if (outer == 0) return false;
            double sum = 0;
            for (std::size_t axis = 0; axis < dimensions; ++axis) {
                if ((axes >> axis & 1) == 0) continue;
                const unsigned stride = 1U << (2 * axis);
                const bool isFirst = (i >> (2 * axis) & (kBlockSide - 1)) == 0;
                const unsigned next = isFirst ? i + stride : i - stride;
                const unsigned afterNext = isFirst ? next + stride : next - stride;
                sum += 2 * samples[next] - samples[afterNext];
            }
            samples[i] = sum / outer;
        }
    return true;
}

}  // namespace lset::detail
