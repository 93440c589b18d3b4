#pragma once

#include <chrono>

#include "fields/progress.h"

namespace quorbin::tool {

/// A bar on standard error, shown when that is a terminal and the work takes more than a second. Gone at the
/// end.
class Progress {
 public:
    explicit Progress(bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    void operator=(const Progress&) = delete;

    void show(int done, int all);

    /// To hand to what does the work; this object must outlive it.
    fields::ProgressFunction function() {
        return [this](int done, int all) { show(done, all); };
    }

 private:
    bool wanted_;
    int shownPercent_ = -1;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace quorbin::tool
