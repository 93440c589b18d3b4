#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#include "../brin/vec.h"

/// Hash of a pair of ints, for grid points and segments.
struct hash_pair {
    std::uint32_t operator()(const std::pair<int, int>& p) const {
        return (static_cast<std::uint32_t>(p.second) << 11) + static_cast<std::uint32_t>(p.first);
    }
};

/// Equality of pairs of ints.
struct MyEqual {
    bool operator()(const std::pair<int, int>& a, const std::pair<int, int>& b) const {
        return a.first == b.first && a.second == b.second;
    }
};

/// Hash and equality of contour points. Equality allows 1e-6 in each coordinate; the hash, the whole part of
/// 1097 · (x + y), does not: equal points on different sides of a whole number have different hashes.
struct vec2d_hash {
    std::uint32_t operator()(const brin::Vec2<double>& p) const {
        const double sum = p.x * 1097.0 + 1097.0 * p.y;
        const bool fits = std::abs(sum) < 9.2e18;
        return fits ? static_cast<std::uint32_t>(static_cast<std::int64_t>(sum)) : 0U;
    }
    bool operator()(const brin::Vec2<double>& a, const brin::Vec2<double>& b) const {
        return std::abs(a.x - b.x) <= 1e-6 && std::abs(a.y - b.y) <= 1e-6;
    }
};
