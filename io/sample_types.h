#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace quorbin::io {

/// A type of samples by its kind ('f' floating point, 'u' and 'i' integers, 'b' truth values) and its size in
/// bytes.
struct SampleType {
    char kind;
    std::size_t size;

    bool isFloatingPoint() const { return kind == 'f'; }
};

/// A number of IEEE 754's binary16.
struct Half {
    std::uint16_t bits;

    explicit operator double() const {
        const int exponent = bits >> 10 & 31, fraction = bits & 1023;
        const double size = exponent == 31  ? (fraction == 0 ? HUGE_VAL : std::nan(""))
                            : exponent == 0 ? std::ldexp(fraction, -24)
                                            : std::ldexp(fraction + 1024, exponent - 25);
        return bits >> 15 != 0 ? -size : size;
    }
};

/// Calls use(sample) with a sample of the type, to tell it; false for types that there are not.
template <class Use>
bool withSampleType(const SampleType& type, Use use) {
    const auto is = [&](char kind, std::size_t size) { return type.kind == kind && type.size == size; };
    if (is('f', 8)) return use(double()), true;
    if (is('f', 4)) return use(float()), true;
    if (is('f', 2)) return use(Half()), true;
    if (is('u', 1) || is('b', 1)) return use(std::uint8_t()), true;
    if (is('u', 2)) return use(std::uint16_t()), true;
    if (is('u', 4)) return use(std::uint32_t()), true;
    if (is('u', 8)) return use(std::uint64_t()), true;
    if (is('i', 1)) return use(std::int8_t()), true;
    if (is('i', 2)) return use(std::int16_t()), true;
    if (is('i', 4)) return use(std::int32_t()), true;
    if (is('i', 8)) return use(std::int64_t()), true;
    return false;
}

/// Writes count samples of the machine's byte order to out. False for types that there are not.
inline bool decodeSamples(const SampleType& type, const void* bytes, std::size_t count, double* out) {
    return withSampleType(type, [&](auto sample) {
        const auto* from = static_cast<const unsigned char*>(bytes);
        for (std::size_t i = 0; i < count; ++i) {
            std::memcpy(&sample, from + i * sizeof sample, sizeof sample);
            out[i] = static_cast<double>(sample);
        }
    });
}

}  // namespace quorbin::io
