#pragma once

#include <array>
#include <cstddef>

#include "common/flows/curvature_term.h"
#include "common/motion/reflected.h"
#include "common/vector.h"
#include "common/watch.h"

namespace lset::detail {

/// Writes κ |∇φ| at each point of a dense grid, by central differences; beyond the border the field is
/// reflected (see Reflected). 2 ns a point in the plane.
template <std::size_t dimensions>
class CurvatureRows {
 public:
    using Sizes = std::array<int, dimensions>;

    CurvatureRows(const Sizes& sizes, const Vector<dimensions>& h) : sizes_(sizes) {
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            first_[axis] = 1 / (2 * h[axis]);
            second_[axis] = 1 / (h[axis] * h[axis]);
        }
    }

    void write(const double* values, double* rates, Stretch stretch) const {
        const std::ptrdiff_t width = sizes_[0], height = sizes_[1];
        if constexpr (dimensions == 2) {
            for (int y = 0; y < sizes_[1]; ++y) {
                const Reflected rows(y, sizes_[1]);
                writeRow(values + rows.before * width, values + y * width, values + rows.after * width,
                         rates + y * width);
                stretch.step(static_cast<std::size_t>(width));
            }
        } else {
            const std::ptrdiff_t layer = width * height;
            for (int z = 0; z < sizes_[2]; ++z) {
                const Reflected layers(z, sizes_[2]);
                for (int y = 0; y < sizes_[1]; ++y) {
                    const Reflected rows(y, sizes_[1]);
                    const std::array<std::ptrdiff_t, 3> zs = {layers.before * layer, z * layer,
                                                              layers.after * layer};
                    const std::array<std::ptrdiff_t, 3> ys = {rows.before * width, y * width,
                                                              rows.after * width};
                    Rows around;
                    for (std::size_t i = 0; i < 3; ++i)
                        for (std::size_t j = 0; j < 3; ++j) around[i][j] = values + zs[i] + ys[j];
                    writeRow(around, rates + zs[1] + ys[1]);
                    stretch.step(static_cast<std::size_t>(width));
                }
            }
        }
    }

 private:
    using Rows = std::array<std::array<const double*, 3>, 3>;  // by z, then y

    /// term(x, column before, column after) along a row.
    template <class Term>
    void alongRow(double* __restrict rates, const Term& term) const {
        const int width = sizes_[0];
        const auto reflected = [&](int x) {
            const Reflected columns(x, width);
            rates[x] = term(x, columns.before, columns.after);
        };
        reflected(0);
        for (std::ptrdiff_t x = 1; x < width - 1; ++x) rates[x] = term(x, x - 1, x + 1);
        if (width > 1) reflected(width - 1);
    }

    void writeRow(const double* __restrict below, const double* __restrict here,
                  const double* __restrict above, double* __restrict rates) const {
        const double rx = first_[0], ry = first_[1], rxx = second_[0], ryy = second_[1];
        alongRow(rates, [=](std::ptrdiff_t x, std::ptrdiff_t l, std::ptrdiff_t r) {
            const double twice = 2 * here[x];
            return curvatureTerm((here[r] - here[l]) * rx, (above[x] - below[x]) * ry,
                                 ((here[r] + here[l]) - twice) * rxx, ((above[x] + below[x]) - twice) * ryy,
                                 ((above[r] - above[l]) - (below[r] - below[l])) * (rx * ry));
        });
    }

    void writeRow(const Rows& rows, double* __restrict rates) const {
        const double* __restrict c = rows[1][1];
        const double* __restrict s = rows[1][0], * __restrict n = rows[1][2];
        const double* __restrict d = rows[0][1], * __restrict u = rows[2][1];
        const double* __restrict ds = rows[0][0], * __restrict dn = rows[0][2];
        const double* __restrict us = rows[2][0], * __restrict un = rows[2][2];
        const double rx = first_[0], ry = first_[1], rz = first_[dimensions - 1];
        const double rxx = second_[0], ryy = second_[1], rzz = second_[dimensions - 1];
        alongRow(rates, [=](std::ptrdiff_t x, std::ptrdiff_t l, std::ptrdiff_t r) {
            const double twice = 2 * c[x];
            return curvatureTerm((c[r] - c[l]) * rx, (n[x] - s[x]) * ry, (u[x] - d[x]) * rz,
                                 ((c[r] + c[l]) - twice) * rxx, ((n[x] + s[x]) - twice) * ryy,
                                 ((u[x] + d[x]) - twice) * rzz, ((n[r] - n[l]) - (s[r] - s[l])) * (rx * ry),
                                 ((u[r] - u[l]) - (d[r] - d[l])) * (rx * rz),
                                 ((un[x] - us[x]) - (dn[x] - ds[x])) * (ry * rz));
        });
    }

    Sizes sizes_;
    Vector<dimensions> first_, second_;  // what first and second differences are multiplied by
};

}  // namespace lset::detail
