#pragma once

#include <cstdio>
#include <cstdlib>

#include "common/messages.h"

namespace lset::detail {

/// Reports a programming error and aborts, in release builds too.
[[noreturn]] inline void failAssertion(const char* function, const char* file, int line,
                                       const char* expression) {
    std::fprintf(stderr, messages::kAssertionFailed, file, line, function, expression);
    std::abort();
}

}  // namespace lset::detail
