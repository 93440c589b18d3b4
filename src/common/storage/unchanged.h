#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lset::detail {

/// The values of a grid as they were before an operation that overwrites them from first to last. Those that
/// were kept are put back at the end of this object, unless they have been forgotten.
class ValuesBefore {
 public:
    /// Of so many values; 0 if nothing can end the operation.
    ValuesBefore(double* values, std::size_t count) : values_(values), isKept_(count > 0) {
        before_.reserve(count);
    }
    ~ValuesBefore() { std::copy(before_.begin(), before_.end(), values_); }
    ValuesBefore(const ValuesBefore&) = delete;
    void operator=(const ValuesBefore&) = delete;

    /// The next ones, which are about to be overwritten.
    void keep(const double* first, std::size_t count) {
        if (isKept_) before_.insert(before_.end(), first, first + count);
    }
    void forget() { before_.clear(); }

 private:
    double* values_;
    bool isKept_;
    std::vector<double> before_;
};

/// For grids that are thrown away where an operation ends.
struct NothingKept {
    static void keep(const double*, std::size_t) {}
};

}  // namespace lset::detail
