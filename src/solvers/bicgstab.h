#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace lset::detail {

inline double dot(const std::vector<double>& a, const std::vector<double>& b) {
    // Four sums at once: one would wait for each addition.
    double sum[4] = {};
    const std::size_t whole = a.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4)
        for (std::size_t lane = 0; lane < 4; ++lane) sum[lane] += a[i + lane] * b[i + lane];
    for (std::size_t i = whole; i < a.size(); ++i) sum[0] += a[i] * b[i];
    return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

inline double largestMagnitude(const std::vector<double>& values) {
    double largest = 0;
    for (const double value : values) largest = std::max(largest, std::abs(value));
    return largest;
}

/// Solves A u = b by preconditioned BiCGStab (van der Vorst 1992), from the u it is given. multiply(v, w)
/// puts A v into w, precondition(v) replaces v by what is about the solution for v. Done, and true, when the
/// residual, computed anew from u, is at most tolerance (|A| |u| + |b|) in the norm of the largest magnitude;
/// false after the given number of steps, of two multiplications each, and as soon as they lead nowhere.
/// Seven vectors beside u and b.
template <class Multiply, class Precondition>
bool solveByBicgstab(const Multiply& multiply, const Precondition& precondition, double normOfA,
                     const std::vector<double>& b, double tolerance, int steps, std::vector<double>& u) {
    constexpr int kPatience = 20;  // steps that must bring the residual down to a tenth
    const std::size_t n = b.size();
    const double normOfB = largestMagnitude(b);
    std::vector<double> residual(n), shadow(n), direction(n), image(n), correction(n), refined(n);
    const auto allowed = [&] { return tolerance * (normOfA * largestMagnitude(u) + normOfB); };

    while (true) {
        multiply(u.data(), residual.data());
        for (std::size_t i = 0; i < n; ++i) residual[i] = b[i] - residual[i];
        if (!std::isfinite(dot(residual, residual))) return false;
        if (largestMagnitude(residual) <= allowed()) return true;
        if (steps <= 0) return false;

        shadow = direction = residual;
        double rho = dot(shadow, residual);
        double checked = largestMagnitude(residual);
        int sinceChecked = 0;
        while (steps-- > 0) {
            correction = direction;
            precondition(correction.data());
            multiply(correction.data(), image.data());
            const double alpha = rho / dot(shadow, image);
            for (std::size_t i = 0; i < n; ++i) {
                u[i] += alpha * correction[i];
                residual[i] -= alpha * image[i];
            }
            correction = residual;
            precondition(correction.data());
            multiply(correction.data(), refined.data());
            const double omega = dot(refined, residual) / dot(refined, refined);
            for (std::size_t i = 0; i < n; ++i) {
                u[i] += omega * correction[i];
                residual[i] -= omega * refined[i];
            }
            // By the updated residual, which rounding has taken away from the true one: that is looked at
            // above.
            const double estimate = largestMagnitude(residual);
            if (estimate <= allowed()) break;
            if (++sinceChecked == kPatience) {
                if (estimate > checked / 10) return false;
                checked = estimate;
                sinceChecked = 0;
            }
            const double next = dot(shadow, residual);
            const double beta = next / rho * (alpha / omega);
            if (!std::isfinite(beta) || beta == 0) break;
            rho = next;
            for (std::size_t i = 0; i < n; ++i)
                direction[i] = residual[i] + beta * (direction[i] - omega * image[i]);
        }
    }
}

}  // namespace lset::detail
