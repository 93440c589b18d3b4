#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include "arrays.h"
#include "families.h"
#include "speed.h"
#include "watch.h"

namespace quorbin::python {

namespace {

void check(const Values& values, const Spacing& spacing) {
    latticeOf(values, spacing);
    checkNumbers(values, false);
}

void moveAlongCurvature(const Values& values, const Result& result, const Spacing& spacing, int steps,
                        nb::handle tell) {
    check(values, spacing);
    changeGrid(values, result, spacing, [&](auto& grid) {
        watched(tell, [&](const Progress& progress) {
            for (int step = 0; step < steps; ++step) {
                progress(step, steps);
                grid.moveAlongCurvature();
            }
        });
    });
}

void moveAlongCurvatureImplicit(const Values& values, const Result& result, const Spacing& spacing) {
    check(values, spacing);
    changeGrid(values, result, spacing, [&](auto& grid) {
        const nb::gil_scoped_release unlocked;
        grid.moveAlongCurvatureImplicit();
    });
}

void moveWithSpeeds(const Values& values, const Result& result, const Spacing& spacing, const Values& speeds,
                    double time) {
    check(values, spacing);
    changeGrid(values, result, spacing, [&](auto& grid) {
        watched(nb::none(), [&](const Progress& progress) {
            const double* next = speeds.data();
            moveWithSpeed(grid, time, progress, [&](auto...) { return *next++; });
        });
    });
}

}  // namespace

void addSteps(nb::module_& module) {
    module.def("check", check, nb::arg("values"), nb::arg("spacing"));
    module.def("move_along_curvature", moveAlongCurvature, nb::arg("values"), nb::arg("result"),
               nb::arg("spacing"), nb::arg("steps"), nb::arg("tell").none());
    module.def("move_along_curvature_implicit", moveAlongCurvatureImplicit, nb::arg("values"),
               nb::arg("result"), nb::arg("spacing"));
    module.def("move_with_speed", moveWithSpeeds, nb::arg("values"), nb::arg("result"), nb::arg("spacing"),
               nb::arg("speeds"), nb::arg("time"));
}

}  // namespace quorbin::python
