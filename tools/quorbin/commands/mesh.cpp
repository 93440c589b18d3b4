#include <algorithm>
#include <cmath>
#include <memory>

#include <quorbin3d.h>

#include "failure.h"
#include "field_from_picture.h"
#include "formats/volume.h"
#include "options.h"
#include "output/mesh_files.h"

namespace {

struct MeshCommand {
    std::string input, output, format;
    std::optional<double> level;
    std::optional<bool> insideAbove;
    bool isInIndexUnits = false, byAffine = false, soup = false, cap = false, force = false, quiet = false;

    void run() const {
        const MeshWriter& writer = meshWriterFor(output, format);
        OutputFile file(output, force);
        const Volume volume = readVolume(input);
        if (byAffine && !volume.affine) refuse("{}: places its voxels nowhere; leave out --affine", input);
        FullLevelSet3D field;
        makeField(volume, field);
        MeshDocument mesh;
        if (soup)
            field.getTriangles(mesh.vertices, mesh.normals, mesh.triangles);
        else
            (cap ? getTrianglesCapped : getTrianglesUnique)(field, mesh.vertices, mesh.normals,
                                                            mesh.triangles);
        if (mesh.triangles.empty())
            throw Failure(kNoCrossing, fmt::format("{}: has no surface; choose another --level", input));
        reportMesh(volume, mesh);
        place(volume, mesh);
        writer.write(mesh, file);
        file.commit();
    }

 private:
    template <class... Args>
    void report(fmt::format_string<Args...> line, Args&&... args) const {
        if (!quiet) fmt::print("{}: {}\n", input, fmt::format(line, std::forward<Args>(args)...));
    }

    void makeField(const Volume& volume, FullLevelSet3D& field) const {
        const auto [hx, hy, hz] = volume.spacing;
        field.init(volume.width, volume.height, volume.depth, hx, hy, hz);
        if (field.getWidth() != volume.width)
            throw Failure(kFailed, fmt::format("{}: does not fit into memory", input));
        double threshold = 0;
        if (level) {
            threshold = *level;
        } else if (!volume.isField) {
            threshold = otsuLevel(volume.samples);
            report("level {} (Otsu)", threshold);
        }
        const bool above = insideAbove.value_or(!volume.isField);
        std::transform(volume.samples.begin(), volume.samples.end(), field.data(),
                       [=](double value) { return above ? threshold - value : value - threshold; });
    }

    void reportMesh(const Volume& volume, const MeshDocument& mesh) const {
        const auto [hx, hy, hz] = volume.spacing;
        report("{}, {} vertices, area {:.7g}{} in units of the spacing",
               counted(mesh.triangles.size(), "triangle"), mesh.vertices.size(),
               surfaceArea(mesh.vertices, mesh.triangles, hx, hy, hz),
               soup ? ""
                    : fmt::format(", enclosed volume {:.7g}",
                                  enclosedVolume(mesh.vertices, mesh.triangles, hx, hy, hz)));
    }

    /// Takes vertices from index to world units. Normals are gradients there already: with a matrix A they go by its inverse
    /// transpose.
    void place(const Volume& volume, MeshDocument& mesh) const {
        const auto& h = volume.spacing;
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
            const auto& a = (*volume.affine)[static_cast<std::size_t>(r)];
            row[r] = {a[0], a[1], a[2]};
        }
        const auto offset = [&](std::size_t r) { return (*volume.affine)[r][3]; };
        const double determinant = dot(row[0], cross(row[1], row[2]));
        if (determinant == 0) refuse("{}: places its voxels in a plane; leave out --affine", input);
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
    CLI::App& command =
        addCommand(app, "mesh", "mesh head.nii.gz -o head.ply --cap",
                   "Writes the surface in a volume (NIfTI, FL3D, FR3D, 3D NPY) as a mesh of triangles, "
                   "counterclockwise seen from\n"
                   "outside, with normals (PLY, OBJ) and shared vertices, in units of the spacing.",
                   [mesh] { mesh->run(); });
    command.add_option("INPUT", mesh->input, "NIfTI (.nii, .nii.gz), FL3D, FR3D or 3D NPY file")->required();
    command
        .add_option("-o,--output", mesh->output, "file to write: .ply, .stl or .obj; - for standard output")
        ->required();
    command.add_option("--format", mesh->format, "instead of the ending: ply, stl or obj");
    command.add_option_function<double>(
        "--level",
        [mesh](double level) {
            if (!std::isfinite(level)) refuse("--level: give a number");
            mesh->level = level;
        },
        "intensity at the surface (default: Otsu's threshold), or value of a field");
    command
        .add_option_function<std::string>(
            "--inside", [mesh](const std::string& side) { mesh->insideAbove = side == "above"; },
            "what is inside: above (an image's default) or below the level (a field's)")
        ->check(CLI::IsMember({"above", "below"}))
        ->type_name("above|below");
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
    command.add_flag("--force,-f", mesh->force, "overwrite an existing file");
    command.add_flag("--quiet,-q", mesh->quiet, "print nothing but errors");
}
