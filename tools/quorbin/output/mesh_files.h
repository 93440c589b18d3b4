#pragma once

#include <string>
#include <vector>

#include <quorbin3d.h>

#include "output/output_file.h"

struct MeshDocument {
    std::vector<brin::Vec3<double>> vertices, normals;
    std::vector<gpoint3> triangles;
};

/// A format for meshes, by the ending of the file.
struct MeshWriter {
    const char* name;
    void (*write)(const MeshDocument& mesh, OutputFile& out);
};

/// Refuses what it does not know.
const MeshWriter& meshWriterFor(const std::string& path, const std::string& format);

void writeVtp(const MeshDocument& mesh, OutputFile& out);
