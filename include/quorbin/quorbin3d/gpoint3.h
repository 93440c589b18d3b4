#pragma once

#include <cstdint>

/// Three numbers: the vertex indices of a triangle, or the coordinates of a grid point. A gpoint3 also serves
/// hashed containers of them as hash and as equality.
struct gpoint3 {
    int first, second, third;

    bool operator==(const gpoint3& other) const {
        return first == other.first && second == other.second && third == other.third;
    }
    std::uint32_t operator()(const gpoint3& p) const {
        return (((static_cast<std::uint32_t>(p.third) << 6) + static_cast<std::uint32_t>(p.second)) << 6) +
               static_cast<std::uint32_t>(p.first);
    }
    bool operator()(const gpoint3& a, const gpoint3& b) const { return a == b; }
};
