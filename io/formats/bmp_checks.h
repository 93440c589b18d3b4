#pragma once

#include "../input_file.h"

namespace quorbin::io {

bool isBmp(const Bytes& start);

/// Refuses a BMP that ends too early, which ITK fills with what memory holds, and those of fewer bits a point
/// than 8, which it takes for others.
void refuseOddBmp(const Bytes& bytes);

}  // namespace quorbin::io
