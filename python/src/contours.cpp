#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "arrays.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

/// Rings and lines in one array of points (y, x), the first point of a ring again at its end; where each of them
/// begins; and which of the rings are outlines of regions rather than holes in the one before.
struct Flat {
    std::vector<double> points;
    std::vector<long long> starts = {0};
    std::vector<int> isOutline;

    void add(const Ring& line, bool isClosed, bool outline) {
        for (const auto& point : line) addPoint(point);
        if (isClosed && !line.empty()) addPoint(line.front());
        starts.push_back(static_cast<long long>(points.size() / 2));
        isOutline.push_back(outline);
    }
    void add(const Polygon& region) {
        add(region.outline, true, true);
        for (const Ring& hole : region.holes) add(hole, true, false);
    }

 private:
    void addPoint(const brin::Vec2<double>& point) {
        points.push_back(point.y);
        points.push_back(point.x);
    }
};

/// The rows of what values are above a level.
FieldRows rowsAbove(const Values& values, const Lattice& lattice, double level) {
    const auto width = static_cast<std::size_t>(lattice.size[0]);
    return {lattice.size[0], lattice.size[1], lattice.spacing[0], lattice.spacing[1],
            [begin = values.data(), width, level](int y, double* row) {
                const double* const first = begin + static_cast<std::size_t>(y) * width;
                std::transform(first, first + width, row, [=](double value) { return value - level; });
            }};
}

/// Returns (points, starts, is_outline, number of rings), after which come open lines.
nb::tuple contoursOf(const Values& values, const Spacing& spacing, bool nanIsOutside, double level,
                     bool closed, double tolerance) {
    const Lattice lattice = latticeOf(values, spacing);
    if (lattice.isVolume)
        throw std::invalid_argument("the field has 3 axes; contours are those of 2, meshes those of 3");
    checkNumbers(values, nanIsOutside);
    Flat flat;
    std::size_t rings = 0;
    Watch watch(nb::none());
    {
        const nb::gil_scoped_release unlocked;
        const FieldRows rows = rowsAbove(values, lattice, level);
        const auto take = [&](Polygon&& region) { flat.add(region); };
        if (tolerance > 0) {
            std::vector<Polygon> regions;
            contours(
                rows, [&](Polygon&& region) { regions.push_back(std::move(region)); }, watch.progress());
            for (const Polygon& region : simplified(std::move(regions), tolerance)) flat.add(region);
            rings = flat.isOutline.size();
        } else if (closed) {
            contours(rows, take, watch.progress());
            rings = flat.isOutline.size();
        } else {
            std::vector<Ring> lines;
            openContours(
                rows, take, [&](Ring&& line) { lines.push_back(std::move(line)); }, watch.progress());
            rings = flat.isOutline.size();
            for (const Ring& line : lines) flat.add(line, false, true);
        }
    }
    const std::size_t points = flat.points.size() / 2;
    return nb::make_tuple(arrayOf(std::move(flat.points), {points, 2}), flat.starts, flat.isOutline, rings);
}

}  // namespace

void addContours(nb::module_& module) {
    module.def("contours", contoursOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("level"), nb::arg("closed"), nb::arg("tolerance"));
}

}  // namespace quorbin::python
