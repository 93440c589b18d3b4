#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace lset::detail {

/// One flag a grid point of a row, as bytes 0 and 1, so that eight points are looked at in one word. Past its
/// end the row repeats its last flag.
class SignRow {
 public:
    explicit SignRow(int width) : width_(static_cast<std::size_t>(width)), flags_(width_ + kPadding) {}

    /// Sets the flags of values > 0.
    void flagPositive(const double* row) {
        std::size_t x = 0;
#ifdef __SSE2__
        for (; x + 8 <= width_; x += 8)
            flagEight(x, row, [](__m128d values) { return _mm_cmpgt_pd(values, _mm_setzero_pd()); });
#endif
        for (; x < width_; ++x) flags_[x] = row[x] > 0;
        pad();
    }

    /// Sets the flags of values <= 0, which not-a-number is not.
    void flagNotPositive(const double* row) {
        std::size_t x = 0;
#ifdef __SSE2__
        for (; x + 8 <= width_; x += 8)
            flagEight(x, row, [](__m128d values) { return _mm_cmple_pd(values, _mm_setzero_pd()); });
#endif
        for (; x < width_; ++x) flags_[x] = row[x] <= 0;
        pad();
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
#ifdef __SSE2__
    /// Compilers do not find this by themselves: eight masks of 64 bits narrowed to bytes.
    template <class Compare>
    void flagEight(std::size_t x, const double* row, Compare compare) {
        const auto pairOfPairs = [&](std::size_t i) {
            const __m128 low = _mm_castpd_ps(compare(_mm_loadu_pd(row + x + i)));
            const __m128 high = _mm_castpd_ps(compare(_mm_loadu_pd(row + x + i + 2)));
            return _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
        };
        const __m128i words = _mm_packs_epi32(pairOfPairs(0), pairOfPairs(4));
        const __m128i bytes = _mm_and_si128(_mm_packs_epi16(words, words), _mm_set1_epi8(1));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(flags_.data() + x), bytes);
    }
#endif

    void pad() { std::memset(flags_.data() + width_, flags_[width_ - 1], kPadding); }

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
