#include "progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>

#include <fmt/core.h>

namespace quorbin::tool {

std::string barOf(int done, int all, double seconds) {
    const double part = all > 0 ? static_cast<double>(done) / all : 0;
    const auto filled = static_cast<std::size_t>(25 * part);
    std::string bar = fmt::format("[{}{}] {:3} %", std::string(filled, '#'), std::string(25 - filled, ' '),
                                  static_cast<int>(100 * part));
    if (part <= 0) return bar;
    const long long left = std::llround(std::ceil(seconds / part - seconds));
    if (left < 3600) return bar + fmt::format("  {}:{:02} left", left / 60, left % 60);
    return bar + fmt::format("  {}:{:02}:{:02} left", left / 3600, left / 60 % 60, left % 60);
}

Progress::Progress(bool wanted) : wanted_(wanted && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (isShown_) std::fputs("\r\033[K", stderr);
}

void Progress::show(int done, int all) {
    constexpr auto kBetween = std::chrono::milliseconds(200);
    const Clock::time_point now = Clock::now();
    if (!wanted_ || now < next_) return;
    next_ = now + kBetween;
    isShown_ = true;
    const std::chrono::duration<double> seconds = now - start_;
    fmt::print(stderr, "\r{}\033[K", barOf(done, all, seconds.count()));
    std::fflush(stderr);
}

}  // namespace quorbin::tool
