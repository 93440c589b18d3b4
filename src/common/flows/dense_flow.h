#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "common/distance/reinitialize_part.h"
#include "common/flows/curvature_rows.h"
#include "common/flows/factored_diffusion.h"
#include "common/flows/flow_checks.h"
#include "common/flows/noise_mask.h"
#include "common/storage/dense_traits.h"
#include "common/storage/unchanged.h"

namespace lset::detail {

template <class Grid>
using SizeInside = double (*)(const Grid&, const Stretch&);

/// Motion of a dense grid by its curvature (see quorbin::curvatureFlow).
template <class Grid>
class DenseCurvatureFlow {
 public:
    using Options = quorbin::CurvatureFlowOptions;
    using Result = quorbin::CurvatureFlowResult;

    /// sizeInside(grid, stretch) is the area or volume that the interface encloses.
    DenseCurvatureFlow(Grid& grid, const Options& options, SizeInside<Grid> sizeInside)
        : grid_(grid),
          options_(options),
          sizeInside_(sizeInside),
          sizes_(Traits::sizes(grid)),
          h_(Traits::spacings(grid)),
          largest_(*std::max_element(h_.begin(), h_.end())),
          rows_(sizes_, h_),
          noise_(sizes_, h_, options.noiseRadius),
          count_(pointCount(grid)) {}

    Result run(double time) {
        ValuesBefore before(grid_.data(), options_.progress ? count_ : 0);
        result_.isEnded = !isDoneToTheEnd(options_.progress, [&](const Stretch& whole) {
            now_ = whole.part(0, 0);
            if (options_.progress)
                inBlocks(count_, now_, [&](std::size_t first, std::size_t last) {
                    before.keep(grid_.data() + first, last - first);
                });
            flow(time, whole);
        });
        if (!result_.isEnded) before.forget();
        return result_;
    }

 private:
    using Traits = DenseTraits<Grid>;
    static constexpr std::size_t dimensions = Traits::dimensions;

    void flow(double time, const Stretch& whole) {
        if (options_.keepsSize) size_ = sizeInside_(grid_, now_);
        reinitializePart(grid_, now_);
        if (options_.keepsSides) rememberSides();
        try {
            isLarge(time) ? inLargeSteps(time, whole) : inExplicitSteps(time, whole);
        } catch (const quorbin::NoInterface&) {
            result_.hasVanished = true;
        }
    }

    bool isLarge(double time) const {
        if (options_.steps != Options::Steps::kFastest) return options_.steps == Options::Steps::kLarge;
        constexpr double kFew = 50;
        return options_.noiseRadius == 0 && !options_.keepsSides &&
               time > kFew * longestExplicitStep(h_, options_.rate);
    }

    void inExplicitSteps(double time, const Stretch& whole) {
        std::vector<double> rates = filled(count_, 0.0, now_);
        goExplicitly(time, time, rates, whole);
    }

    /// Goes on for a part of the time that there is in all.
    void goExplicitly(double part, double time, std::vector<double>& rates, const Stretch& whole) {
        constexpr double kBetweenDistances = 20;
        const double steps = explicitSteps(part, h_, options_.rate), start = result_.time;
        const double dt = part / steps;
        for (double done = 1; done <= steps && part > 0; ++done) {
            writeRates(grid_.data(), rates.data());
            double* const values = grid_.data();
            forEachPoint([&](std::size_t i) { values[i] += dt * rates[i]; });
            restoreSides();
            ++result_.steps;
            if (std::fmod(done, kBetweenDistances) == 0 || done == steps) restoreDistance();
            result_.time = start + done * dt;
            goOn(time, whole);
        }
    }

