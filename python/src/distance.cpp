#include <nanobind/nanobind.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include <fmt/core.h>

#include "arrays.h"
#include "families.h"
#include "fields/distance.h"
#include "watch.h"

namespace quorbin::python {

namespace {

using Method2D = fields::DistanceMethod<FullLevelSet2D>;
using Method3D = fields::DistanceMethod<FullLevelSet3D>;

const std::map<std::string, std::pair<Method2D, Method3D>>& methods() {
    static const std::map<std::string, std::pair<Method2D, Method3D>> all = {
        {"projection", {fields::distanceByProjection, fields::distanceByProjection}},
        {"fmm", {fields::distanceByMarching, fields::distanceByMarching}},
        {"segments", {fields::distanceBySegments, nullptr}},
        {"brute", {fields::distanceByBruteForce, nullptr}}};
    return all;
}

/// Throws where the method is none for such a field.
const std::pair<Method2D, Method3D>& methodFor(const Lattice& lattice, const std::string& name) {
    const auto found = methods().find(name);
    if (found == methods().end())
        throw std::invalid_argument(fmt::format(
            "method is \"{}\"; it can be \"projection\", \"fmm\", \"segments\" or \"brute\"", name));
    const bool isForAll = found->second.second != nullptr;
    if (!isForAll && (lattice.isVolume || lattice.spacing[0] != lattice.spacing[1]))
        throw std::invalid_argument(
            fmt::format("method \"{}\" is for two axes with equal spacings; "
                        "take \"projection\" or \"fmm\"",
                        name));
    return found->second;
}

void signedDistance(const Values& values, const Result& result, const Spacing& spacing, bool nanIsOutside,
                    const std::string& method, nb::handle tell) {
    const auto [flat, deep] = methodFor(latticeOf(values, spacing), method);
    requireField(values, spacing, nanIsOutside);
    changeGrid(values, result, spacing, [&, flat = flat, deep = deep](auto& grid) {
        watched(tell, [&](const Progress& progress) {
            if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet2D>)
                flat(grid, progress);
            else
                deep(grid, progress);
        });
    });
}

void reinitializeValues(const Values& values, const Result& result, const Spacing& spacing, bool nanIsOutside,
                        nb::handle tell) {
    requireField(values, spacing, nanIsOutside);
    changeGrid(values, result, spacing, [&](auto& grid) {
        watched(tell, [&](const Progress& progress) { reinitialize(grid, {0, progress}); });
    });
}

}  // namespace

void addDistance(nb::module_& module) {
    module.def("signed_distance", signedDistance, nb::arg("values"), nb::arg("result"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("method"), nb::arg("tell").none());
    module.def("reinitialize", reinitializeValues, nb::arg("values"), nb::arg("result"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("tell").none());
}

}  // namespace quorbin::python
