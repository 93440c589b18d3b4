#pragma once

#include <nanobind/nanobind.h>

namespace quorbin::python {

/// Each adds its functions to the module. What they take has been checked and converted in Python, where they
/// are documented.
void addDistance(nanobind::module_& module);
void addFlows(nanobind::module_& module);
void addContours(nanobind::module_& module);
void addMesh(nanobind::module_& module);
void addFiles(nanobind::module_& module);
void addSegment(nanobind::module_& module);
void addSets(nanobind::module_& module);
void addMeasure(nanobind::module_& module);
void addSample(nanobind::module_& module);
void addSteps(nanobind::module_& module);
void addBands(nanobind::module_& module);

}  // namespace quorbin::python
