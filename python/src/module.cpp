#include <nanobind/nanobind.h>
#include <quorbin.h>

#include "families.h"

NB_MODULE(_core, module) {
    using namespace quorbin::python;
    namespace nb = nanobind;
    nb::set_leak_warnings(false);
    module.attr("__version__") = QUORBIN_VERSION;
    nb::exception<quorbin::NoInterface>(module, "NoInterface", PyExc_ValueError);
    addDistance(module);
    addFlows(module);
    addContours(module);
    addMesh(module);
    addFiles(module);
    addSegment(module);
    addSets(module);
    addMeasure(module);
    addSample(module);
    addSteps(module);
    addBands(module);
}
