#pragma once

#include <cstdint>
#include <utility>

#include "../brin/vec.h"
#include "../quorbin_export.h"

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

/// Hash and equality of contour points. Equality allows 1e-6 in each coordinate; the hash, the low 32 bits of
/// the whole part of 1097 · (x + y), does not: equal points on different sides of a whole number have
/// different hashes.
struct QUORBIN_EXPORT vec2d_hash {
    std::uint32_t operator()(const brin::Vec2<double>& p) const;
    bool operator()(const brin::Vec2<double>& a, const brin::Vec2<double>& b) const;
};
