#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>

namespace quorbin::io {

/// Nothing reaches standard output, or another descriptor, while this lives. In one thread at a
/// time, which may have several: others wait.
class QuietOutput {
 public:
    explicit QuietOutput(int descriptor = STDOUT_FILENO) : descriptor_(descriptor), saved_(dup(descriptor)) {
        std::fflush(nullptr);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere < 0) return;
        dup2(nowhere, descriptor_);
        close(nowhere);
    }
    ~QuietOutput() {
        std::fflush(nullptr);
        if (saved_ < 0) return;
        dup2(saved_, descriptor_);
        close(saved_);
    }
    /// Keeps other threads waiting, for what quiets output elsewhere or minds the signals of the process.
    static std::unique_lock<std::recursive_mutex> alone() { return std::unique_lock(one); }

    QuietOutput(const QuietOutput&) = delete;
    void operator=(const QuietOutput&) = delete;

 private:
    static inline std::recursive_mutex one;

    const std::unique_lock<std::recursive_mutex> alone_ = alone();
    int descriptor_, saved_;
};

}  // namespace quorbin::io
