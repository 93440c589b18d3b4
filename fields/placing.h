#pragma once

#include <array>

#include "../io/image.h"

namespace quorbin::fields {

/// Gives samples other spacings; the first one stays where it is.
void respace(io::Placement& placement, const std::array<double, 3>& spacing);

/// Of samples of which the first was the one of an index before: all stay where they are. Where no matrix
/// placed them, one comes that does.
void startAt(io::Placement& placement, const std::array<int, 3>& index);

}  // namespace quorbin::fields
