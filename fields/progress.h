#pragma once

#include <functional>

namespace quorbin::fields {

/// Told how much of a long operation is done, in parts of all; may be empty.
using ProgressFunction = std::function<void(int done, int all)>;

}  // namespace quorbin::fields
