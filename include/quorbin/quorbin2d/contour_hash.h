#pragma once

#include <cstdint>
#include <utility>

#include "../brin/vec.h"
#include "../quorbin_export.h"

/// Hash of a pair of ints, such as a grid point or a segment, for hashed containers.
struct hash_pair {
    std::uint32_t operator()(const std::pair<int, int>& p) const {
        return (static_cast<std::uint32_t>(p.second) << 11) + static_cast<std::uint32_t>(p.first);
    }
};

/// Equality of pairs of ints, for hashed containers.
struct MyEqual {
    bool operator()(const std::pair<int, int>& a, const std::pair<int, int>& b) const {
        return a.first == b.first && a.second == b.second;
    }
};

/// Hash and equality of contour points, for hashed containers. Points are equal if they differ by at most
/// 1e-6 in each coordinate. The hash is the low 32 bits of 1097 · (x + y) without its fraction, so that two
/// equal points have different hashes where a whole number lies between their 1097 · (x + y).
struct QUORBIN_EXPORT vec2d_hash {
    std::uint32_t operator()(const brin::Vec2<double>& p) const;
    bool operator()(const brin::Vec2<double>& a, const brin::Vec2<double>& b) const;
};
