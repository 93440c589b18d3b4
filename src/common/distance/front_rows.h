#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace lset::detail {

/// Marks the points of a dense grid that have a neighbour on the other side, a row at a time.
template <std::size_t dimensions>
class FrontRows {
 public:
    using Point = std::array<int, dimensions>;
    using Flags = std::vector<unsigned char>;

    FrontRows(const double* values, const Point& sizes)
        : values_(values), sizes_(sizes), inside_(width()), beside_(width()), front_(width()) {}

    /// Looks at the row through a point whose first coordinate is 0, and its index.
    void mark(const Point& at, std::ptrdiff_t i) {
        const std::size_t last = width() - 1;
        setInside(values_ + i, inside_);
        for (std::size_t x = 0; x < last; ++x) front_[x] = inside_[x] != inside_[x + 1];
        front_[last] = 0;
        for (std::size_t x = last; x > 0; --x) front_[x] = front_[x] | front_[x - 1];
        std::ptrdiff_t stride = sizes_[0];
        for (std::size_t axis = 1; axis < dimensions; ++axis) {
            if (at[axis] > 0) compare(values_ + i - stride);
            if (at[axis] + 1 < sizes_[axis]) compare(values_ + i + stride);
            stride *= sizes_[axis];
        }
    }

    /// Whether the value is ≤ 0, which not-a-number is not.
    bool isInside(int x) const { return inside_[static_cast<std::size_t>(x)] != 0; }
    bool isFront(int x) const { return front_[static_cast<std::size_t>(x)] != 0; }

 private:
    std::size_t width() const { return static_cast<std::size_t>(sizes_[0]); }

    static void setInside(const double* row, Flags& inside) {
        unsigned char* const target = inside.data();
        const std::size_t count = inside.size();
        for (std::size_t x = 0; x < count; ++x) target[x] = row[x] <= 0;
    }

    void compare(const double* row) {
        setInside(row, beside_);
        const std::size_t count = width();
        for (std::size_t x = 0; x < count; ++x)
            front_[x] = static_cast<unsigned char>(front_[x] | (inside_[x] ^ beside_[x]));
    }

    const double* values_;
    Point sizes_;
    Flags inside_, beside_, front_;
};

}  // namespace lset::detail
