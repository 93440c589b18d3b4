#pragma once

namespace lset::detail {

/// Reports an update of an id that is not in the heap and ends the process with status 0.
[[noreturn]] void failUpdateOfAbsent(int id, double value);

}  // namespace lset::detail
