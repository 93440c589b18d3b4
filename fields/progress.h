#pragma once

#include <functional>

#include <quorbin.h>

namespace quorbin::fields {

/// Told how much of a long operation is done, in parts of all; may be empty.
using ProgressFunction = std::function<void(int done, int all)>;

/// The same for the library, whose operations it never ends.
inline quorbin::Progress neverEnding(const ProgressFunction& progress) {
    if (!progress) return {};
    return [&progress](int done, int all) {
        progress(done, all);
        return true;
    };
}

}  // namespace quorbin::fields
