#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "io/failure.h"

namespace quorbin::tool {

/// Some of several inputs have failed: a line each.
struct Failures : std::exception {
    io::ExitStatus status = io::kDone;
    std::vector<std::string> lines;

    /// Keeps the line; the largest status is that of all.
    void add(const io::Failure& failure);
};

/// What work throws, as a Failure; nothing if it ends well. Failures of several inputs pass.
std::optional<io::Failure> failureOf(const std::function<void()>& work);

/// One line on standard error, whatever is in the text.
void complain(const std::string& line);

}  // namespace quorbin::tool
