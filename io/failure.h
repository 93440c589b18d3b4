#pragma once

#include <stdexcept>
#include <string>

#include <fmt/core.h>

namespace quorbin::io {

/// How the tool ends.
enum ExitStatus { kDone = 0, kFailed = 1, kBadUsage = 2, kNoCrossing = 4, kNotStill = 5 };

/// Ends a command with one line on standard error: what is wrong, and what would be right.
struct Failure : std::runtime_error {
    Failure(ExitStatus statusOfTool, const std::string& line, int errorOfSystem = 0)
        : std::runtime_error(line), status(statusOfTool), systemError(errorOfSystem) {}
    ExitStatus status;
    int systemError;  ///< errno, where the system said no; else 0
};

/// A fault of a file or of the command line.
template <class... Args>
[[noreturn]] void refuse(fmt::format_string<Args...> format, Args&&... args) {
    throw Failure(kBadUsage, fmt::format(format, std::forward<Args>(args)...));
}

/// The same of a file that the system refuses, for the reason that errno has told.
template <class... Args>
[[noreturn]] void refuseFor(int systemError, fmt::format_string<Args...> format, Args&&... args) {
    throw Failure(kBadUsage, fmt::format(format, std::forward<Args>(args)...), systemError);
}

/// The same failure with the name of the file that it is of, if it does not say so already.
inline Failure naming(const std::string& path, const Failure& failure) {
    const std::string line = failure.what();
    return line.rfind(path + ": ", 0) == 0 ? failure
                                           : Failure(failure.status, path + ": " + line, failure.systemError);
}

}  // namespace quorbin::io
