#pragma once

#include <chrono>

#include <nanobind/nanobind.h>
#include <quorbin.h>

namespace quorbin::python {

namespace nb = nanobind;

/// Lets Python in while an operation is under way: Ctrl-C ends it with KeyboardInterrupt, and a callable is
/// told (done, total). The operation runs without the interpreter's lock, which is taken twenty times a
/// second.
class Watch {
 public:
    /// tell is a callable or None, and must outlive this object.
    explicit Watch(nb::handle tell) : tell_(tell) {}

    /// To hand to what does the work; what Python raises goes through it as an exception.
    Progress progress() {
        return [this](int done, int all) { return look(done, all); };
    }

 private:
    using Clock = std::chrono::steady_clock;

    bool look(int done, int all);

    nb::handle tell_;
    Clock::time_point next_ = Clock::now() + kPause;
    static constexpr std::chrono::milliseconds kPause{50};
};

/// What work(progress) gives, which is done without the interpreter's lock.
template <class Work>
auto watched(nb::handle tell, const Work& work) {
    Watch watch(tell);
    const nb::gil_scoped_release unlocked;
    return work(watch.progress());
}

}  // namespace quorbin::python
