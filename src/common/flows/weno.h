#pragma once

#include <array>
#include <cstddef>

namespace lset::detail {

/// The derivative from one side by WENO5 (Jiang and Peng 2000) of five differences that come ever nearer to
/// that side and go beyond it: fifth order where the field is smooth, third where it is not.
inline double weno(double d1, double d2, double d3, double d4, double d5, double tiny) {
    const double a = d1 - 2 * d2 + d3, b = d1 - 4 * d2 + 3 * d3;
    const double c = d2 - 2 * d3 + d4, d = d2 - d4;
    const double e = d3 - 2 * d4 + d5, f = 3 * d3 - 4 * d4 + d5;
    constexpr double kOuter = 13.0 / 12;
    const double s1 = kOuter * (a * a) + 0.25 * (b * b) + tiny;
    const double s2 = kOuter * (c * c) + 0.25 * (d * d) + tiny;
    const double s3 = kOuter * (e * e) + 0.25 * (f * f) + tiny;
    // 0.1 / s1² and its kin over a common denominator: one division in all.
    const double p12 = s1 * s2, p13 = s1 * s3, p23 = s2 * s3;
    const double w1 = 0.1 * (p23 * p23), w2 = 0.6 * (p13 * p13), w3 = 0.3 * (p12 * p12);
    return (w1 * (2 * d1 - 7 * d2 + 11 * d3) + w2 * (5 * d3 - d2 + 2 * d4) + w3 * (2 * d3 + 5 * d4 - d5)) /
           (6 * (w1 + w2 + w3));
}

/// Both one-sided derivatives of a row of points, from the rows three before to three after it along an axis.
inline void writeSided(const std::array<const double*, 7>& rows, double perSpacing, std::size_t count,
                       double* __restrict before, double* __restrict after) {
    constexpr double kTiny = 1e-6;  // beside squares of slopes about 1
    const double* __restrict r0 = rows[0];
    const double* __restrict r1 = rows[1];
    const double* __restrict r2 = rows[2];
    const double* __restrict r3 = rows[3];
    const double* __restrict r4 = rows[4];
    const double* __restrict r5 = rows[5];
    const double* __restrict r6 = rows[6];
    for (std::size_t i = 0; i < count; ++i) {
        const double d0 = (r1[i] - r0[i]) * perSpacing, d1 = (r2[i] - r1[i]) * perSpacing,
                     d2 = (r3[i] - r2[i]) * perSpacing, d3 = (r4[i] - r3[i]) * perSpacing,
                     d4 = (r5[i] - r4[i]) * perSpacing, d5 = (r6[i] - r5[i]) * perSpacing;
        before[i] = weno(d0, d1, d2, d3, d4, kTiny);
        after[i] = weno(d5, d4, d3, d2, d1, kTiny);
    }
}

}  // namespace lset::detail