    void inLargeSteps(double time, const Stretch& whole) {
        // A large step costs as much as about so many explicit ones. Where the outline is rough, large ones
        // would be shorter than that; explicit ones smooth it, and large ones are tried again ever later.
        constexpr double kWorth = 12;
        const bool mayBeExplicit = options_.steps == Options::Steps::kFastest;
        const double shortest = longestExplicitStep(h_, options_.rate);
        std::vector<double> halves = filled(count_, 0.0, now_), once = filled(count_, 0.0, now_);
        double dt = 20 * shortest, explicitly = 20 * shortest;
        while (result_.time < time) {
            const double left = time - result_.time;
            if (mayBeExplicit && dt < kWorth * shortest) {
                goExplicitly(std::min(explicitly, left), time, halves, whole);
                if (explicitly >= left) result_.time = time;
                dt = 1.5 * kWorth * shortest;
                explicitly *= 2;
                continue;
            }
            const double step = dt >= left ? left : std::min(dt, 0.5 * left);
            tryStep(step, halves, once);
            const double part = differencePart(halves, once);
            const bool isGone = !hasInterface(halves, once);
            if ((part > 2 * options_.tolerance || isGone) && step > shortest) {
                dt = step * std::clamp(0.9 * options_.tolerance / part, 0.2, 0.7);
                continue;
            }
            double* const values = grid_.data();
            forEachPoint([&](std::size_t i) { values[i] = 2 * halves[i] - once[i]; });
            ++result_.steps;
            restoreDistance();
            result_.time = step == left ? time : result_.time + step;
            goOn(time, whole);
            dt = step * std::clamp(0.9 * options_.tolerance / part, 0.5, 2.0);
        }
    }

    /// Two half steps and one whole one, from the values of the grid.
    void tryStep(double dt, std::vector<double>& halves, std::vector<double>& whole) {
        const double* const values = grid_.data();
        const auto solver = [&](double step) {
            Vector<dimensions> weights;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                weights[axis] = step * options_.rate / (h_[axis] * h_[axis]);
            return FactoredDiffusion<dimensions>(sizes_, weights);
        };
        const FactoredDiffusion<dimensions> half = solver(0.5 * dt), all = solver(dt);
        const auto change = [&](const double* from, double step, const auto& diffusion,
                                std::vector<double>& changes) {
            writeRates(from, changes.data());
            forEachPoint([&](std::size_t i) { changes[i] *= step; });
            diffusion.solve(changes.data(), now_);
        };
        change(values, 0.5 * dt, half, halves);
        forEachPoint([&](std::size_t i) { halves[i] += values[i]; });
        change(halves.data(), 0.5 * dt, half, whole);
        forEachPoint([&](std::size_t i) { halves[i] += whole[i]; });
        change(values, dt, all, whole);
        forEachPoint([&](std::size_t i) { whole[i] += values[i]; });
    }

    /// Difference of the whole step from its halves beside the interface, as a part of the way; the way
    /// counts as a twentieth of a sample at least, since what hardly moves need not do so exactly.
    double differencePart(const std::vector<double>& halves, const std::vector<double>& whole) const {
        const double* const values = grid_.data();
        const double near = 2 * largest_;
        double differences = 0, way = 0;
        forEachPoint([&](std::size_t i) {
            if (std::abs(values[i]) > near && std::abs(halves[i]) > near) return;
            differences += std::abs(halves[i] - whole[i]);
            way += std::abs(halves[i] - values[i]) + 0.05 * largest_;
        });
        return way > 0 ? differences / way : 0;
    }

    bool hasInterface(const std::vector<double>& halves, const std::vector<double>& whole) const {
        bool isInside = false, isOutside = false;
        for (std::size_t i = 0; i < count_ && !(isInside && isOutside); ++i)
            (2 * halves[i] - whole[i] <= 0 ? isInside : isOutside) = true;
        return isInside && isOutside;
    }

    void writeRates(const double* values, double* rates) {
        rows_.write(values, rates, now_);
        smoothBorder(values, rates);
        if (options_.noiseRadius > 0) noise_.apply(values, rates, now_);
        const double mean = options_.keepsSize ? meanNearInterface(values, rates) : 0;
        forEachPoint([&](std::size_t i) { rates[i] = options_.rate * (rates[i] - mean); });
    }

