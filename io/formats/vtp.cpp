#include <cstdint>

#include <fmt/format.h>

#include "formats.h"
#include "vtk_arrays.h"

namespace quorbin::io {

namespace {

void addVectors(Base64& text, const std::vector<brin::Vec3<double>>& vectors) {
    VtkArrays::begin(text, vectors.size() * 3 * sizeof(float));
    for (const auto& v : vectors) {
        const float components[3] = {static_cast<float>(v.x), static_cast<float>(v.y),
                                     static_cast<float>(v.z)};
        text.add(components, sizeof components);
    }
    text.finish();
}

void writeVtp(const MeshDocument& mesh, OutputFile& out) {
    const std::size_t vectorBytes = mesh.vertices.size() * 3 * sizeof(float);
    const std::size_t triangleBytes = mesh.triangles.size() * 3 * sizeof(std::int32_t);
    const std::size_t offsetBytes = mesh.triangles.size() * sizeof(std::int64_t);
    VtkArrays arrays;
    out.write(vtkFileStart("PolyData"));
    out.write(fmt::format("<PolyData>\n<Piece NumberOfPoints=\"{}\" NumberOfPolys=\"{}\">\n<Points>\n",
                          mesh.vertices.size(), mesh.triangles.size()));
    out.write(arrays.element("Float32", "Points", 3, vectorBytes));
    out.write("</Points>\n<PointData Normals=\"Normals\">\n");
    out.write(arrays.element("Float32", "Normals", 3, vectorBytes));
    out.write("</PointData>\n<Polys>\n");
    out.write(arrays.element("Int32", "connectivity", 1, triangleBytes));
    out.write(arrays.element("Int64", "offsets", 1, offsetBytes));
    out.write("</Polys>\n</Piece>\n</PolyData>\n");
    out.write(kVtkAppendedStart);
    Base64 text(out);
    addVectors(text, mesh.vertices);
    addVectors(text, mesh.normals);
    VtkArrays::begin(text, triangleBytes);
    for (const gpoint3& t : mesh.triangles) {
        const std::int32_t corners[3] = {t.first, t.second, t.third};
        text.add(corners, sizeof corners);
    }
    text.finish();
    VtkArrays::begin(text, offsetBytes);
    for (std::size_t i = 1; i <= mesh.triangles.size(); ++i) {
        const auto end = static_cast<std::int64_t>(3 * i);
        text.add(&end, sizeof end);
    }
    text.finish();
    out.write(kVtkFileEnd);
}

}  // namespace

Format vtpFormat() {
    Format format{"VTP", "vtp"};
    format.writeMesh = writeVtp;
    return format;
}

}  // namespace quorbin::io
