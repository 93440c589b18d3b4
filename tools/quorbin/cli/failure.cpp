#include "failure.h"

#include <algorithm>
#include <cstdio>
#include <new>

namespace quorbin::tool {

void Failures::add(const io::Failure& failure) {
    status = std::max(status, failure.status);
    lines.emplace_back(failure.what());
}

std::optional<io::Failure> failureOf(const std::function<void()>& work) {
    try {
        work();
        return std::nullopt;
    } catch (const io::Failure& failure) {
        return failure;
    } catch (const Failures&) {
        throw;
    } catch (const std::bad_alloc&) {
        return io::Failure(io::kFailed,
                           "there is not enough memory for this; take a smaller picture or volume");
    } catch (const std::exception& error) {
        return io::Failure(io::kFailed, error.what());
    }
}

void complain(const std::string& line) {
    // A name may hold line breaks and worse; the complaint stays one line.
    std::string text = "quorbin: " + line;
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ') c = '?';
    std::fputs((text + "\n").c_str(), stderr);
}

}  // namespace quorbin::tool
