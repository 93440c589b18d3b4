#pragma once

#include "../documents.h"
#include "../output_file.h"

namespace quorbin::io {

/// The picture with the contour over it; without a picture the field in colours, with its zero line.
void drawPng(const PictureDocument& document, OutputFile& out);
void drawPdf(const PictureDocument& document, OutputFile& out);

}  // namespace quorbin::io
