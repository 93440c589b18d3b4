#include "measure.h"

#include <nanobind/stl/vector.h>

#include "arrays.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

nb::tuple measureOf(const Values& values, const Spacing& spacing, bool nanIsOutside, nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    return readGrid(values, spacing, [&](const auto& grid) {
        return tupleOf(watched(tell, [&](const Progress& progress) { return *measure(grid, progress); }));
    });
}

/// Returns (dice, symmetric difference, mean distance, largest distance, (mean, largest) from a, from b).
nb::tuple compareThem(const Values& a, const Values& b, const Spacing& spacing, bool nanIsOutside,
                      nb::handle tell) {
    checkNumbers(a, nanIsOutside);
    checkNumbers(b, nanIsOutside);
    const Comparison both = readGrids(a, b, spacing, [&](const auto& first, const auto& second) {
        return watched(tell, [&](const Progress& progress) { return *compare(first, second, progress); });
    });
    return nb::make_tuple(both.dice, both.symmetricDifference, both.meanDistance, both.hausdorffDistance,
                          nb::make_tuple(both.fromFirst.mean, both.fromFirst.largest),
                          nb::make_tuple(both.fromSecond.mean, both.fromSecond.largest));
}

/// Returns a list of (figures, samples, index of the first sample).
nb::list piecesOf(const Values& values, const Spacing& spacing, bool nanIsOutside, nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    nb::list list;
    readGrid(values, spacing, [&](const auto& grid) {
        const auto all = watched(tell, [&](const Progress& progress) { return *pieces(grid, progress); });
        for (const auto& piece : all)
            list.append(nb::make_tuple(tupleOf(piece.figures), piece.samples, inAxisOrder(piece.inside)));
    });
    return list;
}

}  // namespace

nb::tuple tupleOf(const Figures2D& figures) {
    return nb::make_tuple(figures.area, figures.perimeter, inAxisOrder(figures.centroid),
                          inAxisOrder(figures.lowest), inAxisOrder(figures.highest), figures.totalCurvature);
}

nb::tuple tupleOf(const Figures3D& figures) {
    return nb::make_tuple(figures.volume, figures.surfaceArea, inAxisOrder(figures.centroid),
                          inAxisOrder(figures.lowest), inAxisOrder(figures.highest),
                          figures.totalMeanCurvature);
}

void addMeasure(nb::module_& module) {
    module.def("measure", measureOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("tell").none());
    module.def("compare", compareThem, nb::arg("a"), nb::arg("b"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("tell").none());
    module.def("pieces", piecesOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("tell").none());
}

}  // namespace quorbin::python
