#pragma once

#include <string>

#include <nanobind/nanobind.h>

#include "io/failure.h"

namespace quorbin::python {

/// Makes a Failure the Python exception that fits it: one of those of OSError, ValueError, or NoInterface.
void raiseFailure(const io::Failure& failure);

/// A line of the tool's, in which options are called as Python's arguments are: "--nan VALUE" is nan=VALUE.
std::string inPython(const std::string& line);

/// Runs work, a failure of which gets the name of the file and the names of arguments.
template <class Work>
auto aboutFile(const std::string& path, Work work) {
    try {
        return work();
    } catch (const io::Failure& failure) {
        const std::string line = io::naming(path, failure).what(), name = path + ": ";
        throw io::Failure(failure.status, name + inPython(line.substr(name.size())), failure.systemError);
    }
}

}  // namespace quorbin::python
