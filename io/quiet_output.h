#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>

namespace quorbin::io {

/// Nothing reaches standard output, or another descriptor, while this lives. One at a time: others wait.
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
    QuietOutput(const QuietOutput&) = delete;
    void operator=(const QuietOutput&) = delete;

 private:
    static inline std::mutex one;
    const std::lock_guard<std::mutex> alone_{one};
    int descriptor_, saved_;
};

}  // namespace quorbin::io
