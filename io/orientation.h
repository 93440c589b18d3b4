#pragma once

#include "image.h"
#include "input_file.h"

namespace quorbin::io {

/// How a picture is to be turned to be seen, by the numbers of TIFF and EXIF: 1 as it is, 2 mirrored left to
/// right, 3 by half a turn, 4 upside down, 5 with rows for columns, 6 by a quarter to the right, 7 as 5 and
/// then by half a turn, 8 by a quarter to the left. Each page of a stack is turned; other numbers do nothing.
void orient(Image& image, int orientation);
inline bool isTurned(int orientation) { return orientation >= 2 && orientation <= 8; }

/// The orientation that a JPEG's EXIF data has, or 1.
int exifOrientation(const Bytes& jpeg);

}  // namespace quorbin::io
