#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <cstddef>
#include <vector>

#include "arrays.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

void read(const double* p, brin::Vec2<double>& point) { point = {p[1], p[0]}; }
void read(const double* p, brin::Vec3<double>& point) { point = {p[2], p[1], p[0]}; }

void append(std::vector<double>& values, const brin::Vec2<double>& p) {
    values.insert(values.end(), {p.y, p.x});
}
void append(std::vector<double>& values, const brin::Vec3<double>& p) {
    values.insert(values.end(), {p.z, p.y, p.x});
}

template <class Point, class Grid>
nb::tuple sampleAt(const Grid& grid, const Values& points, nb::handle tell) {
    const std::size_t count = points.shape(0), axes = points.shape(1);
    std::vector<double> values, gradients, closest;
    watched(tell, [&](const Progress& progress) {
        std::vector<Point> at(count);
        for (std::size_t i = 0; i < count; ++i) read(points.data() + axes * i, at[i]);
        const auto samples = *sample(grid, at, progress);
        values.reserve(count);
        gradients.reserve(axes * count);
        closest.reserve(axes * count);
        for (const auto& one : samples) {
            values.push_back(one.value);
            append(gradients, one.gradient);
            append(closest, one.closest);
        }
    });
    return nb::make_tuple(arrayOf(std::move(values), {count}), arrayOf(std::move(gradients), {count, axes}),
                          arrayOf(std::move(closest), {count, axes}));
}

nb::tuple sampleOf(const Values& values, const Spacing& spacing, bool nanIsOutside, const Values& points,
                   nb::handle tell) {
    struct At {
        const Values& points;
        nb::handle tell;
        nb::tuple operator()(const FullLevelSet2D& grid) const {
            return sampleAt<brin::Vec2<double>>(grid, points, tell);
        }
        nb::tuple operator()(const FullLevelSet3D& grid) const {
            return sampleAt<brin::Vec3<double>>(grid, points, tell);
        }
    };
    checkNumbers(values, nanIsOutside);
    return readGrid(values, spacing, At{points, tell});
}

}  // namespace

void addSample(nb::module_& module) {
    module.def("sample", sampleOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("points"), nb::arg("tell").none());
}

}  // namespace quorbin::python
