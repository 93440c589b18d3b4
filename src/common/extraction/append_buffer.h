#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "common/storage/huge_pages.h"

namespace lset::detail {

/// Appends to a vector through a small buffer. The vector grows to what the part done so far lets expect for
/// the whole, so that a long result is hardly ever copied and does not leave half its room unused.
template <class T>
class AppendBuffer {
 public:
    explicit AppendBuffer(std::vector<T>& target) : target_(target) {}
    ~AppendBuffer() = default;
    AppendBuffer(const AppendBuffer&) = delete;
    void operator=(const AppendBuffer&) = delete;

    std::size_t size() const { return target_.size() + used_; }

    /// The place of the next item, to be filled at once.
    T& next() {
        if (used_ == buffer_.size()) flush();
        return buffer_[used_++];
    }

    /// Says that done of total equal parts of the work are over.
    void progress(int done, int total) { partDone_ = static_cast<double>(done) / total; }

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
    /// A first part much unlike the rest must not make the vector huge.
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
