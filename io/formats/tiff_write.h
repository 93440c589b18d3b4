#pragma once

#include "../documents.h"
#include "../output_file.h"

namespace quorbin::io {

/// A page a layer: a field, marked as a level set, or a mask, white inside.
void writeTiff(const VolumeDocument& document, OutputFile& out);

/// The same of a picture, on one page.
void writeTiff(const PictureDocument& document, OutputFile& out);

}  // namespace quorbin::io
