#include "quorbin2d/contour_hash.h"

#include <cmath>

// Not inline: a caller's own compiler flags might fuse the sum and so change its last bit.
std::uint32_t vec2d_hash::operator()(const brin::Vec2<double>& p) const {
    const double sum = p.x * 1097.0 + 1097.0 * p.y;
    const bool fits = std::abs(sum) < 0x1p63;
    return fits ? static_cast<std::uint32_t>(static_cast<std::int64_t>(sum)) : 0U;
}

bool vec2d_hash::operator()(const brin::Vec2<double>& a, const brin::Vec2<double>& b) const {
    return std::abs(a.x - b.x) <= 1e-6 && std::abs(a.y - b.y) <= 1e-6;
}
