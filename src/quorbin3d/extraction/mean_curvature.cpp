#include "quorbin3d/extraction/mean_curvature.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <tuple>
#include <vector>

namespace lset::detail {

namespace {

using Vec3 = brin::Vec3<double>;

/// The arc whose tangent is t ≥ 0, the same by every mathematical library: halved until the series is short.
double arcTangent(double t) {
    double scale = 1;
    for (; t > 0.1; scale *= 2) t = t / (1 + std::sqrt(1 + t * t));
    const double square = t * t;
    double sum = 0;
    for (int power = 15; power > 0; power -= 2) sum = 1.0 / power - square * sum;
    return scale * t * sum;
}

/// The angle between two vectors of length 1.
double angleBetween(const Vec3& a, const Vec3& b) {
    constexpr double kHalfTurn = 3.141592653589793;
    const Vec3 difference = a - b, sum = a + b;
    const double across = dot(difference, difference), along = dot(sum, sum);
    return along > 1e-24 ? 2 * arcTangent(std::sqrt(across / along)) : kHalfTurn;
}

/// Vertices without those that lie together: a place in whole millionths of the spacings for each, and which
/// of the places is that of a vertex.
struct Places {
    std::vector<Vec3> places;
    std::vector<int> ofVertex;

    Places(const std::vector<Vec3>& vertices, const Vec3& h, const Stretch& stretch) {
        constexpr double kParts = 1e6;
        std::vector<Vec3> all;
        for (const Vec3& v : vertices) {
            Vec3 p;
            for (int axis = 0; axis < 3; ++axis) p[axis] = std::floor(v[axis] / h[axis] * kParts + 0.5);
            all.push_back(p);
        }
        std::vector<int> order(all.size());
        std::iota(order.begin(), order.end(), 0);
        const auto at = [&](int i) -> const Vec3& { return all[static_cast<std::size_t>(i)]; };
        const auto before = [&](int i, int j) {
            const Vec3 &a = at(i), &b = at(j);
            return std::tie(a.z, a.y, a.x, i) < std::tie(b.z, b.y, b.x, j);
        };
        sortWatched(order, before, stretch);
        ofVertex.resize(all.size());
        for (std::size_t k = 0; k < order.size(); ++k) {
            if (k == 0 || at(order[k]) != at(order[k - 1])) places.push_back(at(order[k]));
            ofVertex[static_cast<std::size_t>(order[k])] = static_cast<int>(places.size()) - 1;
        }
        for (Vec3& p : places) p = {p.x * h.x / kParts, p.y * h.y / kParts, p.z * h.z / kParts};
    }
};

/// A side of a triangle, from its lower to its higher place.
struct Side {
    int low, high;
    bool isAlong;  // whether the triangle runs through it that way
    int triangle;
};

}  // namespace

double totalMeanCurvature(const quorbin::Mesh& mesh, const Vec3& h, const Stretch& stretch) {
    const Places merged(mesh.vertices, h, stretch.part(0, 0.2));
    const auto placeOf = [&](int i) -> const Vec3& { return merged.places[static_cast<std::size_t>(i)]; };
    std::vector<Side> sides;
    std::vector<Vec3> normals;
    Stretch gathering = stretch.part(0.2, 0.3);
    gathering.expect(mesh.triangles.size());
    for (const gpoint3& t : mesh.triangles) {
        gathering.step();
        std::array<int, 3> corners = {t.first, t.second, t.third};
        for (int& corner : corners) corner = merged.ofVertex[static_cast<std::size_t>(corner)];
        if (corners[0] == corners[1] || corners[1] == corners[2] || corners[2] == corners[0]) continue;
        const Vec3& a = placeOf(corners[0]);
        const Vec3 normal = cross(placeOf(corners[1]) - a, placeOf(corners[2]) - a);
        const double length = std::sqrt(dot(normal, normal));
        const auto number = static_cast<int>(normals.size());
        normals.push_back(length > 0 ? normal / length : Vec3());
        for (std::size_t k = 0; k < 3; ++k) {
            const int from = corners[k], to = corners[(k + 1) % 3];
            sides.push_back({std::min(from, to), std::max(from, to), from < to, number});
        }
    }
    // Where four triangles meet at an edge, which they do where the inside touches itself, the first two
    // that run opposite ways are a pair, and the others.
    const auto before = [](const Side& a, const Side& b) {
        return std::tie(a.low, a.high, a.isAlong, a.triangle) <
               std::tie(b.low, b.high, b.isAlong, b.triangle);
    };
    sortWatched(sides, before, stretch.part(0.3, 0.8));
    Stretch pairing = stretch.part(0.8, 1);
    pairing.expect(sides.size());
    double twice = 0;
    for (std::size_t begin = 0, end; begin < sides.size(); begin = end) {
        std::size_t along = begin;
        while (along < sides.size() && sides[along].low == sides[begin].low &&
               sides[along].high == sides[begin].high && !sides[along].isAlong)
            ++along;
        end = along;
        while (end < sides.size() && sides[end].low == sides[begin].low &&
               sides[end].high == sides[begin].high)
            ++end;
        pairing.step(end - begin);
        const Vec3 edge = placeOf(sides[begin].high) - placeOf(sides[begin].low);
        for (std::size_t k = 0; begin + k < along && along + k < end; ++k) {
            const Vec3& back = normals[static_cast<std::size_t>(sides[begin + k].triangle)];
            const Vec3& forth = normals[static_cast<std::size_t>(sides[along + k].triangle)];
            const double angle = angleBetween(forth, back);
            const bool isConvex = dot(cross(forth, back), edge) >= 0;
            twice += std::sqrt(dot(edge, edge)) * (isConvex ? angle : -angle);
        }
    }
    return twice / 2;
}

}  // namespace lset::detail
