#pragma once

#include <functional>

namespace quorbin {

/// Told by a long operation how much of it is done, in parts of all; returns whether it goes on. Called every
/// few milliseconds in the caller's thread, with the same all and as much done as before or more; when it
/// returns false or throws, the operation ends, and what it works on is as it was before. An empty one is
/// never called.
using Progress = std::function<bool(int done, int all)>;

}  // namespace quorbin
