#include <nanobind/nanobind.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "arrays.h"
#include "extracted.h"
#include "families.h"
#include "fields/band.h"
#include "fields/distance.h"
#include "measure.h"
#include "speed.h"
#include "watch.h"

namespace quorbin::python {

namespace {

using Indices = nb::ndarray<const int, nb::c_contig, nb::device::cpu>;

/// What one text for bands of both dimensions must know of them. Indices are in the order of the axes.
template <class Band>
struct Kind;

template <>
struct Kind<FastLevelSet2D> {
    static constexpr std::size_t dimensions = 2;
    using Grid = FullLevelSet2D;
    using Entry = PointAnd<double>;

    static Grid gridOn(double* values, const std::array<int, 3>& n, const std::array<double, 3>& h) {
        return gridOver(values, n[0], n[1], h[0], h[1]);
    }
    static Entry entryOf(const int* index, double value) { return {index[1], index[0], value}; }
    static std::array<int, 2> indexOf(const Entry& entry) { return {entry.y, entry.x}; }
    static FastLevelSet2D bandWith(const std::vector<Entry>& entries, const Spacing& h) {
        return bandOf(entries, h[1], h[0]);
    }
    static Spacing spacingOf(const FastLevelSet2D& band) { return {band.getYSpace(), band.getXSpace()}; }
};

template <>
struct Kind<FastLevelSet3D> {
    static constexpr std::size_t dimensions = 3;
    using Grid = FullLevelSet3D;
    using Entry = Point3And<double>;

