#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "band/differences/readers.h"
#include "band/distance/reinitialize_band.h"
#include "band/flows/tile_halo.h"
#include "band/storage/band_access.h"
#include "band/storage/workspace.h"
#include "common/flows/curvature_term.h"
#include "common/flows/flow_checks.h"

namespace lset::detail {

/// Motion of a band by its curvature (see quorbin::curvatureFlow). The band stays laid out in tiles from the
/// first step to the last.
template <std::size_t dimensions>
class BandCurvatureFlow {
 public:
    using Options = quorbin::CurvatureFlowOptions;
    using Result = quorbin::CurvatureFlowResult;
    using Storage = BandStorage<dimensions>;
    using Entries = std::vector<typename Storage::Entry>;

    BandCurvatureFlow(BandWorkspace<dimensions>& work, const Vector<dimensions>& h, const Options& options)
        : work_(work), h_(h), options_(options), width_(kWidth * *std::max_element(h.begin(), h.end())) {
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            first_[axis] = 1 / (2 * h[axis]);
            second_[axis] = 1 / (h[axis] * h[axis]);
        }
    }

    Result run(double time, const Stretch& whole) {
        now_ = whole.part(0, 0);
        // A band that is too thin for the first steps gets its width before them.
        if (!restoreDistance()) throwNoInterface();
        const double steps = explicitSteps(time, h_, options_.rate);
        const double dt = time / steps;
        Result result;
        for (double done = 1; done <= steps && time > 0; ++done) {
            step(dt * options_.rate);
            ++result.steps;
            result.time = done * dt;
            if (std::fmod(done, kBetweenDistances) != 0 && done != steps) continue;
            if (!restoreDistance()) {
                result.hasVanished = true;
                return result;
            }
            now_ = whole.part(done / steps, done / steps);
            now_.tell(0);
        }
        return result;
    }

    /// The points and their distances after the last step.
    const Entries& entries() {
        work_.result.clear();
        for (std::size_t number = 0; number < work_.values.size(); ++number)
            if (work_.isStored(static_cast<int>(number)))
                work_.result.push_back(
                    Storage::entryOf(work_.tiles.point(static_cast<int>(number)), work_.values[number]));
        return work_.result;
    }

 private:
    using Tiles = TiledPoints<dimensions>;
    using Bits = std::uint64_t;

    static constexpr double kBetweenDistances = 8;
    static constexpr std::size_t kStepsOfAPoint = 2;
    // In samples to each side: cubics need two, and what steps do at the edge must not come so far.
    static constexpr double kWidth = 4;
    static constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

    /// Points at the edge, where a neighbour is missing, move as the interface does at their feet.
    void step(double time) {
        next_ = work_.values;
        TileHalo<dimensions> halo;
        for (std::size_t tile = 0; tile < work_.stored.size(); ++tile) {
            if (work_.stored[tile] == 0) continue;
            now_.step(kStepsOfAPoint * Tiles::kTileSize);
            halo.read(work_.tiles, work_.values, static_cast<int>(tile));
            double* const values = next_.data() + tile * Tiles::kTileSize;
            for (int place = 0; place < Tiles::kTileSize; ++place) {
                double rate = rateAt(halo.at(place));
                if (std::isnan(rate)) rate = rateAtFoot(tile * Tiles::kTileSize + std::size_t(place));
                values[place] += time * rate;
            }
        }
        work_.values.swap(next_);
    }

