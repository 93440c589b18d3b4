#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "brin/vec.h"
#include "common/messages.h"

namespace lset::detail {

using Vec3 = brin::Vec3<double>;

/// The vector at unit length; kept where it is one, and 0 where it is too short or not a number.
inline Vec3 unit(const Vec3& v) {
    const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    if (std::abs(length - 1) < 1e-14) return v;
    if (length > 1e-14) return {v.x / length, v.y / length, v.z / length};
    return {0, 0, 0};
}

/// The unit gradient at a grid point.
template <class Reader>
Vec3 unitGradient(const Reader& field, int x, int y, int z) {
    const double dz = field.dzCentral(x, y, z);
    const double dy = field.dyCentral(x, y, z);
    const double dx = field.dxCentral(x, y, z);
    return unit({dx, dy, dz});
}

/// A grid point in whole numbers.
struct GridPoint3D {
    int x, y, z;
};

/// Where the straight line from p (value a) to q (value b) is zero, and, unless normal is null, the mean of
/// the gradients that gradientAt gives for the two. See LevelSet3D::getPoint.
template <class GradientAt>
Vec3 zeroCrossing(const GridPoint3D& p, double a, const GridPoint3D& q, double b, Vec3* normal,
                  GradientAt&& gradientAt) {
    if (a <= 0 && b <= 0) std::printf(messages::kErroneousPoint, a, b);
    if (std::abs(b - a) < 1e-16) return {0.5 * p.x + 0.5 * q.x, 0.5 * p.y + 0.5 * q.y, 0.5 * p.z + 0.5 * q.z};
    const double t = -a / (b - a);
    if (normal != nullptr) {
        const Vec3 atP = gradientAt(p);
        const Vec3 atQ = gradientAt(q);
        *normal = {(1 - t) * atP.x + t * atQ.x, (1 - t) * atP.y + t * atQ.y, (1 - t) * atP.z + t * atQ.z};
    }
    return {(1 - t) * p.x + t * q.x, (1 - t) * p.y + t * q.y, (1 - t) * p.z + t * q.z};
}

/// A vertex of the surface with its unit normal.
struct Crossing {
    Vec3 vertex, normal;
};

/// The crossings of the edges of one cell, each formed when it is first asked for.
class CellCrossings3D {
 public:
    void clear() { known_ = 0; }

    /// make(edge) forms one.
    template <class Make>
    const Crossing& at(int edge, Make make) {
        Crossing& crossing = crossings_[static_cast<std::size_t>(edge)];
        if ((known_ >> edge & 1U) == 0) {
            known_ |= 1U << edge;
            crossing = make(edge);
        }
        return crossing;
    }

 private:
    unsigned known_ = 0;
    std::array<Crossing, 12> crossings_;
};

}  // namespace lset::detail
