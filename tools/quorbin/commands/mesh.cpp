#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <quorbin3d.h>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "fields/band.h"
#include "fields/label_mesh.h"
#include "io/failure.h"
#include "io/mesh_picture.h"

namespace quorbin::tool {

namespace {

/// Leaves the triangles between the origin and the point at the other end, with their vertices.
void clip(MeshDocument& mesh, const brin::Vec3<double>& end) {
    constexpr int kGone = -1;
    std::vector<int> newIndex(mesh.vertices.size(), kGone);
    const auto isWithin = [&](int index) {
        const auto& v = mesh.vertices[static_cast<std::size_t>(index)];
        return v.x >= 0 && v.y >= 0 && v.z >= 0 && v.x <= end.x && v.y <= end.y && v.z <= end.z;
    };
    MeshDocument kept;
    const auto keep = [&](int index) {
        const auto i = static_cast<std::size_t>(index);
        if (newIndex[i] == kGone) {
            newIndex[i] = static_cast<int>(kept.vertices.size());
            kept.vertices.push_back(mesh.vertices[i]);
            kept.normals.push_back(mesh.normals[i]);
        }
        return newIndex[i];
    };
    for (const gpoint3& t : mesh.triangles)
        if (isWithin(t.first) && isWithin(t.second) && isWithin(t.third)) {
            const int first = keep(t.first), second = keep(t.second);
            kept.triangles.push_back({first, second, keep(t.third)});
        }
    mesh = std::move(kept);
}

/// Whether every edge is there once in each direction.
bool isClosedMesh(const MeshDocument& mesh) {
    std::vector<std::pair<int, int>> edges, opposite;
    for (const gpoint3& t : mesh.triangles)
        for (const auto& [from, to] :
             {std::pair{t.first, t.second}, {t.second, t.third}, {t.third, t.first}}) {
            edges.emplace_back(from, to);
            opposite.emplace_back(to, from);
        }
    std::sort(edges.begin(), edges.end());
    std::sort(opposite.begin(), opposite.end());
    return edges == opposite;
}

struct MeshCommand : FieldCommand {
    std::string picture;
    bool wasGivenPicture = false;
    View view;
    bool isInIndexUnits = false, byAffine = false, soup = false, cap = false, onBand = false;

    void nameAfterLabel(double label) {
        FieldCommand::nameAfterLabel(label);
        if (!picture.empty()) picture = withSuffix(picture, fmt::format("{}", label));
    }
    void requireNewFiles() const {
        FieldCommand::requireNewFiles();
        if (!picture.empty()) OutputFile(picture, force);
    }

    void run() {
        needsSamples = field.label.has_value();
        if (!isGivenVolume()) refuse("{}: is a picture; quorbin contour takes it", input);
        if (wasGivenPicture && picture.empty()) refuse("--picture: has an empty name; name a PNG file");
        if (wasGivenPicture && batch->hasMany) refuse("--picture {}: is of one input; give one", picture);
        requirePng(picture, output);
        Result result(*this, Kind::kMesh, "ply");
        std::optional<OutputFile> pictureFile;
        if (!picture.empty()) pictureFile.emplace(picture, force);
        FullLevelSet3D levelSet;
        const io::Image volume = readWithCrossing(levelSet);
        if (byAffine && !volume.placement.affine)
            refuse("{}: places its voxels nowhere; leave out --affine", input);
        MeshDocument mesh;
        if (onBand && !suitsABand({levelSet.getXSpace(), levelSet.getYSpace(), levelSet.getZSpace()}))
            refuse("{}: its spacings differ too much for a band; leave out --band", input);
        if (onBand || !field.label) smoothIfMask(levelSet);
        if (onBand)
            meshBand(levelSet, mesh);
        else if (field.label)
            meshLabel(volume.samples, levelSet, mesh);
        else
            meshGrid(levelSet, mesh);
        if (mesh.triangles.empty())
            throw Failure(kNoCrossing, fmt::format("{}: has no surface; choose another --level", input));
        const Spacings spacings = {levelSet.getXSpace(), levelSet.getYSpace(), levelSet.getZSpace()};
        place(volume, spacings, mesh);
        reportMesh(mesh);
        if (pictureFile) writeMeshPicture(mesh, view, *pictureFile);
        result.write(mesh);
        if (!pictureFile) return;
        pictureFile->commit();
        record->addWritten(picture);
    }

