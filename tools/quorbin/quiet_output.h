#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

/// Nothing reaches standard output while this lives.
class QuietOutput {
 public:
    QuietOutput() {
        std::fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere < 0) return;
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~QuietOutput() {
        std::fflush(stdout);
        if (saved_ < 0) return;
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
    QuietOutput(const QuietOutput&) = delete;
    void operator=(const QuietOutput&) = delete;

 private:
    int saved_;
};
