#include <nanobind/nanobind.h>
#include <nanobind/stl/array.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/tuple.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "arrays.h"
#include "failures.h"
#include "families.h"
#include "fields/from_samples.h"
#include "io/format.h"
#include "watch.h"

namespace quorbin::python {

namespace {

using Affine = std::vector<std::vector<double>>;

std::string pathOf(const nb::bytes& path) { return {path.c_str(), path.size()}; }

/// What turns x, y, z into z, y, x, and back, on both sides of a matrix.
Affine turned(const io::Affine& affine) {
    Affine rows(4, std::vector<double>(4));
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) rows[2 - row][2 - column] = affine[row][column];
        rows[2 - row][3] = affine[row][3];
    }
    rows[3][3] = 1;
    return rows;
}

io::Affine turned(const Affine& rows) {
    io::Affine affine{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) affine[row][column] = rows[2 - row][2 - column];
        affine[row][3] = rows[2 - row][3];
    }
    return affine;
}

/// Sizes along the axes, the last of which is x, and the type of samples.
using RawSamples = std::pair<std::array<long long, 3>, std::string>;

io::Image readFrom(const std::string& path, const std::optional<RawSamples>& raw,
                   const io::ReadOptions& options) {
    io::InputFile file(path);
    if (raw) return io::readRaw(file, {{raw->first[2], raw->first[1], raw->first[0]}, raw->second}, options);
    if (file.hasEnding("raw")) io::refuse("has no header; say by raw=(shape, type) what its samples are");
    return io::readImage(file, options);
}

/// How samples become a field: (level, inside above it, between, label), each of which may be None.
using Rule = std::tuple<std::optional<double>, std::optional<bool>, std::optional<std::pair<double, double>>,
                        std::optional<double>>;

/// Returns (values, spacing, affine, is_field, format, notes); values are samples, or the field of them.
nb::tuple readFile(const nb::bytes& pathBytes, const std::string& channel, std::optional<long long> frame,
                   std::optional<long long> series, std::optional<double> nan,
                   const std::optional<RawSamples>& raw, const std::optional<Rule>& rule, nb::handle tell) {
    const std::string path = pathOf(pathBytes);
    io::Image image;
    {
        Watch watch(tell);
        const nb::gil_scoped_release unlocked;
        aboutFile(path, [&] {
            image = readFrom(path, raw, {channel, frame, series, nan, watch.progress()});
            if (!rule) return;
            fields::FieldOptions options;
            std::tie(options.level, options.insideAbove, options.between, options.label) = *rule;
            std::string note;
            std::vector<double>& samples = image.samples;
            const fields::FieldRule field(fields::samplesOf(samples), image.isField, options, note);
            field.apply(samples.data(), samples.size(), samples.data());
            image.isField = true;
            if (!note.empty()) image.notes.push_back(note);
        });
    }
    const auto size = [](int n) { return static_cast<std::size_t>(n); };
    const auto [hx, hy, hz] = image.placement.spacing;
    std::vector<std::size_t> shape = {size(image.height), size(image.width)};
    std::vector<double> spacing = {hy, hx};
    if (image.isVolume) {
        shape.insert(shape.begin(), size(image.depth));
        spacing.insert(spacing.begin(), hz);
    }
    std::optional<Affine> affine;
    if (image.placement.affine) affine = turned(*image.placement.affine);
    return nb::make_tuple(arrayOf(std::move(image.samples), std::move(shape)), spacing, affine, image.isField,
                          image.format, image.notes);
}

enum class Written { kField, kMask, kGreys };

/// The samples of a picture in greys.
io::Image greysOf(const FullLevelSet2D& values) {
    io::Image picture;
    io::setPictureSize(picture, values.getWidth(), values.getHeight());
    std::copy_n(values.data(), picture.samples.size(), picture.samples.begin());
    return picture;
}

/// kind is one of Written.
void writeField(const nb::bytes& pathBytes, const Values& values, const Spacing& spacing,
                const std::optional<Affine>& affine, int kind, bool isFloat) {
    const std::string path = pathOf(pathBytes);
    const auto written = static_cast<Written>(kind);
    const auto formatFor = [&](io::Kind field, io::Kind mask) -> const io::Format& {
        const io::Format& format = io::outputFormat(written == Written::kMask ? mask : field, path, "", "");
        if (isFloat && !format.writesFloats)
            io::refuse("float32 goes with {} and not with {}; leave it out", io::endingsOfFloats(),
                       format.name);
        return format;
    };
    readGrid(values, spacing, [&](const auto& grid) {
        const nb::gil_scoped_release unlocked;
        aboutFile(path, [&] {
            if constexpr (std::is_same_v<std::decay_t<decltype(grid)>, FullLevelSet2D>) {
                const io::Format& format = formatFor(io::Kind::kPicture, io::Kind::kMask);
                io::OutputFile file(path, true);
                io::Image greys;
                io::PictureDocument document{grid};
                document.isFloat = isFloat;
                if (written == Written::kMask) document.drawing = io::Drawing::kMask;
                if (written == Written::kGreys) {
                    greys = greysOf(grid);
                    document.picture = &greys;
                    document.drawing = io::Drawing::kPicture;
                }
                format.writePicture(document, file);
                file.commit();
            } else {
                const io::Format& format = formatFor(io::Kind::kVolume, io::Kind::kVolumeMask);
                io::OutputFile file(path, true);
                io::Placement placement;
                placement.spacing = {grid.getXSpace(), grid.getYSpace(), grid.getZSpace()};
                if (affine) {
                    constexpr int kAsAnotherFile = 2;
                    placement.affine = turned(*affine);
                    placement.placeCode = kAsAnotherFile;
                }
                format.writeVolume({grid, placement, written == Written::kMask, isFloat}, file);
                file.commit();
            }
        });
    });
}

