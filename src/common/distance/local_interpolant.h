#pragma once

#include <array>
#include <cstddef>

#include "common/vector.h"

namespace lset::detail {

/// The cubic polynomial, of degree three along each axis, through a block of four samples an axis (Lagrange,
/// tensor product). Places are in grid-index units from the first sample of the block; derivatives are by
/// those too.
template <std::size_t dimensions>
class LocalInterpolant {
 public:
    static constexpr std::size_t kSide = 4;
    static constexpr std::size_t kSamples = dimensions == 2 ? 16 : 64;
    using Block = std::array<double, kSamples>;

    struct Values {
        double value;
        Vector<dimensions> gradient;
        Symmetric<dimensions> hessian;  // only if it was asked for
    };

    /// The block's samples, x fastest, then y.
    Block samples;

    template <bool withHessian>
    Values at(const Vector<dimensions>& place) const {
        std::array<Weights, dimensions> weights;
        for (std::size_t axis = 0; axis < dimensions; ++axis) weights[axis] = weightsAt(place[axis]);
        // Rows of samples along x, weighted along all other axes; by how often derived along those.
        Values result;
        constexpr std::size_t kDerivatives = withHessian ? 2 : 1;
        if constexpr (dimensions == 2) {
            const auto rows = contracted<kSide, kDerivatives>(samples.data(), weights[1]);
            finish2D<withHessian>(rows, weights[0], result);
        } else {
            const auto planes = contracted<16, kDerivatives>(samples.data(), weights[2]);
            finish3D<withHessian>(planes, weights, result);
        }
        return result;
    }

 private:
    using Row = std::array<double, kSide>;
    struct Weights {
        Row value, first, second;
    };

    static Weights weightsAt(double place) {
        const double s = place - 1;  // from the second of the four samples
        const double below = s + 1, above = s - 1, beyond = s - 2;
        Weights w;
        w.value = {-s * above * beyond / 6, below * above * beyond / 2, -below * s * beyond / 2,
                   below * s * above / 6};
        const double square = s * s;
        w.first = {-(3 * square - 6 * s + 2) / 6, (3 * square - 4 * s - 1) / 2, -(3 * square - 2 * s - 2) / 2,
                   (3 * square - 1) / 6};
        w.second = {1 - s, 3 * s - 2, 1 - 3 * s, s};
        return w;
    }

    /// Sums over the slowest axis of four times count samples: the value and as many derivatives as asked
    /// for.
    template <std::size_t count, std::size_t derivatives>
    static std::array<std::array<double, count>, derivatives + 1> contracted(const double* samples,
                                                                             const Weights& w) {
        std::array<std::array<double, count>, derivatives + 1> sums;
        for (std::size_t i = 0; i < count; ++i) {
            const double a = samples[i], b = samples[i + count], c = samples[i + 2 * count],
                         d = samples[i + 3 * count];
            sums[0][i] = w.value[0] * a + w.value[1] * b + w.value[2] * c + w.value[3] * d;
            if constexpr (derivatives >= 1)
                sums[1][i] = w.first[0] * a + w.first[1] * b + w.first[2] * c + w.first[3] * d;
            if constexpr (derivatives >= 2)
                sums[2][i] = w.second[0] * a + w.second[1] * b + w.second[2] * c + w.second[3] * d;
        }
        return sums;
    }

    static double weighted(const Row& weights, const double* row) {
        return weights[0] * row[0] + weights[1] * row[1] + weights[2] * row[2] + weights[3] * row[3];
    }

    template <bool withHessian, class Rows>
    static void finish2D(const Rows& rows, const Weights& x, Values& result) {
        result.value = weighted(x.value, rows[0].data());
        result.gradient = {weighted(x.first, rows[0].data()), weighted(x.value, rows[1].data())};
        if constexpr (withHessian) {
            auto& h = result.hessian;
            h[0][0] = weighted(x.second, rows[0].data());
            h[0][1] = h[1][0] = weighted(x.first, rows[1].data());
            h[1][1] = weighted(x.value, rows[2].data());
        }
    }

    template <bool withHessian, class Planes>
    static void finish3D(const Planes& planes, const std::array<Weights, 3>& weights, Values& result) {
        const Weights &x = weights[0], &y = weights[1];
        constexpr std::size_t kDerivatives = withHessian ? 2 : 1;
        const auto flat = contracted<kSide, kDerivatives>(planes[0].data(), y);
        const auto rising = contracted<kSide, kDerivatives - 1>(planes[1].data(), y);
        result.value = weighted(x.value, flat[0].data());
        result.gradient = {weighted(x.first, flat[0].data()), weighted(x.value, flat[1].data()),
                           weighted(x.value, rising[0].data())};
        if constexpr (withHessian) {
            const auto bent = contracted<kSide, 0>(planes[2].data(), y);
            auto& h = result.hessian;
            h[0][0] = weighted(x.second, flat[0].data());
            h[1][1] = weighted(x.value, flat[2].data());
            h[2][2] = weighted(x.value, bent[0].data());
            h[0][1] = h[1][0] = weighted(x.first, flat[1].data());
            h[0][2] = h[2][0] = weighted(x.first, rising[0].data());
            h[1][2] = h[2][1] = weighted(x.value, rising[1].data());
        }
    }
};

}  // namespace lset::detail
