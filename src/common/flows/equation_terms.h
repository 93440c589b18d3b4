#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "common/vector.h"
#include "evolve.h"

namespace lset::detail {

/// The terms of an equation at the points of a grid, at one time.
template <class Equation, class Point, std::size_t dimensions>
class EquationTerms {
 public:
    using Sizes = std::array<int, dimensions>;

    EquationTerms(const Equation& equation, const Sizes& sizes, const Vector<dimensions>& h)
        : equation_(equation), sizes_(sizes), h_(h) {
        for (const int size : sizes) count_ *= static_cast<std::size_t>(size);
        prepare(equation.normal, normal_);
        prepare(equation.curvature, curvature_);
        prepare(equation.source, source_);
        if (curvature_.least < 0)
            throw std::invalid_argument("the factor of the curvature must not be negative");
        if (equation.velocity) velocities_.resize(count_);
    }

    /// Asks all functions for their values at a time.
    void setTime(double time) {
        const bool asks = equation_.velocity || equation_.normal.function() ||
                          equation_.curvature.function() || equation_.source.function();
        if (!asks) return;
        const auto width = static_cast<std::size_t>(sizes_[0]);
        std::vector<Point> points(width);
        mostVelocity_ = {};
        for (std::size_t row = 0; row < count_; row += width) {
            setRow(row, points);
            ask(equation_.normal, normal_, time, points, row);
            ask(equation_.curvature, curvature_, time, points, row);
            ask(equation_.source, source_, time, points, row);
            if (equation_.velocity) askVelocity(time, points, row);
        }
        settle(equation_.normal, normal_);
        settle(equation_.curvature, curvature_);
        settle(equation_.source, source_);
        if (curvature_.least < 0)
            throw std::invalid_argument("the factor of the curvature must not be negative");
    }

    bool hasCurvature() const { return !equation_.curvature.isAbsent(); }
    Vector<dimensions> mostVelocity() const { return mostVelocity_; }
    double mostNormal() const { return normal_.most; }
    double mostCurvature() const { return curvature_.most; }
    double mostSource() const { return source_.most; }

    const double* normal(std::size_t first, std::size_t count) { return valuesOf(normal_, first, count); }
    const double* curvature(std::size_t first, std::size_t count) {
        return valuesOf(curvature_, first, count);
    }
    const double* source(std::size_t first, std::size_t count) { return valuesOf(source_, first, count); }

    /// Adds what an axis has of V·∇φ, upwind, and of |∇φ|², by Godunov's rule.
    void addGradient(std::size_t axis, std::size_t first, std::size_t count, const double* __restrict before,
                     const double* __restrict after, double* __restrict advected,
                     double* __restrict squares) {
        if (equation_.velocity)
            for (std::size_t i = 0; i < count; ++i) {
                const double v = velocities_[first + i][static_cast<int>(axis)];
                advected[i] += v * (v > 0 ? before[i] : after[i]);
            }
        if (equation_.normal.isAbsent()) return;
        const double* const a = normal(first, count);
        for (std::size_t i = 0; i < count; ++i) {
            const double sign = a[i] > 0 ? 1.0 : -1.0;
            const double rising = std::max(sign * before[i], 0.0), falling = std::min(sign * after[i], 0.0);
            squares[i] += std::max(rising * rising, falling * falling);
        }
    }

 private:
    static constexpr std::size_t kBlock = 16;

    struct Values {
        const double* array = nullptr;  // one for each point; null: all are those of block
        std::vector<double> own;
        std::array<double, kBlock> block{};
        double most = 0, least = 0;  // of their magnitudes; of them
    };

    template <class Term>
    void prepare(const Term& term, Values& values) {
        if (const double* const number = term.number()) {
            values.block.fill(*number);
            values.most = std::abs(*number);
            values.least = *number;
            checkFinite(values.most);
        } else if (const auto* const given = term.values()) {
            if (given->size() != count_)
                throw std::invalid_argument("a term has another number of values than the grid has points");
            values.array = given->data();
            measure(values);
        } else if (term.function()) {
            values.own.resize(count_);
            values.array = values.own.data();
        }
    }

    void measure(Values& values) const {
        values.most = values.least = 0;
        bool isFinite = true;
        for (std::size_t i = 0; i < count_; ++i) {
            isFinite &= std::isfinite(values.array[i]);
            values.most = std::max(values.most, std::abs(values.array[i]));
            values.least = std::min(values.least, values.array[i]);
        }
        checkFinite(isFinite ? values.most : NAN);
    }
    static void checkFinite(double value) {
        if (!std::isfinite(value)) throw std::invalid_argument("a term is not finite everywhere");
    }

    void setRow(std::size_t row, std::vector<Point>& points) const {
        std::size_t place = row;
        Point point;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const auto size = static_cast<std::size_t>(sizes_[axis]);
            point[static_cast<int>(axis)] = h_[axis] * static_cast<double>(place % size);
            place /= size;
        }
        for (std::size_t x = 0; x < points.size(); ++x) {
            points[x] = point;
            points[x][0] = h_[0] * static_cast<double>(x);
        }
    }
    template <class Term>
    static void ask(const Term& term, Values& values, double time, const std::vector<Point>& points,
                    std::size_t row) {
        if (const auto* const function = term.function())
            (*function)(time, points.data(), points.size(), values.own.data() + row);
    }
    template <class Term>
    void settle(const Term& term, Values& values) const {
        if (term.function()) measure(values);
    }
    void askVelocity(double time, const std::vector<Point>& points, std::size_t row) {
        Point* const found = velocities_.data() + row;
        equation_.velocity(time, points.data(), points.size(), found);
        for (std::size_t i = 0; i < points.size(); ++i) {
            checkFinite(dot(found[i], found[i]));
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                mostVelocity_[axis] =
                    std::max(mostVelocity_[axis], std::abs(found[i][static_cast<int>(axis)]));
        }
    }

    static const double* valuesOf(const Values& values, std::size_t first, std::size_t) {
        return values.array ? values.array + first : values.block.data();
    }

    const Equation& equation_;
    Sizes sizes_;
    Vector<dimensions> h_;
    std::size_t count_ = 1;
    Values normal_, curvature_, source_;
    std::vector<Point> velocities_;
    Vector<dimensions> mostVelocity_{};
};

}  // namespace lset::detail
