#pragma once

#include <chrono>
#include <string>

#include <quorbin.h>

namespace quorbin::tool {

/// What the bar shows of a part of an operation, after some seconds: "[####      ]  40 %  1:12 left".
std::string barOf(int done, int all, double seconds);

/// A bar on standard error with the time left, shown when that is a terminal and the work takes more than a
/// second. Gone at the end.
class Progress {
 public:
    explicit Progress(bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    void operator=(const Progress&) = delete;

    void show(int done, int all);

    /// To hand to what does the work; this object must outlive it.
    quorbin::Progress function() {
        if (!wanted_) return {};
        return [this](int done, int all) {
            show(done, all);
            return true;
        };
    }

 private:
    using Clock = std::chrono::steady_clock;

    bool wanted_, isShown_ = false;
    Clock::time_point start_ = Clock::now(), next_ = start_ + std::chrono::seconds(1);
};

/// The result of operation(progress), with a bar while it is made.
template <class Operation>
auto withBar(bool wanted, const Operation& operation) {
    Progress progress(wanted);
    return *operation(progress.function());
}

}  // namespace quorbin::tool
