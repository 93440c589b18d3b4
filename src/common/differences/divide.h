#pragma once

#include <cmath>
#include <cstdlib>

namespace lset::detail {

/// Division by a number known before the loop. Where its reciprocal is exact, multiplying gives the same
/// bits.
struct Divide {
    double divisor;
    double operator()(double value) const { return value / divisor; }
};
struct MultiplyByExactReciprocal {
    double reciprocal;
    double operator()(double value) const { return value * reciprocal; }
};

/// Calls body with the cheaper of the two that divides by each of the divisors to the same bits.
template <class Body, class... Divisors>
void withDivision(Body body, Divisors... divisors) {
    const auto hasExactReciprocal = [](double divisor) {
        int exponent = 0;
        return std::frexp(divisor, &exponent) == 0.5 && std::abs(exponent) < 1000;
    };
    if ((hasExactReciprocal(divisors) && ...))
        body(MultiplyByExactReciprocal{1.0 / divisors}...);
    else
        body(Divide{divisors}...);
}

}  // namespace lset::detail