 private:
    using Spacings = std::array<double, 3>;

    void meshGrid(FullLevelSet3D& levelSet, MeshDocument& mesh) const {
        Progress progress(!quiet);
        if (soup)
            levelSet.getTriangles(mesh.vertices, mesh.normals, mesh.triangles);
        else if (cap)
            quorbin::getTrianglesCapped(levelSet, mesh.vertices, mesh.normals, mesh.triangles,
                                        progress.function());
        else
            quorbin::getTrianglesUnique(levelSet, mesh.vertices, mesh.normals, mesh.triangles,
                                        progress.function());
    }

    void meshLabel(const std::vector<double>& labels, const FullLevelSet3D& levelSet,
                   MeshDocument& mesh) const {
        Progress progress(!quiet);
        mesh = *meshOfLabel(labels, levelSet, *field.label, cap, progress.function());
        if (!soup) return;
        MeshDocument apart;
        for (const gpoint3& t : mesh.triangles) {
            for (const int index : {t.first, t.second, t.third}) {
                apart.vertices.push_back(mesh.vertices[static_cast<std::size_t>(index)]);
                apart.normals.push_back(mesh.normals[static_cast<std::size_t>(index)]);
            }
            const int last = static_cast<int>(apart.vertices.size()) - 1;
            apart.triangles.push_back({last - 2, last - 1, last});
        }
        mesh = std::move(apart);
    }

    void meshBand(const FullLevelSet3D& levelSet, MeshDocument& mesh) const {
        FastLevelSet3D band = quorbin::bandOf(levelSet, false);
        {
            Progress progress(!quiet);
            quorbin::reinitialize(band, {0, progress.function()});
        }
        if (soup)
            band.getTriangles(mesh.vertices, mesh.normals, mesh.triangles);
        else
            quorbin::getTrianglesUnique(band, mesh.vertices, mesh.normals, mesh.triangles);
        clip(mesh, {levelSet.getWidth() - 1.0, levelSet.getHeight() - 1.0, levelSet.getDepth() - 1.0});
    }

    void reportMesh(const MeshDocument& mesh) const {
        const char* units = isInIndexUnits ? "index units"
                            : byAffine     ? "units of the matrix"
                                           : "units of the spacing";
        const double area = quorbin::surfaceArea(mesh.vertices, mesh.triangles);
        const bool isClosed = !soup && isClosedMesh(mesh);
        record->add("triangles", mesh.triangles.size());
        record->add("vertices", mesh.vertices.size());
        record->add("area", area);
        if (isClosed) record->add("volume", quorbin::enclosedVolume(mesh.vertices, mesh.triangles));
        record->add("units", units);
        report("{}: {}, {} vertices, area {:.7g}{} in {}", input, counted(mesh.triangles.size(), "triangle"),
               mesh.vertices.size(), area,
               isClosed ? fmt::format(", enclosed volume {:.7g}",
                                      quorbin::enclosedVolume(mesh.vertices, mesh.triangles))
                        : std::string(soup ? "" : ", open"),
               units);
    }

