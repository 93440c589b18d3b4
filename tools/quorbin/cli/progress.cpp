#include "progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include <fmt/core.h>

namespace quorbin::tool {

Progress::Progress(bool wanted) : wanted_(wanted && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (shownPercent_ >= 0) std::fputs("\r\033[K", stderr);
}

void Progress::show(int done, int all) {
    if (!wanted_ || std::chrono::steady_clock::now() - start_ < std::chrono::seconds(1)) return;
    const int percent = static_cast<int>(100LL * done / all);
    if (percent == shownPercent_) return;
    shownPercent_ = percent;
    const auto filled = static_cast<std::size_t>(percent / 4);
    fmt::print(stderr, "\r[{}{}] {:3} %", std::string(filled, '#'), std::string(25 - filled, ' '), percent);
    std::fflush(stderr);
}

}  // namespace quorbin::tool
