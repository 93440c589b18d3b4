#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "arrays.h"
#include "extracted.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

void Outlines::addPoint(const brin::Vec2<double>& point) {
    points_.push_back(point.y);
    points_.push_back(point.x);
}

void Outlines::addLine(const Ring& line, bool isClosed, bool isOutline) {
    for (const auto& point : line) addPoint(point);
    if (isClosed && !line.empty()) addPoint(line.front());
    starts_.push_back(static_cast<long long>(points_.size() / 2));
    isOutline_.push_back(isOutline);
}

void Outlines::add(const std::vector<Polygon>& regions) {
    std::size_t count = points_.size();
    for (const Polygon& region : regions) {
        count += 2 * (region.outline.size() + 1);
        for (const Ring& hole : region.holes) count += 2 * (hole.size() + 1);
    }
    points_.reserve(count);
    for (const Polygon& region : regions) {
        addLine(region.outline, true, true);
        for (const Ring& hole : region.holes) addLine(hole, true, false);
    }
    rings_ = isOutline_.size();
}

void Outlines::add(const std::vector<Ring>& openLines) {
    for (const Ring& line : openLines) addLine(line, false, true);
}

nb::tuple Outlines::tuple() {
    const std::size_t points = points_.size() / 2;
    return nb::make_tuple(arrayOf(std::move(points_), {points, 2}), starts_, isOutline_, rings_);
}

namespace {

nb::tuple contoursOf(const Values& values, const Spacing& spacing, bool nanIsOutside, bool closed,
                     double tolerance, nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    Outlines outlines;
    readGrid(values, spacing, [&](const auto& grid) {
        if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet2D>) {
            watched(tell, [&](const Progress& progress) {
                if (closed) {
                    std::vector<Polygon> regions = *contours(grid, progress);
                    if (tolerance > 0) regions = *simplified(std::move(regions), tolerance, progress);
                    outlines.add(regions);
                } else {
                    const OpenContours open = *openContours(grid, progress);
                    outlines.add(open.regions);
                    outlines.add(open.lines);
                }
            });
        } else {
            throw std::invalid_argument("the field has 3 axes; contours are those of 2, meshes those of 3");
        }
    });
    return outlines.tuple();
}

}  // namespace

void addContours(nb::module_& module) {
    module.def("contours", contoursOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("closed"), nb::arg("tolerance"), nb::arg("tell").none());
}

}  // namespace quorbin::python
