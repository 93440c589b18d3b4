#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include "arrays.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

/// Returns (time, steps, hasVanished).
nb::tuple curvatureFlowOf(const Values& values, const Result& result, const Spacing& spacing,
                          bool nanIsOutside, double time, int steps, double rate, bool keepsSize,
                          int noiseRadius, nb::handle tell) {
    requireField(values, spacing, nanIsOutside);
    Watch watch(tell);
    CurvatureFlowOptions options;
    options.steps = static_cast<CurvatureFlowOptions::Steps>(steps);
    options.rate = rate;
    options.keepsSize = keepsSize;
    options.noiseRadius = noiseRadius;
    options.progress = watch.progress();
    const CurvatureFlowResult flow = changeGrid(values, result, spacing, [&](auto& grid) {
        const nb::gil_scoped_release unlocked;
        return curvatureFlow(grid, time, options);
    });
    return nb::make_tuple(flow.time, flow.steps, flow.hasVanished);
}

void smoothMaskOf(const Values& values, const Result& result, const Spacing& spacing, bool nanIsOutside,
                  bool keepsSides, nb::handle tell) {
    requireField(values, spacing, nanIsOutside);
    changeGrid(values, result, spacing, [&](auto& grid) {
        watched(tell, [&](const Progress& progress) { smoothMask(grid, {keepsSides, progress}); });
    });
}

}  // namespace

void addFlows(nb::module_& module) {
    module.def("curvature_flow", curvatureFlowOf, nb::arg("values"), nb::arg("result"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("time"), nb::arg("steps"), nb::arg("rate"),
               nb::arg("keeps_size"), nb::arg("noise_radius"), nb::arg("tell").none());
    module.def("smooth_mask", smoothMaskOf, nb::arg("values"), nb::arg("result"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("keeps_sides"), nb::arg("tell").none());
}

}  // namespace quorbin::python
