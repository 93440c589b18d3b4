#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
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

nb::tuple contoursOf(const Values& values, const Spacing& spacing, bool nanIsOutside, double level,
                     bool closed, double tolerance, nb::handle tell) {
    const Lattice lattice = latticeOf(values, spacing);
    if (lattice.isVolume)
        throw std::invalid_argument("the field has 3 axes; contours are those of 2, meshes those of 3");
    Outlines outlines;
    watched(tell, [&](const Progress& progress) {
        const FieldRows rows = rowsAbove(values, lattice, level, nanIsOutside);
        std::vector<Polygon> regions;
        std::vector<Ring> lines;
        const auto take = [&](Polygon&& region) { regions.push_back(std::move(region)); };
        if (closed)
            contours(rows, take, progress);
        else
            openContours(
                rows, take, [&](Ring&& line) { lines.push_back(std::move(line)); }, progress);
        if (tolerance > 0) regions = *simplified(std::move(regions), tolerance, progress);
        outlines.add(regions);
        outlines.add(lines);
    });
    return outlines.tuple();
}

}  // namespace

void addContours(nb::module_& module) {
    module.def("contours", contoursOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("level"), nb::arg("closed"), nb::arg("tolerance"), nb::arg("tell").none());
}

}  // namespace quorbin::python