    /// κ |∇φ| by central differences; not-a-number where a neighbour is missing.
    double rateAt(const double* c) const {
        constexpr auto stride = TileHalo<dimensions>::kStride;
        const auto at = [=](int dx, int dy, int dz = 0) {
            return c[dx * stride[0] + dy * stride[1] + dz * stride[2]];
        };
        const double twice = 2 * c[0];
        const double fx = (at(1, 0) - at(-1, 0)) * first_[0], fy = (at(0, 1) - at(0, -1)) * first_[1];
        const double fxx = ((at(1, 0) + at(-1, 0)) - twice) * second_[0];
        const double fyy = ((at(0, 1) + at(0, -1)) - twice) * second_[1];
        const double fxy = ((at(1, 1) - at(-1, 1)) - (at(1, -1) - at(-1, -1))) * (first_[0] * first_[1]);
        if constexpr (dimensions == 2) {
            return curvatureTerm(fx, fy, fxx, fyy, fxy);
        } else {
            const double fz = (at(0, 0, 1) - at(0, 0, -1)) * first_[2];
            const double fzz = ((at(0, 0, 1) + at(0, 0, -1)) - twice) * second_[2];
            const double fxz =
                ((at(1, 0, 1) - at(-1, 0, 1)) - (at(1, 0, -1) - at(-1, 0, -1))) * (first_[0] * first_[2]);
            const double fyz =
                ((at(0, 1, 1) - at(0, -1, 1)) - (at(0, 1, -1) - at(0, -1, -1))) * (first_[1] * first_[2]);
            return curvatureTerm(fx, fy, fz, fxx, fyy, fzz, fxy, fxz, fyz);
        }
    }

    /// The sum of the principal curvatures, of the level set through a point, as its foot had them.
    double rateAtFoot(std::size_t number) const {
        const double distance = work_.values[number];
        if (std::isnan(distance)) return 0;
        const Foot<dimensions>& foot = work_.feet.feet[work_.feet.nearest[number].foot()];
        double sum = 0;
        // Near a centre of curvature there is no such level set: none bends more than its distance allows.
        const double most = 1 / std::max(std::abs(distance), *std::min_element(h_.begin(), h_.end()));
        for (const double curvature : foot.curvatures) {
            const double scale = 1 + curvature * distance;
            sum += scale > 0 ? std::clamp(curvature / scale, -most, most) : 0.0;
        }
        return sum;
    }

    /// Makes the values a signed distance again; false if there is no interface left.
    bool restoreDistance() {
        BandReinitialization<dimensions> made(work_.tiles, work_.values, work_.stored, work_.feet, h_);
        if (!made.run(width_, now_)) return false;
        next_.assign(work_.tiles.size(), kNothing);
        stored_.assign(work_.tiles.tileCount(), 0);
        made.forEachDistance(
            [&](int number, const auto&, double distance) {
                const auto n = static_cast<std::size_t>(number);
                next_[n] = distance;
                stored_[n / Tiles::kTileSize] |= Bits{1} << n % Tiles::kTileSize;
            },
            now_);
        work_.values.swap(next_);
        work_.stored.swap(stored_);
        return true;
    }

    BandWorkspace<dimensions>& work_;
    Vector<dimensions> h_, first_, second_;
    const Options& options_;
    double width_;
    Stretch now_;  // what is done so far, without extent
    std::vector<double> next_;
    std::vector<Bits> stored_;
};

template <class Band>
quorbin::CurvatureFlowResult flowOnBand(Band& band, double time,
                                        const quorbin::CurvatureFlowOptions& options) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    checkCurvatureFlow(time, options);
    checkBandFlow(options);
    const auto h = BandTraits<Band>::spacings(band);
    checkSpacings<dimensions>(h);
    auto& work = BandAccess::work(band);
    auto& values = BandAccess::values(band);
    quorbin::CurvatureFlowResult result;
    result.isEnded = !isDoneToTheEnd(options.progress, [&](const Stretch& whole) {
        work.copy(band.points(), whole.part(0, 0));
        BandCurvatureFlow<dimensions> flow(work, h, options);
        result = flow.run(time, whole);
        if (result.hasVanished)
            values.clear();
        else
            replacePoints<dimensions>(values, flow.entries(), work.inOrder, whole.part(1, 1));
    });
    return result;
}

}  // namespace lset::detail
