#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "progress.h"

namespace lset::detail {

/// Thrown where a progress function wants an operation to end, and caught where that began.
struct Ended {};

/// A stretch of a long operation, of which progress is told in millionths of the whole. A stretch is told of
/// in steps of about ten nanoseconds to a microsecond, or cut into parts; one without extent only asks
/// whether to go on. Where progress is empty nothing is counted.
class Stretch {
 public:
    /// What all stretches of an operation have in common.
    struct Listener {
        const quorbin::Progress& progress;
        std::size_t untold = 0;  // steps
        int told = 0;
    };

    explicit Stretch(Listener& listener) : Stretch(listener.progress ? &listener : nullptr, 0, 1) {}
    /// One that nobody follows.
    Stretch() : Stretch(nullptr, 0, 0) {}

    bool isFollowed() const { return listener_ != nullptr; }

    /// From one share of this stretch to another.
    Stretch part(double from, double to) const { return {listener_, at(from), at(to)}; }

    /// Sets out on so many steps; more than these leave the stretch at its end.
    void expect(std::size_t steps) {
        all_ = steps;
        done_ = 0;
    }
    void step(std::size_t count = 1) {
        if (!isFollowed()) return;
        done_ += count;
        listener_->untold += count;
        if (listener_->untold >= kUntold)
            tell(all_ > 0 ? static_cast<double>(std::min(done_, all_)) / static_cast<double>(all_) : 0);
    }

    /// A step that is told of at once.
    void tellStep() {
        ++done_;
        if (isFollowed()) tell(static_cast<double>(done_) / static_cast<double>(std::max(all_, done_)));
    }

    /// Tells that a share of the stretch is done, and asks whether to go on.
    void tell(double share) const {
        if (!isFollowed()) return;
        listener_->untold = 0;
        listener_->told = std::max(listener_->told, static_cast<int>(kParts * at(share)));
        if (!listener_->progress(listener_->told, kParts)) throw Ended();
    }

    /// To hand to an operation that this stretch is for.
    quorbin::Progress function() const {
        if (!isFollowed()) return {};
        return [stretch = *this](int done, int all) {
            stretch.tell(all > 0 ? static_cast<double>(done) / all : 1);
            return true;
        };
    }

 private:
    static constexpr std::size_t kUntold = 1 << 14;  // at most some milliseconds
    static constexpr int kParts = 1000000;

    Stretch(Listener* listener, double from, double to) : listener_(listener), from_(from), to_(to) {}

    double at(double share) const { return from_ + share * (to_ - from_); }

    Listener* listener_;
    double from_, to_;
    std::size_t done_ = 0, all_ = 0;
};

/// Watches a march that nobody follows: costs nothing.
struct Unwatched {
    Unwatched() = default;
    explicit Unwatched(const Stretch&) {}
    static void step() {}
};

/// Steps of a march over a grid of at most INT_MAX points, each of which is one.
class Watch {
 public:
    explicit Watch(Stretch& stretch) : stretch_(stretch) {}

    void step() {
        if (++done_ % kStepsBetween == 0) stretch_.step(kStepsBetween);
    }

 private:
    static constexpr int kStepsBetween = 1 << 14;

    Stretch& stretch_;
    int done_ = 0;
};

/// What work(stretch) returns; nothing if progress has ended it.
template <class Work>
auto unlessEnded(const quorbin::Progress& progress, const Work& work)
    -> std::optional<decltype(work(std::declval<const Stretch&>()))> {
    Stretch::Listener listener{progress};
    const Stretch whole(listener);
    try {
        whole.tell(0);
        return work(whole);
    } catch (const Ended&) {
        return std::nullopt;
    }
}

/// Does work(stretch); whether it came to its end.
template <class Work>
bool isDoneToTheEnd(const quorbin::Progress& progress, const Work& work) {
    return unlessEnded(progress,
                       [&](const Stretch& whole) {
                           work(whole);
                           return true;
                       })
        .has_value();
}

/// The result of a part of an operation, whose progress was that of a stretch.
template <class Result>
Result toTheEnd(std::optional<Result>&& result) {
    if (!result) throw Ended();
    return *std::move(result);
}
inline void toTheEnd(bool isDone) {
    if (!isDone) throw Ended();
}

/// work(first, last) for so many items in blocks of some thousand.
template <class Work>
void inBlocks(std::size_t count, Stretch stretch, const Work& work) {
    constexpr std::size_t kBlock = 1 << 14;
    stretch.expect(count);
    for (std::size_t first = 0, last; first < count; first = last) {
        last = std::min(first + kBlock, count);
        work(first, last);
        stretch.step(last - first);
    }
}

/// So many equal items. Memory that is new to the process takes its time.
template <class T>
std::vector<T> filled(std::size_t count, const T& value, const Stretch& stretch) {
    std::vector<T> items;
    items.reserve(count);
    inBlocks(count, stretch, [&](std::size_t, std::size_t last) { items.resize(last, value); });
    return items;
}

/// std::sort by an order in which no two are equal.
template <class T, class Less>
void sortWatched(std::vector<T>& items, const Less& less, Stretch stretch) {
    if (!stretch.isFollowed()) return std::sort(items.begin(), items.end(), less);
    std::size_t log = 1;
    while (items.size() >> log != 0) ++log;
    stretch.expect(items.size() * log);
    std::sort(items.begin(), items.end(), [&](const T& a, const T& b) {
        stretch.step();
        return less(a, b);
    });
}

}  // namespace lset::detail
