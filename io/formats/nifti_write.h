#pragma once

#include "../documents.h"
#include "../output_file.h"

namespace quorbin::io {

/// A field, marked as a level set, or a mask of 0 and 1, placed as the source was.
void writeNifti(const VolumeDocument& document, OutputFile& out);
void writeCompressedNifti(const VolumeDocument& document, OutputFile& out);

}  // namespace quorbin::io
