#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <vector>

#include "common/flows/curvature_rows.h"
#include "common/flows/equation_terms.h"
#include "common/flows/weno.h"
#include "common/storage/dense_traits.h"
#include "common/vector.h"
#include "evolve.h"
#include "reinitialize.h"

namespace lset::detail {

/// Motion of a dense grid by an equation (see quorbin::evolve).
template <class Grid, class Equation, class Point>
class Evolution {
 public:
    using Traits = DenseTraits<Grid>;
    static constexpr std::size_t dimensions = Traits::dimensions;
    using Options = quorbin::EvolveOptions;

    Evolution(Grid& grid, const Equation& equation, const Options& options)
        : grid_(grid),
          options_(options),
          sizes_(Traits::sizes(grid)),
          h_(Traits::spacings(grid)),
          count_(pointCount(grid)),
          near_(options.stepsBetweenDistances > 0 ? kNear * *std::max_element(h_.begin(), h_.end())
                                                  : std::numeric_limits<double>::infinity()),
          terms_(equation, sizes_, h_),
          curvature_(sizes_, h_) {}

    quorbin::EvolveResult run(double end) {
        const std::vector<double> before(grid_.data(), grid_.data() + count_);
        try {
            move(end);
        } catch (...) {
            std::copy(before.begin(), before.end(), grid_.data());
            throw;
        }
        if (result_.isEnded) std::copy(before.begin(), before.end(), grid_.data());
        return result_;
    }

 private:
    static constexpr double kNear = 8;  // how far from the interface points move, in spacings

    void move(double end) {
        if (options_.stepsBetweenDistances > 0) quorbin::reinitialize(grid_);
        stage_.resize(count_);
        rates_.resize(count_);
        double* const values = grid_.data();
        while (result_.time < end) {
            const double left = end - result_.time;
            terms_.setTime(result_.time);
            const double longest = options_.courant * longestStep();
            const double steps = std::ceil((1 - 1e-12) * (left / longest));
            const double dt = steps > 1 ? left / steps : left, start = result_.time;
            // u₁ = u + dt L(u), u₂ = ¾ u + ¼ (u₁ + dt L(u₁)), u = ⅓ u + ⅔ (u₂ + dt L(u₂))
            writeRates(values);
            for (std::size_t i = 0; i < count_; ++i) stage_[i] = values[i] + dt * rates_[i];
            terms_.setTime(start + dt);
            writeRates(stage_.data());
            for (std::size_t i = 0; i < count_; ++i)
                stage_[i] = 0.75 * values[i] + 0.25 * (stage_[i] + dt * rates_[i]);
            terms_.setTime(start + 0.5 * dt);
            writeRates(stage_.data());
            for (std::size_t i = 0; i < count_; ++i)
                values[i] = values[i] / 3 + (2.0 / 3) * (stage_[i] + dt * rates_[i]);
            ++result_.steps;
            result_.longestStep = std::max(result_.longestStep, dt);
            result_.time = steps > 1 ? start + dt : end;
            if (!restoreDistance(result_.time == end)) return;
            constexpr int kParts = 1000;
            result_.isEnded = options_.progress &&
                              !options_.progress(static_cast<int>(kParts * (result_.time / end)), kParts);
            if (result_.isEnded) return;
        }
    }

    /// False where the interface has vanished.
    bool restoreDistance(bool isLast) {
        const int every = options_.stepsBetweenDistances;
        if (every == 0 || (!isLast && result_.steps % every != 0)) return true;
        try {
            quorbin::reinitialize(grid_);
        } catch (const quorbin::NoInterface&) {
            result_.hasVanished = true;
        }
        return !result_.hasVanished;
    }

    double longestStep() const {
        double perTime = terms_.mostSource() / (0.5 * *std::min_element(h_.begin(), h_.end()));
        const auto velocity = terms_.mostVelocity();
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            perTime += (velocity[axis] + terms_.mostNormal()) / h_[axis] +
                       2 * terms_.mostCurvature() / (h_[axis] * h_[axis]);
        return perTime > 0 ? 1 / perTime : std::numeric_limits<double>::infinity();
    }

    void writeRates(const double* values) {
        if (terms_.hasCurvature()) {
            bent_.resize(count_);
            curvature_.write(values, bent_.data(), Stretch());
        }
        const auto width = static_cast<std::size_t>(sizes_[0]);
        std::fill(rates_.begin(), rates_.end(), 0.0);
        for (std::size_t row = 0; row < count_; row += width)
            for (std::size_t x = 0; x < width; x += kBlock) {
                const std::size_t count = std::min(kBlock, width - x);
                if (isNear(values + row + x, count)) writeBlock(values, row + x, x, count);
            }
    }

