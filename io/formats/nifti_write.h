#pragma once

#include "../documents.h"
#include "../output_file.h"

namespace quorbin::io {

/// Doubles, placed as the source was, and marked as a level set.
void writeNifti(const VolumeDocument& document, OutputFile& out);
void writeCompressedNifti(const VolumeDocument& document, OutputFile& out);

}  // namespace quorbin::io