    /// Takes vertices from index to world units. Normals are gradients there already: with a matrix A they go
    /// by its inverse transpose.
    void place(const io::Image& volume, const Spacings& h, MeshDocument& mesh) const {
        const auto normalised = [](const brin::Vec3<double>& n) {
            const double length = std::sqrt(dot(n, n));
            return length > 0 ? n / length : n;
        };
        if (isInIndexUnits) {
            for (auto& n : mesh.normals) n = normalised({n.x * h[0], n.y * h[1], n.z * h[2]});
            return;
        }
        if (!byAffine) {
            for (auto& v : mesh.vertices) v = {v.x * h[0], v.y * h[1], v.z * h[2]};
            return;
        }
        brin::Vec3<double> row[3];
        for (int r = 0; r < 3; ++r) {
            const auto& a = (*volume.placement.affine)[static_cast<std::size_t>(r)];
            row[r] = {a[0], a[1], a[2]};
        }
        const auto offset = [&](std::size_t r) { return (*volume.placement.affine)[r][3]; };
        const double determinant = dot(row[0], cross(row[1], row[2]));
        if (!(std::abs(determinant) > 0))
            refuse("{}: places its voxels in a plane; leave out --affine", input);
        const brin::Vec3<double> cofactor[3] = {cross(row[1], row[2]), cross(row[2], row[0]),
                                                cross(row[0], row[1])};
        for (auto& v : mesh.vertices)
            v = {dot(row[0], v) + offset(0), dot(row[1], v) + offset(1), dot(row[2], v) + offset(2)};
        for (auto& n : mesh.normals) {
            const brin::Vec3<double> inIndex(n.x * h[0], n.y * h[1], n.z * h[2]);
            const double sign = determinant > 0 ? 1 : -1;
            n = normalised({sign * dot(cofactor[0], inIndex), sign * dot(cofactor[1], inIndex),
                            sign * dot(cofactor[2], inIndex)});
        }
        // A reflection turns triangles over.
        if (determinant < 0)
            for (gpoint3& t : mesh.triangles) std::swap(t.second, t.third);
    }
};

}  // namespace

void addMesh(CLI::App& app) {
    auto mesh = std::make_shared<MeshCommand>();
    CLI::App& command = addCommand(
        app, "mesh", "mesh head.nii.gz -o head.ply --cap --picture head.png",
        "Writes the surface in a volume as a mesh of triangles, counterclockwise seen from outside, with "
        "normals\n(PLY, OBJ, VTP) and shared vertices, in units of the spacing.",
        [mesh] { runEach(*mesh); });
    mesh->addInput(command);
    mesh->addVolume(command);
    mesh->addOutput(command, true, {Kind::kMesh});
    mesh->addPixels(command);
    auto* units =
        command
            .add_option_function<std::string>(
                "--units", [mesh](const std::string& text) { mesh->isInIndexUnits = text == "index"; },
                "world: index x spacing (default), or index")
            ->check(CLI::IsMember({"world", "index"}))
            ->type_name("world|index");
    command.add_flag("--affine", mesh->byAffine, "place the mesh where the file's matrix says")
        ->excludes(units);
    auto* soup = command.add_flag("--soup", mesh->soup, "three vertices of its own for each triangle");
    command.add_flag("--cap", mesh->cap, "close the surface where it leaves the volume")->excludes(soup);
    command
        .add_flag("--band", mesh->onBand,
                  "of the signed distance on a narrow band, which has smoother normals")
        ->excludes("--cap");
    auto* picture = command.add_option("--picture", mesh->picture, "draw the mesh into a PNG file, too")
                        ->type_name("FILE")
                        ->each([mesh](const std::string&) { mesh->wasGivenPicture = true; });
    command
        .add_option_function<std::string>(
            "--view",
            [mesh](const std::string& text) {
                char rest = 0;
                if (std::sscanf(text.c_str(), "%lf,%lf%c", &mesh->view.azimuth, &mesh->view.elevation,
                                &rest) != 2 ||
                    !(std::abs(mesh->view.azimuth) <= 360 && std::abs(mesh->view.elevation) <= 90))
                    refuse(
                        "--view {}: is no view; give an azimuth to 360 and an elevation to 90 degrees, as in "
                        "30,20",
                        text);
            },
            "where the picture is seen from, in degrees: 0,0 from +y with z up, 90,0 from +x (default 30,20)")
        ->type_name("AZIMUTH,ELEVATION")
        ->needs(picture);
}

}  // namespace quorbin::tool
