#pragma once

#include <quorbin2d.h>

#include "output/output_file.h"

/// Writes an image of one channel (grey) or three (red, green, blue) as PNG.
void writePng(const brin::Image<unsigned char>& image, OutputFile& out);
