#pragma once

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "sample_types.h"

namespace quorbin::io {

/// How the values of a field are written: as they are, as float32, or one byte a point, one number inside
/// and 0 outside.
struct SampleOutput {
    bool isFloat = false;
    std::uint8_t inside = 0;  ///< of a mask; 0: a field

    bool isMask() const { return inside != 0; }
    SampleType type() const {
        if (isMask()) return {'u', 1};
        return {'f', isFloat ? sizeof(float) : sizeof(double)};
    }
};

/// The nearest float32 that is finite and on the same side of the outline.
inline float asFloat(double value) {
    const auto nearest = static_cast<float>(std::clamp<double>(value, -FLT_MAX, FLT_MAX));
    return value > 0 && nearest <= 0 ? FLT_TRUE_MIN : nearest;
}

/// Hands the bytes of count values to send(bytes, size), block by block.
template <class Send>
void sendSamples(const SampleOutput& output, const double* values, std::size_t count, Send send) {
    constexpr std::size_t kBlock = 1 << 14;
    std::array<float, kBlock> floats;
    std::array<std::uint8_t, kBlock> bytes;
    for (std::size_t at = 0; at < count; at += kBlock) {
        const std::size_t some = std::min(kBlock, count - at);
        const double* const from = values + at;
        if (output.isMask()) {
            std::transform(from, from + some, bytes.data(),
                           [&](double v) { return v <= 0 ? output.inside : std::uint8_t{0}; });
            send(bytes.data(), some);
        } else if (output.isFloat) {
            std::transform(from, from + some, floats.data(), asFloat);
            send(floats.data(), some * sizeof(float));
        } else {
            send(from, some * sizeof(double));
        }
    }
}

}  // namespace quorbin::io
