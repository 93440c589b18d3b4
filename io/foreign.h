#pragma once

#include "input_file.h"

namespace quorbin::io {

/// Refuses a file of a format that is known and not read, with what to do instead. Does nothing otherwise.
void refuseForeign(InputFile& file);

}  // namespace quorbin::io
