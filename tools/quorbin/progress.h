#pragma once

#include <chrono>

/// A bar on standard error, shown when that is a terminal and the work takes more than a second. Gone at the
/// end.
class Progress {
 public:
    Progress(int total, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    void operator=(const Progress&) = delete;

    void show(int done);

 private:
    int total_;
    bool wanted_;
    int shownPercent_ = -1;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};
