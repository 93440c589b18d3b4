#pragma once

#include <algorithm>
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

/// Calls use(sample) with a sample of the type, to tell it; false for types that there are not.
template <class Use>
bool withSampleType(const SampleType& type, Use use) {
    const auto is = [&](char kind, std::size_t size) { return type.kind == kind && type.size == size; };
    if (is('f', 8)) return use(double()), true;
    if (is('f', 4)) return use(float()), true;
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