using Points = nb::ndarray<const double, nb::ndim<2>, nb::c_contig, nb::device::cpu>;
using Faces = nb::ndarray<const int, nb::ndim<2>, nb::c_contig, nb::device::cpu>;

brin::Vec2<double> planePoint(const double* p) { return {p[1], p[0]}; }
brin::Vec3<double> spacePoint(const double* p) { return {p[2], p[1], p[0]}; }

/// Points (y, x) of rings, which do not repeat their first one, and of open lines. roles says of each in turn
/// whether it is an outline (0), a hole in the last outline (1), or an open line (2).
void writeOutlines(const nb::bytes& pathBytes, const std::vector<Points>& lines,
                   const std::vector<int>& roles, int width, int height, const Spacing& spacing) {
    const std::string path = pathOf(pathBytes);
    std::vector<Polygon> regions;
    std::vector<Ring> open;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Ring ring;
        for (std::size_t p = 0; p < lines[i].shape(0); ++p)
            ring.push_back(planePoint(lines[i].data() + 2 * p));
        if (roles[i] == 2)
            open.push_back(std::move(ring));
        else if (roles[i] == 1)
            regions.back().holes.push_back(std::move(ring));
        else
            regions.push_back({std::move(ring), {}});
    }
    const nb::gil_scoped_release unlocked;
    aboutFile(path, [&] {
        const io::Format& format = io::outputFormat(io::Kind::kPicture, path, "", "");
        if (format.writeOutline == nullptr)
            io::refuse("{} is no format of outlines; end it in svg, geojson or csv", format.name);
        io::OutputFile file(path, true);
        const auto visit = [&](const io::TakeRegion& takeRegion, const io::TakeLine& takeLine) {
            for (Polygon& region : regions) takeRegion(std::move(region));
            for (Ring& line : open) takeLine(std::move(line));
        };
        format.writeOutline({width, height, spacing.back(), spacing.front(), !open.empty(), visit}, file);
        file.commit();
    });
}

/// Vertices and normals (z, y, x); files have (x, y, z), in which faces run the other way round.
void writeMesh(const nb::bytes& pathBytes, const Points& vertices, const Faces& faces,
               const Points& normals) {
    const std::string path = pathOf(pathBytes);
    io::MeshDocument mesh;
    mesh.vertices.reserve(vertices.shape(0));
    mesh.normals.reserve(vertices.shape(0));
    mesh.triangles.reserve(faces.shape(0));
    for (std::size_t i = 0; i < vertices.shape(0); ++i) {
        mesh.vertices.push_back(spacePoint(vertices.data() + 3 * i));
        mesh.normals.push_back(spacePoint(normals.data() + 3 * i));
    }
    for (std::size_t i = 0; i < faces.shape(0); ++i) {
        const int* const face = faces.data() + 3 * i;
        mesh.triangles.push_back({face[0], face[2], face[1]});
    }
    const nb::gil_scoped_release unlocked;
    aboutFile(path, [&] {
        const io::Format& format = io::outputFormat(io::Kind::kMesh, path, "", "");
        io::OutputFile file(path, true);
        format.writeMesh(mesh, file);
        file.commit();
    });
}

}  // namespace

void addFiles(nb::module_& module) {
    nb::register_exception_translator(
        [](const std::exception_ptr& thrown, void*) {
            try {
                std::rethrow_exception(thrown);
            } catch (const io::Failure& failure) {
                raiseFailure(failure);
            }
        },
        nullptr);
    module.def("read", readFile, nb::arg("path"), nb::arg("channel"), nb::arg("frame").none(),
               nb::arg("series").none(), nb::arg("nan").none(), nb::arg("raw").none(), nb::arg("rule").none(),
               nb::arg("tell").none());
    module.def("write_field", writeField, nb::arg("path"), nb::arg("values"), nb::arg("spacing"),
               nb::arg("affine").none(), nb::arg("kind"), nb::arg("is_float"));
    module.def("write_outlines", writeOutlines, nb::arg("path"), nb::arg("lines"), nb::arg("roles"),
               nb::arg("width"), nb::arg("height"), nb::arg("spacing"));
    module.def("write_mesh", writeMesh, nb::arg("path"), nb::arg("vertices"), nb::arg("faces"),
               nb::arg("normals"));
}

}  // namespace quorbin::python
