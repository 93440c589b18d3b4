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

/// Rings and lines in one array of points (y, x), the first point of a ring again at its end; where each
/// of them begins; and which of the rings are outlines of regions rather than holes in the one before.
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
    void add(const std::vector<Polygon>& regions) {
        std::size_t count = 0;
        for (const Polygon& region : regions) {
            count += region.outline.size() + 1;
            for (const Ring& hole : region.holes) count += hole.size() + 1;
        }
        points.reserve(2 * count);
        for (const Polygon& region : regions) {
            add(region.outline, true, true);
            for (const Ring& hole : region.holes) add(hole, true, false);
        }
    }

 private:
    void addPoint(const brin::Vec2<double>& point) {
        points.push_back(point.y);
        points.push_back(point.x);
    }
};

/// The rows of what values are above a level. Whether they are numbers is seen on the way, as the rows of
/// a large picture are read no faster than memory gives them.
FieldRows rowsAbove(const Values& values, const Lattice& lattice, double level, bool nanIsOutside) {
    const auto width = static_cast<std::size_t>(lattice.size[0]);
    return {lattice.size[0], lattice.size[1], lattice.spacing[0], lattice.spacing[1],
            [&values, width, level, nanIsOutside](int y, double* row) {
                const std::size_t begin = static_cast<std::size_t>(y) * width;
                const double* const first = values.data() + begin;
                const double* const end = first + width;
                constexpr std::ptrdiff_t kBlock = 512;  // stays in the cache between the two looks at it
                for (const double* from = first; from != end;) {
                    const double* const to = end - from > kBlock ? from + kBlock : end;
                    row = std::transform(from, to, row, [level](double value) { return value - level; });
                    const double* const found = nanIsOutside ? to : firstNotANumber(from, to);
                    if (found != to) throwNotANumber(values, static_cast<std::size_t>(found - values.data()));
                    from = to;
                }
            }};
}

/// Returns (points, starts, is_outline, number of rings), after which come open lines.
nb::tuple contoursOf(const Values& values, const Spacing& spacing, bool nanIsOutside, double level,
                     bool closed, double tolerance) {
    const Lattice lattice = latticeOf(values, spacing);
    if (lattice.isVolume)
        throw std::invalid_argument("the field has 3 axes; contours are those of 2, meshes those of 3");
    Flat flat;
    std::size_t rings = 0;
    Watch watch(nb::none());
    {
        const nb::gil_scoped_release unlocked;
        const FieldRows rows = rowsAbove(values, lattice, level, nanIsOutside);
        std::vector<Polygon> regions;
        std::vector<Ring> lines;
        const auto take = [&](Polygon&& region) { regions.push_back(std::move(region)); };
        if (closed)
            contours(rows, take, watch.progress());
        else
            openContours(
                rows, take, [&](Ring&& line) { lines.push_back(std::move(line)); }, watch.progress());
        if (tolerance > 0) regions = simplified(std::move(regions), tolerance);
        flat.add(regions);
        rings = flat.isOutline.size();
        for (const Ring& line : lines) flat.add(line, false, true);
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
