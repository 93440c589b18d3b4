#include "quorbin3d/files/runs.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "common/messages.h"

namespace lset::detail {

namespace {

constexpr char kTag[4] = {'b', 'y', 't', 'e'};
constexpr std::size_t kRunSize = 5;
constexpr std::size_t kBlock = kRunSize << 14;

signed char byteOf(double value) { return static_cast<signed char>(std::lround(value)); }

}  // namespace

bool writeRuns(const double* values, std::size_t count, File& file) {
    if (!file.write(kTag, sizeof kTag)) return false;
    std::vector<char> block;
    block.reserve(kBlock);
    for (std::size_t i = 0; i < count;) {
        const signed char value = byteOf(values[i]);
        const std::size_t most = std::min<std::size_t>(count - i, INT_MAX);
        std::size_t n = 1;
        while (n < most && byteOf(values[i + n]) == value) ++n;
        i += n;
        const auto length = static_cast<std::int32_t>(n);
        char run[kRunSize] = {static_cast<char>(value)};
        std::memcpy(run + 1, &length, sizeof length);
        block.insert(block.end(), run, run + kRunSize);
        if (block.size() == kBlock || i == count) {
            if (!file.write(block.data(), block.size())) return false;
            block.clear();
        }
    }
    return true;
}

bool readRuns(double* values, std::size_t count, File& file) {
    std::puts(messages::kLoadingBinary);
    char tag[4] = {};
    if (!file.read(tag, sizeof tag) || std::memcmp(tag, kTag, sizeof tag) != 0) return false;
    for (std::size_t i = 0; i < count;) {
        // No further than the last run that is needed: a pipe may have more to come, or nothing and stay
        // open.
        char run[kRunSize];
        if (!file.read(run, kRunSize)) return false;
        const auto value = static_cast<signed char>(run[0]);
        std::int32_t length;
        std::memcpy(&length, run + 1, sizeof length);
        if (length == 0) {
            std::printf(messages::kRunOfNone, "quorbin3d", 143, static_cast<int>(i), value,
                        static_cast<int>(count));
            return false;
        }
        if (length < 0) continue;
        const std::size_t n = std::min(static_cast<std::size_t>(length), count - i);
        std::fill_n(values + i, n, static_cast<double>(value));
        i += n;
    }
    return true;
}

}  // namespace lset::detail
