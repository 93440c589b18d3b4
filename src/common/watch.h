#pragma once

#include <algorithm>
#include <cstddef>

#include "progress.h"

namespace lset::detail {

/// Thrown where a progress function wants an operation to end, and caught where that began.
struct Ended {};

/// Watches an operation that nobody follows: costs nothing.
struct Unwatched {
    static void step() {}
};

/// Tells a progress function, which may be empty, about an operation of at most INT_MAX steps.
class Watch {
 public:
    Watch(const quorbin::Progress& progress, std::size_t all)
        : progress_(progress), all_(static_cast<int>(all)) {}

    void step() {
        if (++done_ % kStepsBetween == 0) tell(done_, all_);
    }
    void tell(int done, int all) const {
        if (progress_ && !progress_(done, all)) throw Ended();
    }

 private:
    static constexpr int kStepsBetween = 1 << 15;  // some milliseconds

    const quorbin::Progress& progress_;
    int done_ = 0, all_;
};

/// Tells a progress function, which may be empty, about an operation whose steps come in batches, in
/// thousandths of all of them.
class BatchWatch {
 public:
    BatchWatch(const quorbin::Progress& progress, std::size_t all) : progress_(progress), all_(all) {}

    void step(std::size_t count) {
        done_ += count;
        const std::size_t part = all_ > 0 ? std::min(done_, all_) * kParts / all_ : 0;
        if (part == told_ || !progress_) return;
        told_ = part;
        if (!progress_(static_cast<int>(part), kParts)) throw Ended();
    }

 private:
    static constexpr int kParts = 1000;

    const quorbin::Progress& progress_;
    std::size_t done_ = 0, all_, told_ = 0;
};

/// Does the work; whether it came to its end.
template <class Work>
bool isDoneToTheEnd(Work work) {
    try {
        work();
        return true;
    } catch (const Ended&) {
        return false;
    }
}

}  // namespace lset::detail
