#include "fields/segmentation.h"

#include <nanobind/nanobind.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <optional>
#include <type_traits>

#include "arrays.h"
#include "failures.h"
#include "families.h"
#include "fields/distance.h"
#include "fields/from_samples.h"
#include "io/failure.h"
#include "watch.h"

namespace quorbin::python {

namespace {

double otsuOf(const Values& values) {
    if (values.size() == 0) throw std::invalid_argument("the image is empty");
    const nb::gil_scoped_release unlocked;
    return fields::otsuLevel([&](const fields::TakeSamples& take) { take(values.data(), values.size()); });
}

/// The image, as what holds the intensities, with the spacings of the field.
io::Image imageOf(const Values& values, const Spacing& spacing) {
    const Lattice lattice = latticeOf(values, spacing);
    if (lattice.isVolume) throw std::invalid_argument("the image has 3 axes; segment takes 2, (y, x)");
    io::Image image;
    io::setPictureSize(image, lattice.size[0], lattice.size[1]);
    image.placement.spacing = lattice.spacing;
    std::copy_n(values.data(), lattice.points, image.samples.begin());
    return image;
}

/// field holds the start, and the result at the end. Returns (mean inside, mean outside, steps, whether it is
/// still). Means are of intensities from 0 to 1.
nb::tuple segmentOf(const Values& intensities, const Result& field, const Spacing& spacing, double weight,
                    int maxSteps, bool implicit, bool onBand, nb::handle tell) {
    Watch watch(tell);
    fields::SegmentResult result;
    {
        const nb::gil_scoped_release unlocked;
        const io::Image image = imageOf(intensities, spacing);
        FullLevelSet2D grid = gridOver(field.data(), image.width, image.height, image.placement.spacing[0],
                                       image.placement.spacing[1]);
        fields::SegmentOptions options;
        options.weight = weight;
        options.maxSteps = maxSteps;
        options.implicit = implicit;
        options.onBand = onBand;
        options.progress = watch.progress();
        try {
            fields::distanceByProjection(grid, watch.progress());
            result = fields::segment(image, grid, options);
        } catch (const io::Failure& failure) {
            throw io::Failure(failure.status, inPython(failure.what()));
        }
    }
    return nb::make_tuple(result.meanInside, result.meanOutside, result.steps, result.isStill);
}

}  // namespace

void addSegment(nb::module_& module) {
    module.def("otsu", otsuOf, nb::arg("values"));
    module.def("segment", segmentOf, nb::arg("intensities"), nb::arg("field"), nb::arg("spacing"),
               nb::arg("weight"), nb::arg("max_steps"), nb::arg("implicit"), nb::arg("band"),
               nb::arg("tell").none());
}

}  // namespace quorbin::python
