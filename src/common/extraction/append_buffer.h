#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "common/storage/huge_pages.h"

namespace lset::detail {

/// Appends items to a vector through a small buffer. When the vector must grow, it gets room for all items
/// that are to be expected, judging by the part of the work that is done. So a long result is hardly ever
/// copied, and does not leave half its room unused.
template <class T>
class AppendBuffer {
 public:
    explicit AppendBuffer(std::vector<T>& target) : target_(target) {}
    ~AppendBuffer() = default;
    AppendBuffer(const AppendBuffer&) = delete;
    void operator=(const AppendBuffer&) = delete;

    std::size_t size() const { return target_.size() + used_; }

    /// Adds an item, to be filled in before the next call.
    T& next() {
        if (used_ == buffer_.size()) flush();
        return buffer_[used_++];
    }

    /// To be called when done of total equal parts of the work are finished.
    void progress(int done, int total) { partDone_ = static_cast<double>(done) / total; }

    /// Puts the items of the buffer into the vector; must follow the last item.
    void flush() {
        const std::size_t needed = target_.size() + used_;
        if (needed > target_.capacity()) {
            target_.reserve(std::max({needed, 2 * target_.capacity(), expected(needed)}));
            adviseHugePages(target_.data() + target_.size(),
                            (target_.capacity() - target_.size()) * sizeof(T));
        }
        target_.insert(target_.end(), buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(used_));
        used_ = 0;
    }

 private:
    /// The number of items to expect in all, given those so far. At least a sixteenth of the work counts as
    /// done: a first part with far more items than the rest must not make the vector huge.
    std::size_t expected(std::size_t soFar) const {
        if (partDone_ == 0) return soFar;
        const double whole = static_cast<double>(soFar) / std::max(partDone_, 1.0 / 16);
        return static_cast<std::size_t>(1.02 * whole);
    }

    std::vector<T>& target_;
    std::array<T, 512> buffer_;
    std::size_t used_ = 0;
    double partDone_ = 0.0;
};

}  // namespace lset::detail
