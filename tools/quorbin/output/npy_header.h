#pragma once

#include <string>

#include <fmt/format.h>

/// The header of an NPY file of doubles in C order, with the shape as text.
inline std::string npyHeader(const std::string& shape) {
    std::string header = fmt::format("{{'descr': '<f8', 'fortran_order': False, 'shape': ({}), }}", shape);
    constexpr std::size_t kPreamble = 10, kAlignment = 64;
    header.append(kAlignment - (kPreamble + header.size() + 1) % kAlignment, ' ').append("\n");
    const char length[2] = {static_cast<char>(header.size() % 256), static_cast<char>(header.size() / 256)};
    return std::string("\x93NUMPY\x01\x00", 8) + std::string(length, sizeof length) + header;
}
