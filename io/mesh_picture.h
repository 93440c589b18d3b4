#pragma once

#include "documents.h"
#include "output_file.h"

namespace quorbin::io {

/// Where a mesh is looked at from, in degrees: 0, 0 is from +y with z up; the azimuth goes on to +x.
struct View {
    double azimuth = 30, elevation = 20;
};

/// Draws a mesh as a PNG, shaded by its normals, in parallel projection; its inside, where it is open,
/// darker. World units.
void writeMeshPicture(const MeshDocument& mesh, const View& view, OutputFile& out);

}  // namespace quorbin::io