    bool isNear(const double* values, std::size_t count) const {
        double least = std::abs(values[0]);
        for (std::size_t i = 1; i < count; ++i) least = std::min(least, std::abs(values[i]));
        return least <= near_;
    }

    static constexpr std::size_t kBlock = 16;
    using Row = std::array<double, kBlock>;

    void writeBlock(const double* values, std::size_t first, std::size_t x, std::size_t count) {
        Row advected{}, squares{};
        std::size_t stride = 1, place = first;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const auto size = static_cast<std::size_t>(sizes_[axis]);
            Row before, after;
            sided(values, first, axis == 0 ? x : place % size, stride, axis, count, before, after);
            terms_.addGradient(axis, first, count, before.data(), after.data(), advected.data(),
                               squares.data());
            stride *= size;
            place /= size;
        }
        const double* const normal = terms_.normal(first, count);
        for (std::size_t i = 0; i < count; ++i)
            rates_[first + i] = -advected[i] - normal[i] * std::sqrt(squares[i]);
        if (terms_.hasCurvature()) {
            const double* const factor = terms_.curvature(first, count);
            for (std::size_t i = 0; i < count; ++i) rates_[first + i] += factor[i] * bent_[first + i];
        }
        const double* const source = terms_.source(first, count);
        for (std::size_t i = 0; i < count; ++i) rates_[first + i] += source[i];
    }

    /// One-sided derivatives of a block; c is the coordinate of its first point along the axis.
    void sided(const double* values, std::size_t first, std::size_t c, std::size_t stride, std::size_t axis,
               std::size_t count, Row& before, Row& after) const {
        const auto size = static_cast<std::ptrdiff_t>(sizes_[axis]);
        std::array<const double*, 7> rows;
        std::array<double, kBlock + 6> padded;
        std::array<Row, 7> beyond;
        const auto at = static_cast<std::ptrdiff_t>(c);
        const double* const here = values + first;
        if (axis == 0) {
            for (std::size_t k = 0; k < count + 6; ++k)
                padded[k] = valueAlong(here, at, at + static_cast<std::ptrdiff_t>(k) - 3, 1, size);
            for (std::size_t k = 0; k < 7; ++k) rows[k] = &padded[k];
        } else {
            const auto step = static_cast<std::ptrdiff_t>(stride);
            for (std::size_t k = 0; k < 7; ++k) {
                const std::ptrdiff_t to = at + static_cast<std::ptrdiff_t>(k) - 3;
                if (to >= 0 && to < size) {
                    rows[k] = here + (to - at) * step;
                    continue;
                }
                for (std::size_t i = 0; i < count; ++i)
                    beyond[k][i] = valueAlong(here + i, at, to, step, size);
                rows[k] = beyond[k].data();
            }
        }
        writeSided(rows, 1 / h_[axis], count, before.data(), after.data());
    }

    /// The value at another coordinate of the line through a point; beyond its ends as the border has it.
    double valueAlong(const double* here, std::ptrdiff_t at, std::ptrdiff_t to, std::ptrdiff_t step,
                      std::ptrdiff_t size) const {
        if (to >= 0 && to < size) return here[(to - at) * step];
        if (options_.border == Options::Border::kPeriodic)
            return here[((to % size + size) % size - at) * step];
        if (size == 1) return here[0];
        const std::ptrdiff_t end = to < 0 ? 0 : size - 1, inner = to < 0 ? 1 : size - 2;
        const double last = here[(end - at) * step];
        return last + static_cast<double>(std::abs(to - end)) * (last - here[(inner - at) * step]);
    }

    Grid& grid_;
    const Options& options_;
    std::array<int, dimensions> sizes_;
    Vector<dimensions> h_;
    std::size_t count_;
    double near_;
    EquationTerms<Equation, Point, dimensions> terms_;
    CurvatureRows<dimensions> curvature_;
    std::vector<double> stage_, rates_, bent_;
    quorbin::EvolveResult result_;
};

template <class Grid, class Point, class Equation>
quorbin::EvolveResult evolveOnGrid(Grid& grid, const Equation& equation, double time,
                                   const quorbin::EvolveOptions& options) {
    if (!(time >= 0) || std::isinf(time))
        throw std::invalid_argument("the time of an evolution must be a finite number, and at least 0");
    if (!(options.courant > 0 && options.courant <= 1))
        throw std::invalid_argument("the part of the longest stable step must be above 0, and at most 1");
    if (options.stepsBetweenDistances < 0)
        throw std::invalid_argument("the number of steps between distances must be at least 0");
    for (const double h : DenseTraits<Grid>::spacings(grid))
        if (!(h > 0) || std::isinf(h)) throw std::invalid_argument("spacings must be positive and finite");
    return Evolution<Grid, Equation, Point>(grid, equation, options).run(time);
}

}  // namespace lset::detail
