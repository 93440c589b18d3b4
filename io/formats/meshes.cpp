#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

#include <fmt/format.h>

#include "formats.h"

namespace quorbin::io {

namespace {

/// Bytes on their way to a file, in blocks.
class Block {
 public:
    explicit Block(OutputFile& out) : out_(out) {}
    ~Block() = default;
    Block(const Block&) = delete;
    void operator=(const Block&) = delete;

    template <class T>
    void add(T value) {
        const char* bytes = reinterpret_cast<const char*>(&value);
        bytes_.insert(bytes_.end(), bytes, bytes + sizeof value);
        if (bytes_.size() > 1 << 16) flush();
    }
    void add(const brin::Vec3<double>& v) {
        for (int axis = 0; axis < 3; ++axis) add(static_cast<float>(v[axis]));
    }
    void flush() {
        out_.write(bytes_.data(), bytes_.size());
        bytes_.clear();
    }

 private:
    OutputFile& out_;
    std::vector<char> bytes_;
};

const brin::Vec3<double>& at(const std::vector<brin::Vec3<double>>& points, int index) {
    return points[static_cast<std::size_t>(index)];
}

void writePly(const MeshDocument& mesh, OutputFile& out) {
    out.write(fmt::format(
        "ply\nformat binary_little_endian 1.0\nelement vertex {}\nproperty float x\nproperty float "
        "y\nproperty float z\nproperty float nx\nproperty float ny\nproperty float nz\nelement face "
        "{}\nproperty list uchar int vertex_indices\nend_header\n",
        mesh.vertices.size(), mesh.triangles.size()));
    Block block(out);
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        block.add(mesh.vertices[i]);
        block.add(mesh.normals[i]);
    }
    for (const gpoint3& t : mesh.triangles) {
        block.add(std::uint8_t{3});
        for (const int index : {t.first, t.second, t.third}) block.add(std::int32_t{index});
    }
    block.flush();
}

void writeStl(const MeshDocument& mesh, OutputFile& out) {
    std::string header = "quorbin";
    header.resize(80, ' ');
    out.write(header);
    Block block(out);
    block.add(static_cast<std::uint32_t>(mesh.triangles.size()));
    for (const gpoint3& t : mesh.triangles) {
        const auto &a = at(mesh.vertices, t.first), &b = at(mesh.vertices, t.second),
                   &c = at(mesh.vertices, t.third);
        const brin::Vec3<double> normal = cross(b - a, c - a);
        const double length = std::sqrt(dot(normal, normal));
        block.add(length > 0 ? normal / length : normal);
        for (const auto& corner : {a, b, c}) block.add(corner);
        block.add(std::uint16_t{0});
    }
    block.flush();
}

void writeObj(const MeshDocument& mesh, OutputFile& out) {
    std::string text;
    const auto line = [&](const char* kind, const brin::Vec3<double>& v) {
        fmt::format_to(std::back_inserter(text), "{} {:.9g} {:.9g} {:.9g}\n", kind, v.x, v.y, v.z);
    };
    for (const auto& vertex : mesh.vertices) line("v", vertex);
    for (const auto& normal : mesh.normals) line("vn", normal);
    for (const gpoint3& t : mesh.triangles)
        fmt::format_to(std::back_inserter(text), "f {0}//{0} {1}//{1} {2}//{2}\n", t.first + 1, t.second + 1,
                       t.third + 1);
    out.write(text);
}

}  // namespace

Format plyFormat() {
    Format format{"PLY", "ply"};
    format.writeMesh = writePly;
    return format;
}

Format stlFormat() {
    Format format{"STL", "stl"};
    format.writeMesh = writeStl;
    return format;
}

Format objFormat() {
    Format format{"OBJ", "obj"};
    format.writeMesh = writeObj;
    return format;
}

}  // namespace quorbin::io
