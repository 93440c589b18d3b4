#pragma once

#include <cstddef>

#include "common/files/file.h"

namespace lset::detail {

/// Writes the tag of the coding and values as runs of a byte, five bytes each. False if that fails.
bool writeRuns(const double* values, std::size_t count, File& file);

/// Reads what writeRuns writes, into zeros. False, with what has come so far, when the tag is another, the
/// runs end early, or one is of no values. A negative run stores nothing; what a run has beyond the last
/// value is left out.
bool readRuns(double* values, std::size_t count, File& file);

}  // namespace lset::detail