    static Grid gridOn(double* values, const std::array<int, 3>& n, const std::array<double, 3>& h) {
        return gridOver(values, n[0], n[1], n[2], h[0], h[1], h[2]);
    }
    static Entry entryOf(const int* index, double value) { return {index[2], index[1], index[0], value}; }
    static std::array<int, 3> indexOf(const Entry& entry) { return {entry.z, entry.y, entry.x}; }
    static FastLevelSet3D bandWith(const std::vector<Entry>& entries, const Spacing& h) {
        return bandOf(entries, h[2], h[1], h[0]);
    }
    static Spacing spacingOf(const FastLevelSet3D& band) {
        return {band.getZSpace(), band.getYSpace(), band.getXSpace()};
    }
};

template <class Band, class Visit>
void forEachEntry(const Band& band, Visit visit) {
    for (const auto& bucket : band.points().buckets)
        for (const auto& entry : bucket) visit(entry);
}

template <class Band>
Band bandOfField(const Values& values, const Spacing& spacing, bool nanIsOutside, double width,
                 nb::handle tell) {
    constexpr double kReach = 4;  // of the largest spacing: what a first distance by cubics asks for
    const Lattice lattice = latticeOf(values, spacing);
    checkNumbers(values, nanIsOutside);
    requireInterface(values);
    return watched(tell, [&](const Progress& progress) {
        std::vector<double> distances(values.data(), values.data() + values.size());
        auto grid = Kind<Band>::gridOn(distances.data(), lattice.size, lattice.spacing);
        fields::distanceByProjection(grid, progress);
        const double* const h = lattice.spacing.data();
        const double reach = kReach * *std::max_element(h, h + Kind<Band>::dimensions);
        using Reached = fields::Band<Kind<Band>::dimensions>;
        Band band = std::move(Reached(grid, reach, Reached::Border::kOpen).points());
        reinitialize(band, {width, progress});
        return band;
    });
}

template <class Band>
Band bandOfPoints(const Indices& indices, const Values& values, const Spacing& spacing) {
    std::vector<typename Kind<Band>::Entry> entries(values.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i] = Kind<Band>::entryOf(indices.data() + Kind<Band>::dimensions * i, values.data()[i]);
    const nb::gil_scoped_release unlocked;
    return Kind<Band>::bandWith(entries, spacing);
}

template <class Band>
nb::tuple pointsOf(const Band& band) {
    constexpr std::size_t dimensions = Kind<Band>::dimensions;
    const auto count = static_cast<std::size_t>(band.size());
    std::vector<int> indices;
    std::vector<double> values;
    indices.reserve(dimensions * count);
    values.reserve(count);
    forEachEntry(band, [&](const auto& entry) {
        const auto index = Kind<Band>::indexOf(entry);
        indices.insert(indices.end(), index.begin(), index.end());
        values.push_back(entry.value);
    });
    return nb::make_tuple(arrayOf(std::move(indices), {count, dimensions}),
                          arrayOf(std::move(values), {count}));
}

template <class Band>
auto fieldOf(const Band& band, const std::vector<int>& shape) {
    double reach = 0;
    forEachEntry(band, [&](const auto& entry) { reach = std::max(reach, std::abs(entry.value)); });
    if (band.size() == 0) reach = std::numeric_limits<double>::infinity();
    std::array<int, 3> size = {1, 1, 1};
    std::reverse_copy(shape.begin(), shape.end(), size.begin());
    std::size_t points = 1;
    for (const int n : shape) points *= static_cast<std::size_t>(n);
    std::vector<double> values(points);
    auto grid = Kind<Band>::gridOn(values.data(), size, {1, 1, 1});
    {
        const nb::gil_scoped_release unlocked;
        fields::writeBand(band, reach, grid);
    }
    return arrayOf(std::move(values), {shape.begin(), shape.end()});
}

template <class Band>
void reinitializeBand(Band& band, const std::string& method, double width, nb::handle tell) {
    if (method == "projection") {
        watched(tell, [&](const Progress& progress) { return reinitialize(band, {width, progress}); });
        return;
    }
    if (method != "fmm")
        throw std::invalid_argument("method \"" + method + "\" is none for bands; take projection or fmm");
    const nb::gil_scoped_release unlocked;
    Band marched(band);
    marched.ensureSignedDistanceFMM();
    if (marched.size() == 0) throw NoInterface("the band has no interface");
    band = std::move(marched);
}

template <class Band>
void moveBandAlongCurvature(Band& band, int steps, nb::handle tell) {
    watched(tell, [&](const Progress& progress) {
        for (int step = 0; step < steps; ++step) {
            progress(step, steps);
            band.moveAlongCurvature();
        }
    });
}

/// Speeds are in the order of the points.
template <class Band>
void moveBandWithSpeed(Band& band, const Values& speeds, double time) {
    constexpr double kPartOfLimit = 0.95;  // which a band goes of the limit that it is given
    watched(nb::none(), [&](const Progress& progress) {
        auto table = band.points();
        const double* next = speeds.data();
        for (auto& bucket : table.buckets)
            for (auto& entry : bucket) entry.value = *next++;
        moveWithSpeed(band, time / kPartOfLimit, progress, [&](auto... c) { return *table.find(c...); });
    });
}

template <class Band>
nb::tuple flowOfBand(Band& band, double time, double rate, nb::handle tell) {
    const CurvatureFlowResult flow = watched(tell, [&](const Progress& progress) {
        CurvatureFlowOptions options;
        options.rate = rate;
        options.progress = progress;
        return curvatureFlow(band, time, options);
    });
    return nb::make_tuple(flow.time, flow.steps, flow.hasVanished);
}

nb::tuple extract(const FastLevelSet2D& band, double tolerance) {
    Outlines outlines;
    watched(nb::none(), [&](const Progress& progress) {
        std::vector<Polygon> regions = *contours(band, progress);
        if (tolerance > 0) regions = *simplified(std::move(regions), tolerance, progress);
        outlines.add(regions);
    });
    return outlines.tuple();
}

nb::tuple extractMesh(const FastLevelSet3D& band, nb::handle tell) {
    return tupleOf(watched(tell, [&](const Progress& progress) { return *mesh(band, progress); }));
}

template <class Band>
nb::tuple measureBand(const Band& band, nb::handle tell) {
    return tupleOf(watched(tell, [&](const Progress& progress) { return *measure(band, progress); }));
}

/// Not to be used from two threads at once, which Python sees to.
template <class Band>
nb::class_<Band> addBand(nb::module_& module, const char* name) {
    return nb::class_<Band>(module, name)
        .def_static("of_field", bandOfField<Band>, nb::arg("values"), nb::arg("spacing"),
                    nb::arg("nan_is_outside"), nb::arg("width"), nb::arg("tell").none())
        .def_static("of_points", bandOfPoints<Band>, nb::arg("indices"), nb::arg("values"),
                    nb::arg("spacing"))
        .def("copy", [](const Band& band) { return Band(band); })
        .def("size", &Band::size)
        .def("spacing", Kind<Band>::spacingOf)
        .def("points", pointsOf<Band>)
        .def("to_field", fieldOf<Band>, nb::arg("shape"))
        .def("reinitialize", reinitializeBand<Band>, nb::arg("method"), nb::arg("width"),
             nb::arg("tell").none())
        .def("move_along_curvature", moveBandAlongCurvature<Band>, nb::arg("steps"), nb::arg("tell").none())
        .def("move_with_speed", moveBandWithSpeed<Band>, nb::arg("speeds"), nb::arg("time"))
        .def("curvature_flow", flowOfBand<Band>, nb::arg("time"), nb::arg("rate"), nb::arg("tell").none())
        .def("measure", measureBand<Band>, nb::arg("tell").none());
}

}  // namespace

void addBands(nb::module_& module) {
    addBand<FastLevelSet2D>(module, "Band2D").def("contours", extract, nb::arg("tolerance"));
    addBand<FastLevelSet3D>(module, "Band3D").def("mesh", extractMesh, nb::arg("tell").none());
}

}  // namespace quorbin::python
