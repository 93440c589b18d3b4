#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <type_traits>
#include <vector>

#include "arrays.h"
#include "extracted.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

/// Points (z, y, x), one after the other.
std::vector<double> flat(const std::vector<brin::Vec3<double>>& points) {
    std::vector<double> values(3 * points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        values[3 * i] = points[i].z;
        values[3 * i + 1] = points[i].y;
        values[3 * i + 2] = points[i].x;
    }
    return values;
}

/// In (z, y, x), which turns space inside out, faces run the other way round.
std::vector<int> turned(const std::vector<gpoint3>& triangles) {
    std::vector<int> faces;
    faces.reserve(3 * triangles.size());
    for (const gpoint3& triangle : triangles)
        faces.insert(faces.end(), {triangle.first, triangle.third, triangle.second});
    return faces;
}

nb::tuple meshOf(const Values& values, const Spacing& spacing, bool nanIsOutside, bool capped,
                 nb::handle tell) {
    if (!latticeOf(values, spacing).isVolume)
        throw std::invalid_argument("the field has 2 axes; meshes are those of 3, contours those of 2");
    checkNumbers(values, nanIsOutside);
    Mesh surface;
    readGrid(values, spacing, [&](const auto& grid) {
        if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet3D>)
            surface =
                watched(tell, [&](const Progress& progress) { return *mesh(grid, {capped}, progress); });
    });
    return tupleOf(surface);
}

}  // namespace

nb::tuple tupleOf(const Mesh& surface) {
    std::vector<double> vertices, normals;
    std::vector<int> faces;
    {
        const nb::gil_scoped_release unlocked;
        vertices = flat(surface.vertices);
        faces = turned(surface.triangles);
        normals = flat(surface.normals);
    }
    const std::size_t points = vertices.size() / 3, triangles = faces.size() / 3;
    return nb::make_tuple(arrayOf(std::move(vertices), {points, 3}),
                          arrayOf(std::move(faces), {triangles, 3}),
                          arrayOf(std::move(normals), {points, 3}));
}

void addMesh(nb::module_& module) {
    module.def("mesh", meshOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("capped"), nb::arg("tell").none());
}

}  // namespace quorbin::python
