#include <nanobind/nanobind.h>
#include <nanobind/stl/vector.h>

#include <cstddef>

#include "arrays.h"
#include "families.h"
#include "watch.h"

namespace quorbin::python {

namespace {

using Array = nb::ndarray<nb::numpy, double>;

/// A function of Python by operation(field, amount, progress), which gives a grid.
template <class Amount, class Operation>
auto changedBy(Operation operation) {
    return [operation](const Values& values, const Spacing& spacing, bool nanIsOutside, Amount amount,
                       nb::handle tell) -> Array {
        checkNumbers(values, nanIsOutside);
        return readGrid(values, spacing, [&](const auto& grid) {
            return arrayOf(
                watched(tell, [&](const Progress& progress) { return operation(grid, amount, progress); }));
        });
    };
}

/// The same by operation(a, b, progress).
template <class Operation>
auto combinedBy(Operation operation) {
    return [operation](const Values& a, const Values& b, const Spacing& spacing, bool nanIsOutside,
                       nb::handle tell) -> Array {
        checkNumbers(a, nanIsOutside);
        checkNumbers(b, nanIsOutside);
        return readGrids(a, b, spacing, [&](const auto& first, const auto& second) {
            return arrayOf(
                watched(tell, [&](const Progress& progress) { return operation(first, second, progress); }));
        });
    };
}

template <class Amount, class Operation>
void addChange(nb::module_& module, const char* name, const char* amount, Operation operation) {
    module.def(name, changedBy<Amount>(operation), nb::arg("values"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg(amount), nb::arg("tell").none());
}

template <class Operation>
void addCombination(nb::module_& module, const char* name, Operation operation) {
    module.def(name, combinedBy(operation), nb::arg("a"), nb::arg("b"), nb::arg("spacing"),
               nb::arg("nan_is_outside"), nb::arg("tell").none());
}

Array complementOf(const Values& values, const Spacing& spacing, bool nanIsOutside, nb::handle tell) {
    checkNumbers(values, nanIsOutside);
    return readGrid(values, spacing, [&](const auto& grid) {
        return arrayOf(watched(tell, [&](const Progress& progress) { return *complement(grid, progress); }));
    });
}

}  // namespace

void addSets(nb::module_& module) {
    addCombination(module, "union", [](const auto& a, const auto& b, const Progress& progress) {
        return *unite(a, b, progress);
    });
    addCombination(module, "intersection", [](const auto& a, const auto& b, const Progress& progress) {
        return *intersect(a, b, progress);
    });
    addCombination(module, "difference", [](const auto& a, const auto& b, const Progress& progress) {
        return *subtract(a, b, progress);
    });
    module.def("complement", complementOf, nb::arg("values"), nb::arg("spacing"), nb::arg("nan_is_outside"),
               nb::arg("tell").none());
    addChange<double>(module, "offset", "distance",
                      [](const auto& field, double distance, const Progress& progress) {
                          return *offset(field, distance, progress);
                      });
    addChange<double>(module, "opened", "radius",
                      [](const auto& field, double radius, const Progress& progress) {
                          return *opened(field, radius, progress);
                      });
    addChange<double>(module, "closed", "radius",
                      [](const auto& field, double radius, const Progress& progress) {
                          return *closed(field, radius, progress);
                      });
    addChange<std::size_t>(module, "largest_pieces", "count",
                           [](const auto& field, std::size_t count, const Progress& progress) {
                               return *largestPieces(field, count, progress);
                           });
    addChange<double>(module, "without_holes_below", "size",
                      [](const auto& field, double size, const Progress& progress) {
                          return *withoutHolesBelow(field, size, progress);
                      });
}

}  // namespace quorbin::python
