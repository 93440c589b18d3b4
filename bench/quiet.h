#pragma once

#include <unistd.h>

#include <cstdio>

/// Runs work with what it prints sent to standard error: it would stand between the lines of the benchmark.
template <class Work>
void quietly(Work work) {
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    work();
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
}
