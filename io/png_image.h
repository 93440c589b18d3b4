#pragma once

#include <quorbin2d.h>

#include "output_file.h"

namespace quorbin::io {

/// Writes an image of one channel (grey) or three (red, green, blue) as PNG.
void writePng(const brin::Image<unsigned char>& image, OutputFile& out);

}  // namespace quorbin::io
