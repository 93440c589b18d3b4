#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace lset::detail {

/// Numbers as text: "64 x 32 x 0.5".
template <class Number, std::size_t count>
std::string joined(const std::array<Number, count>& numbers) {
    std::string text;
    for (const Number number : numbers) {
        char one[32];
        std::snprintf(one, sizeof one, "%.12g", static_cast<double>(number));
        text += (text.empty() ? "" : " x ") + std::string(one);
    }
    return text;
}

template <class Spacings>
void checkSameSpacings(const Spacings& a, const Spacings& b) {
    if (a != b)
        throw std::invalid_argument("the two bands have other spacings: " + joined(a) + " and " + joined(b) +
                                    "; they must be the same");
}

template <class Sizes, class Spacings>
void checkSameGrid(const Sizes& sizesOfA, const Spacings& a, const Sizes& sizesOfB, const Spacings& b) {
    if (sizesOfA != sizesOfB || a != b)
        throw std::invalid_argument("the two level sets have other grids: " + joined(sizesOfA) +
                                    " points with spacings " + joined(a) + ", and " + joined(sizesOfB) +
                                    " points with spacings " + joined(b) + "; they must be the same");
}

}  // namespace lset::detail
