#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <type_traits>
#include <vector>

#include "arrays.h"
#include "families.h"

namespace quorbin::python {

namespace {

/// Rings and lines in one array of points (y, x), the first point of a ring again at its end; where each of them
/// begins; and which of the rings are outlines of regions rather than holes in the one before.
struct Flat {
    std::vector<double> points;
    std::vector<long long> starts = {0};
    std::vector<bool> isOutline;

    void add(const Ring& line, bool isClosed, bool outline) {
        for (const auto& point : line) addPoint(point);
        if (isClosed && !line.empty()) addPoint(line.front());
        starts.push_back(static_cast<long long>(points.size() / 2));
        isOutline.push_back(outline);
    }
    void addRegions(const std::vector<Polygon>& regions) {
        std::size_t count = points.size();
        for (const Polygon& region : regions) {
            count += 2 * (region.outline.size() + 1);
            for (const Ring& hole : region.holes) count += 2 * (hole.size() + 1);
        }
        points.reserve(count);
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

/// Returns (points, starts, is_outline, number of rings), after which come open lines.
nb::tuple contoursOf(const Values& values, const Spacing& spacing, bool nanIsOutside, bool closed,
                     double tolerance) {
    checkNumbers(values, nanIsOutside);
    Flat flat;
    std::size_t rings = 0;
    readGrid(values, spacing, [&](const auto& grid) {
        if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet2D>) {
            const nb::gil_scoped_release unlocked;
            if (closed) {
                std::vector<Polygon> regions = contours(grid);
                if (tolerance > 0) regions = simplified(std::move(regions), tolerance);
                flat.addRegions(regions);
                rings = flat.isOutline.size();
            } else {
                const OpenContours open = openContours(grid);
                flat.addRegions(open.regions);
                rings = flat.isOutline.size();
                for (const Ring& line : open.lines) flat.add(line, false, true);
            }
        } else {
            throw std::invalid_argument("the field has 3 axes; contours are those of 2, meshes those of 3");
        }
    });
    const std::size_t points = flat.points.size() / 2;
    std::vector<bool>& outlines = flat.isOutline;
    return nb::make_tuple(arrayOf(std::move(flat.points), {points, 2}), flat.starts,
                          std::vector<int>(outlines.begin(), outlines.end()), rings);
}

}  // namespace

void addContours(nb::module_& module) {
    module.def("contours", contoursOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("closed"), nb::arg("tolerance"));
}

}  // namespace quorbin::python
