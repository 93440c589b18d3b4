#include "bmp_checks.h"

#include <cstdint>
#include <cstdlib>

#include "../failure.h"

namespace quorbin::io {

namespace {

/// A number in so many bytes, little-endian.
std::int64_t numberAt(const Bytes& bytes, std::size_t at, int count) {
    std::uint32_t number = 0;
    for (int i = count - 1; i >= 0; --i) number = number << 8 | bytes[at + static_cast<std::size_t>(i)];
    return count == 4 ? static_cast<std::int32_t>(number) : static_cast<std::int64_t>(number);
}

constexpr std::size_t kBmpHeaders = 54;

}  // namespace

bool isBmp(const Bytes& start) {
    if (!startsWith(start, "BM") || start.size() < kBmpHeaders) return false;
    const std::int64_t header = numberAt(start, 14, 4);
    return header >= 40 && header <= 124;
}

void refuseOddBmp(const Bytes& bytes) {
    const std::int64_t begin = numberAt(bytes, 10, 4), width = numberAt(bytes, 18, 4),
                       height = std::abs(numberAt(bytes, 22, 4)), bits = numberAt(bytes, 28, 2),
                       compression = numberAt(bytes, 30, 4);
    if ((bits != 8 && bits != 24 && bits != 32) || (compression != 0 && (compression != 1 || bits != 8)))
        refuse("has {} bits a point, compressed in way {}; give a BMP with 8, 24 or 32, or a PNG", bits,
               compression);
    const std::int64_t needed = compression == 0 ? (width * bits + 31) / 32 * 4 * height : 1;
    const auto whole = static_cast<std::int64_t>(bytes.size());
    if (width < 1 || height < 1 || begin < 54 || begin + needed > whole ||
        (compression != 0 && numberAt(bytes, 2, 4) > whole))
        refuse("ends within its samples; give the whole file");
}

}  // namespace quorbin::io
