#include <nanobind/nanobind.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "arrays.h"
#include "families.h"
#include "fields/distance.h"
#include "watch.h"

namespace quorbin::python {

namespace {

template <class Grid>
const std::map<std::string, fields::DistanceMethod<Grid>>& methods() {
    if constexpr (std::is_same_v<Grid, FullLevelSet2D>) {
        static const std::map<std::string, fields::DistanceMethod<Grid>> all = {
            {"projection", fields::distanceByProjection},
            {"fmm", fields::distanceByMarching},
            {"segments", fields::distanceBySegments},
            {"brute", fields::distanceByBruteForce}};
        return all;
    } else {
        static const std::map<std::string, fields::DistanceMethod<Grid>> all = {
            {"projection", fields::distanceByProjection}, {"fmm", fields::distanceByMarching}};
        return all;
    }
}

void signedDistance(const Values& values, const Result& result, const Spacing& spacing, bool nanIsOutside,
                    const std::string& method, nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    requireInterface(values);
    changeGrid(values, result, spacing, [&](auto& grid) {
        using Grid = std::decay_t<decltype(grid)>;
        const auto found = methods<Grid>().find(method);
        if (found == methods<Grid>().end())
            throw std::invalid_argument("method \"" + method +
                                        "\" is none for this field; see signed_distance");
        if constexpr (std::is_same_v<Grid, FullLevelSet2D>)
            if ((method == "segments" || method == "brute") && !fields::hasEqualSpacings(grid))
                throw std::invalid_argument("method \"" + method +
                                            "\" needs equal spacings; take projection or fmm");
        watched(tell, [&](const Progress& progress) { found->second(grid, progress); });
    });
}

void reinitializeValues(const Values& values, const Result& result, const Spacing& spacing, bool nanIsOutside,
                        nb::handle tell) {
    checkNumbers(values, nanIsOutside);
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
