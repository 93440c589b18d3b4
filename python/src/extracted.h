#pragma once

#include <cstddef>
#include <vector>

#include <nanobind/nanobind.h>
#include <quorbin.h>

namespace quorbin::python {

/// Rings, and after them open lines, in one array of points (y, x), the first point of a ring again at its
/// end; where each of them begins; and which of the rings are outlines of regions rather than holes in the
/// one before.
class Outlines {
 public:
    void add(const std::vector<Polygon>& regions);
    void add(const std::vector<Ring>& openLines);

    /// (points, starts, is_outline, number of rings)
    nanobind::tuple tuple();

 private:
    void addLine(const Ring& line, bool isClosed, bool isOutline);
    void addPoint(const brin::Vec2<double>& point);

    std::vector<double> points_;
    std::vector<long long> starts_ = {0};
    std::vector<int> isOutline_;
    std::size_t rings_ = 0;
};

/// (vertices, faces, normals). In (z, y, x), which turns space inside out, faces run the other way round.
nanobind::tuple tupleOf(const Mesh& surface);

}  // namespace quorbin::python