    /// Takes the rates on the border from beside it, but where the interface is near. There the mirror image
    /// bends all level sets, as it should bend the interface; others would bring that to it in large steps.
    void smoothBorder(const double* values, double* rates) const {
        const double near = 3 * largest_;
        std::ptrdiff_t stride = 1;
        for (const int size : sizes_) {
            const std::ptrdiff_t last = (size - 1) * stride, block = size * stride;
            const auto count = static_cast<std::ptrdiff_t>(count_);
            for (std::ptrdiff_t start = 0; start < count && size > 1; start += block)
                for (std::ptrdiff_t i = start; i < start + stride; ++i) {
                    if (std::abs(values[i]) > near) rates[i] = rates[i + stride];
                    if (std::abs(values[i + last]) > near) rates[i + last] = rates[i + last - stride];
                }
            stride = block;
        }
    }

    /// By the points within one and a half samples, the nearest most.
    double meanNearInterface(const double* values, const double* rates) const {
        const double near = 1.5 * largest_;
        double sum = 0, weights = 0;
        forEachPoint([&](std::size_t i) {
            const double weight = near - std::abs(values[i]);
            if (!(weight > 0)) return;
            sum += weight * rates[i];
            weights += weight;
        });
        return weights > 0 ? sum / weights : 0;
    }

    void restoreDistance() {
        reinitializePart(grid_, now_);
        if (!options_.keepsSize) return;
        // A distance shifts the size by about the interface's own one.
        constexpr int kShifts = 3;
        for (int i = 0; i < kShifts; ++i) {
            const double missing = size_ - sizeInside_(grid_, now_);
            const double interface = interfaceSize();
            if (!(interface > 0)) return;
            const double shift = std::clamp(missing / interface, -largest_, largest_);
            double* const values = grid_.data();
            forEachPoint([&](std::size_t k) { values[k] -= shift; });
            restoreSides();
        }
    }

    void rememberSides() {
        isInside_.resize(count_);
        const double* const values = grid_.data();
        forEachPoint([&](std::size_t i) { isInside_[i] = values[i] <= 0; });
    }

    /// Values that have changed their side go back to where it begins.
    void restoreSides() {
        if (isInside_.empty()) return;
        double* const values = grid_.data();
        forEachPoint([&](std::size_t i) {
            values[i] = isInside_[i] ? std::min(values[i], 0.0)
                                     : std::max(values[i], std::numeric_limits<double>::min());
        });
    }

    double interfaceSize() const {
        const double near = 1.5 * largest_;
        const double* const values = grid_.data();
        const auto points =
            std::count_if(values, values + count_, [=](double v) { return std::abs(v) < near; });
        double cell = 1;
        for (const double spacing : h_) cell *= spacing;
        return cell * static_cast<double>(points) / (2 * near);
    }

    void goOn(double time, const Stretch& whole) {
        const double share = std::min(result_.time / time, 1.0);
        now_ = whole.part(share, share);
        now_.tell(0);
    }

    template <class Visit>
    void forEachPoint(const Visit& visit) const {
        inBlocks(count_, now_, [&](std::size_t first, std::size_t last) {
            for (std::size_t i = first; i < last; ++i) visit(i);
        });
    }

    Grid& grid_;
    const Options& options_;
    SizeInside<Grid> sizeInside_;
    Stretch now_;  // what is done so far, without extent
    std::array<int, dimensions> sizes_;
    Vector<dimensions> h_;
    double largest_;
    CurvatureRows<dimensions> rows_;
    NoiseMask<dimensions> noise_;
    std::size_t count_;
    double size_ = 0;
    std::vector<bool> isInside_;  // if sides are kept
    Result result_;
};

template <class Grid>
quorbin::CurvatureFlowResult flowOnGrid(Grid& grid, double time, const quorbin::CurvatureFlowOptions& options,
                                        SizeInside<Grid> sizeInside) {
    checkCurvatureFlow(time, options);
    return DenseCurvatureFlow<Grid>(grid, options, sizeInside).run(time);
}

}  // namespace lset::detail
