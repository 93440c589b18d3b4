#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace lset::detail {

/// One flag a grid point of a row, as bytes 0 and 1, so that eight points are looked at in one word. Past its
/// end the row repeats its last flag.
class SignRow {
 public:
    explicit SignRow(int width) : width_(static_cast<std::size_t>(width)), flags_(width_ + kPadding) {}

    template <class Predicate>
    void assign(const double* row, Predicate predicate) {
        std::uint8_t* __restrict flags = flags_.data();
        for (std::size_t x = 0; x < width_; ++x) flags[x] = predicate(row[x]);
        std::memset(flags + width_, flags[width_ - 1], kPadding);
    }

    bool operator[](int x) const { return flags_[static_cast<std::size_t>(x)] != 0; }

    /// The flags of the points x to x + 7, the lowest byte first.
    std::uint64_t word(int x) const {
        std::uint64_t bytes;
        std::memcpy(&bytes, flags_.data() + x, sizeof bytes);
        return bytes;
    }

    void swap(SignRow& other) { flags_.swap(other.flags_); }

 private:
    static constexpr std::size_t kPadding = 16;
    std::size_t width_;
    std::vector<std::uint8_t> flags_;
};

/// Visits, in order, each x below count whose cell between two rows has corners with different flags.
template <class Visit>
void forEachMixedCell(const SignRow& lower, const SignRow& upper, int count, Visit visit) {
    for (int x = 0; x < count; x += 8) {
        const std::uint64_t corner = lower.word(x);
        std::uint64_t mixed =
            (corner ^ lower.word(x + 1)) | (corner ^ upper.word(x)) | (corner ^ upper.word(x + 1));
        for (; mixed != 0; mixed &= mixed - 1) {
            const int cell = x + __builtin_ctzll(mixed) / 8;
            if (cell >= count) break;
            visit(cell);
        }
    }
}

/// The same for the cubes between two layers of two rows.
template <class Visit>
void forEachMixedCube(const SignRow& lower, const SignRow& lowerNext, const SignRow& upper,
                      const SignRow& upperNext, int count, Visit visit) {
    for (int x = 0; x < count; x += 8) {
        const std::uint64_t corner = lower.word(x);
        std::uint64_t mixed = corner ^ lower.word(x + 1);
        for (const SignRow* row : {&lowerNext, &upper, &upperNext})
            mixed |= (corner ^ row->word(x)) | (corner ^ row->word(x + 1));
        for (; mixed != 0; mixed &= mixed - 1) {
            const int cell = x + __builtin_ctzll(mixed) / 8;
            if (cell >= count) break;
            visit(cell);
        }
    }
}

}  // namespace lset::detail
