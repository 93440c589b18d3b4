#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <queue>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"

namespace quorbin {

namespace {

using Point = brin::Vec2<double>;

double twiceArea(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

double squaredDistanceToSegment(const Point& p, const Point& a, const Point& b) {
    const Point along = b - a, to = p - a;
    const double square = dot(along, along);
    const double t = square > 0 ? std::clamp(dot(to, along) / square, 0.0, 1.0) : 0.0;
    const Point apart = to - t * along;
    return dot(apart, apart);
}

/// The smallest and the largest x of a triangle between two values of y.
std::pair<double, double> extentInRow(const Point (&corners)[3], double y0, double y1) {
    double low = HUGE_VAL, high = -HUGE_VAL;
    for (int k = 0; k < 3; ++k) {
        const Point &a = corners[k], &b = corners[(k + 1) % 3];
        if (std::max(a.y, b.y) < y0 || std::min(a.y, b.y) > y1) continue;
        for (const double y : {std::clamp(a.y, y0, y1), std::clamp(b.y, y0, y1)}) {
            const double x = a.y == b.y ? a.x : a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
            low = std::min(low, x);
            high = std::max(high, x);
        }
        if (a.y == b.y) {
            low = std::min(low, b.x);
            high = std::max(high, b.x);
        }
    }
    return {low, high};
}

/// The points of all rings, each of which knows the ones before and after it that are still there.
class Simplification {
 public:
    Simplification(std::vector<Polygon>& polygons, double tolerance, const lset::detail::Stretch& stretch)
        : squaredTolerance_(tolerance * tolerance), rest_(stretch.part(0.1, 1)) {
        lset::detail::Stretch gathering = stretch.part(0, 0.1);
        std::size_t points = 0;
        for (const Polygon& polygon : polygons) {
            points += polygon.outline.size();
            for (const Ring& hole : polygon.holes) points += hole.size();
        }
        gathering.expect((2 + kStepsOfACell) * points);
        rest_.expect(3 * kStepsOfAProposal * points);
        vertices_.reserve(points);
        for (Polygon& polygon : polygons) {
            gathering.step(polygon.outline.size());
            add(polygon.outline);
            for (Ring& hole : polygon.holes) add(hole);
        }
        // As large as the distance of neighbours is on average, and so that the numbers of cells stay whole.
        double length = 0, reach = 0;
        for (const Vertex& v : vertices_) {
            gathering.step();
            length += std::hypot(v.at.x - vertices_[v.after].at.x, v.at.y - vertices_[v.after].at.y);
            reach = std::max({reach, std::abs(v.at.x), std::abs(v.at.y)});
        }
        if (vertices_.empty()) return;
        cell_ = std::max({tolerance, length / static_cast<double>(vertices_.size()), reach / 1e9});
        for (std::size_t i = 0; i < vertices_.size(); ++i) {
            cells_[cellOf(vertices_[i].at)].push_back(i);
            gathering.step(kStepsOfACell);
        }
    }

    void run() {
        for (std::size_t i = 0; i < vertices_.size(); ++i) propose(i);
        while (!proposals_.empty()) {
            const Proposal proposal = proposals_.top();
            proposals_.pop();
            rest_.step(kStepsOfAProposal);
            const std::size_t i = proposal.vertex;
            Vertex& v = vertices_[i];
            if (v.isGone || proposal.version != v.version || !canGo(i)) continue;
            v.isGone = true;
            --rings_[v.ring].count;
            vertices_[v.before].after = v.after;
            vertices_[v.after].before = v.before;
            propose(v.before);
            propose(v.after);
        }
        for (const RingOfAll& ring : rings_) {
            rest_.step(ring.size);
            Ring left;
            for (std::size_t i = ring.first; i < ring.first + ring.size; ++i)
                if (!vertices_[i].isGone) left.push_back(vertices_[i].at);
            *ring.ring = std::move(left);
        }
    }

 private:
    static constexpr std::size_t kStepsOfACell = 16, kStepsOfAProposal = 16;

    struct Vertex {
        Point at;
        std::size_t before, after, ring;
        unsigned version = 0;
        bool isGone = false;
    };
    struct RingOfAll {
        Ring* ring;
        std::size_t first, size, count;
    };
    struct Proposal {
        double area;
        std::size_t vertex;
        unsigned version;
        bool operator<(const Proposal& other) const {
            return std::pair(area, vertex) > std::pair(other.area, other.vertex);
        }
    };

    void add(Ring& ring) {
        const std::size_t first = vertices_.size(), n = ring.size();
        for (std::size_t k = 0; k < n; ++k)
            vertices_.push_back({ring[k], first + (k + n - 1) % n, first + (k + 1) % n, rings_.size()});
        rings_.push_back({&ring, first, n, n});
    }

    std::uint64_t cellOf(const Point& p) const {
        const auto index = [&](double c) { return static_cast<std::int64_t>(std::floor(c / cell_)); };
        return static_cast<std::uint64_t>(index(p.x)) * 0x9e3779b97f4a7c15U +
               static_cast<std::uint64_t>(index(p.y));
    }

    void propose(std::size_t i) {
        Vertex& v = vertices_[i];
        ++v.version;
        const double area = std::abs(twiceArea(vertices_[v.before].at, v.at, vertices_[v.after].at));
        proposals_.push({area, i, v.version});
        rest_.step(kStepsOfAProposal);
    }

    bool canGo(std::size_t i) {
        const Vertex& v = vertices_[i];
        return rings_[v.ring].count > 4 && keepsTolerance(i) && !hasOthersInTriangle(i);
    }

    /// All that has been left out between the neighbours stays near the line between them.
    bool keepsTolerance(std::size_t i) {
        const Vertex& v = vertices_[i];
        const Point &a = vertices_[v.before].at, &b = vertices_[v.after].at;
        const RingOfAll& ring = rings_[v.ring];
        const auto next = [&](std::size_t k) { return ring.first + (k + 1 - ring.first) % ring.size; };
        for (std::size_t k = next(v.before); k != v.after; k = next(k)) {
            rest_.step();
            if (squaredDistanceToSegment(vertices_[k].at, a, b) > squaredTolerance_) return false;
        }
        return true;
    }

    /// Another line can come to cross the new one only where it has a vertex in the triangle that is cut off.
    bool hasOthersInTriangle(std::size_t i) const {
        const Vertex& v = vertices_[i];
        const Point corners[3] = {vertices_[v.before].at, v.at, vertices_[v.after].at};
        const double sign = twiceArea(corners[0], corners[1], corners[2]) < 0 ? -1 : 1;
        const auto isInTriangle = [&](const Point& p) {
            for (int k = 0; k < 3; ++k)
                if (sign * twiceArea(corners[k], corners[(k + 1) % 3], p) < 0) return false;
            return true;
        };
        const auto [lowY, highY] = std::minmax({corners[0].y, corners[1].y, corners[2].y});
        for (double row = std::floor(lowY / cell_); row <= std::floor(highY / cell_); ++row) {
            const auto [lowX, highX] = extentInRow(corners, row * cell_, (row + 1) * cell_);
            for (double column = std::floor(lowX / cell_); column <= std::floor(highX / cell_); ++column) {
                const auto found = cells_.find(cellOf({(column + 0.5) * cell_, (row + 0.5) * cell_}));
                if (found == cells_.end()) continue;
                for (const std::size_t other : found->second)
                    if (!vertices_[other].isGone && other != i && other != v.before && other != v.after &&
                        isInTriangle(vertices_[other].at))
                        return true;
            }
        }
        return false;
    }

    double squaredTolerance_;
    lset::detail::Stretch rest_;
    double cell_ = 1;
    std::vector<Vertex> vertices_;
    std::vector<RingOfAll> rings_;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> cells_;
    std::priority_queue<Proposal> proposals_;
};

}  // namespace

std::optional<std::vector<Polygon>> simplified(std::vector<Polygon> polygons, double tolerance,
                                               const Progress& progress) {
    if (!(tolerance >= 0) || std::isinf(tolerance))
        throw std::invalid_argument("the tolerance of a simplification must be a number from 0");
    return lset::detail::unlessEnded(progress, [&](const lset::detail::Stretch& whole) {
        if (tolerance > 0) Simplification(polygons, tolerance, whole).run();
        return std::move(polygons);
    });
}

std::vector<Polygon> simplified(std::vector<Polygon> polygons, double tolerance) {
    return *simplified(std::move(polygons), tolerance, Progress());
}

}  // namespace quorbin
