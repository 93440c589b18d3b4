#pragma once

#include "../documents.h"
#include "../output_file.h"

namespace quorbin::io {

/// A page a layer, marked as a level set.
void writeTiff(const VolumeDocument& document, OutputFile& out);

}  // namespace quorbin::io
