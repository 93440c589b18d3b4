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

nb::tuple meshOf(const Values& values, const Spacing& spacing, bool nanIsOutside, bool capped,
                 nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    Mesh surface;
    readGrid(values, spacing, [&](const auto& grid) {
        if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet3D>) {
            surface =
                watched(tell, [&](const Progress& progress) { return *mesh(grid, {capped}, progress); });
        } else {
            throw std::invalid_argument("the field has 2 axes; meshes are those of 3, contours those of 2");
        }
    });
    return tupleOf(surface);
}

}  // namespace

nb::tuple tupleOf(const Mesh& surface) {
    std::vector<int> faces;
    faces.reserve(3 * surface.triangles.size());
    for (const gpoint3& triangle : surface.triangles)
        faces.insert(faces.end(), {triangle.first, triangle.third, triangle.second});
    const std::size_t vertices = surface.vertices.size(), triangles = surface.triangles.size();
    return nb::make_tuple(arrayOf(flat(surface.vertices), {vertices, 3}),
                          arrayOf(std::move(faces), {triangles, 3}),
                          arrayOf(flat(surface.normals), {vertices, 3}));
}

void addMesh(nb::module_& module) {
    module.def("mesh", meshOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("capped"), nb::arg("tell").none());
}

}  // namespace quorbin::python
