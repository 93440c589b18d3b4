#include "resampling.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "../io/failure.h"
#include "grids.h"
#include "placing.h"

namespace quorbin::fields {

namespace {

struct Tap {
    std::size_t index;
    double weight;
};

double keys(double t) {
    t = std::abs(t);
    return t < 1 ? (1.5 * t - 2.5) * t * t + 1 : t < 2 ? ((2.5 - 0.5 * t) * t - 4) * t + 2 : 0;
}

/// What the sample at a place between 0 and count - 1 is made of; stretch ≥ 1 is how wide the kernel is.
std::vector<Tap> tapsAt(double place, double stretch, int count) {
    if (count == 1) return {{0, 1}};
    const auto first = static_cast<long long>(std::ceil(place - 2 * stretch)),
               end = static_cast<long long>(std::floor(place + 2 * stretch)) + 1;
    std::map<long long, double> weight;
    const long long last = count - 1;
    // Beyond the border a sample is twice the last one less the one as far before it.
    const auto add = [&](long long i, double w) {
        while (i < 0 || i > last) {
            const long long border = i < 0 ? 0 : last;
            weight[border] += 2 * w;
            i = 2 * border - i;
            w = -w;
        }
        weight[i] += w;
    };
    double sum = 0, moment = 0;
    for (long long i = first; i < end; ++i) {
        const double w = keys((static_cast<double>(i) - place) / stretch);
        sum += w;
        moment += w * (static_cast<double>(i) - place);
    }
    for (long long i = first; i < end; ++i) add(i, keys((static_cast<double>(i) - place) / stretch) / sum);
    // A stretched kernel meets its samples unevenly; two neighbours make up for that on slopes.
    if (stretch > 1) {
        const long long before = std::min(static_cast<long long>(place), last - 1);
        add(before, moment / sum);
        add(before + 1, -moment / sum);
    }
    std::vector<Tap> taps;
    for (const auto& [i, w] : weight)
        if (w != 0) taps.push_back({static_cast<std::size_t>(i), w});
    return taps;
}

/// Whether the work goes on.
bool tell(const Progress& progress, std::size_t done, std::size_t all) {
    constexpr int kParts = 1000;
    return progress(static_cast<int>(static_cast<double>(done) / static_cast<double>(all) * kParts), kParts);
}

/// Along an axis of which neighbours lie stride samples apart. Empty where progress has ended it.
std::vector<double> resampledAlong(const double* samples, std::size_t stride, std::size_t rows, int oldCount,
                                   int newCount, double step, const Progress& progress) {
    const auto before = static_cast<std::size_t>(oldCount), after = static_cast<std::size_t>(newCount);
    std::vector<double> out(rows * after * stride);
    std::vector<std::vector<Tap>> taps;
    for (std::size_t j = 0; j < after; ++j)
        taps.push_back(
            tapsAt(std::min(static_cast<double>(j) * step, oldCount - 1.0), std::max(step, 1.0), oldCount));
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t j = 0; j < after; ++j) {
            if (progress && (j == 0 || rows == 1) && !tell(progress, row * after + j, rows * after))
                return {};
            double* const to = out.data() + (row * after + j) * stride;
            for (const Tap& tap : taps[j]) {
                const double* const from = samples + (row * before + tap.index) * stride;
                for (std::size_t i = 0; i < stride; ++i) to[i] += tap.weight * from[i];
            }
        }
    return out;
}

void requireUsable(const Lattice& old, const Lattice& made) {
    double points = 1;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (old.size[axis] > 1 && made.size[axis] < 2)
            io::refuse("would have one sample along {}; give it two or more", "xyz"[axis]);
        points *= made.size[axis];
    }
    constexpr double kMost = 2147483647;
    if (points > kMost)
        io::refuse("would have {} × {} × {} points, of which there may be {:.0f}; give it fewer",
                   made.size[0], made.size[1], made.size[2], kMost);
}

}  // namespace

Lattice latticeOf(const FullLevelSet2D& field) { return {sizeOf(field), spacingOf(field)}; }
Lattice latticeOf(const FullLevelSet3D& field) { return {sizeOf(field), spacingOf(field)}; }

Lattice withSize(const Lattice& old, const std::array<long long, 3>& size) {
    Lattice made = old;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (old.size[axis] == 1 && size[axis] != 1)
            io::refuse("has one sample along {}; that cannot become {}", "xyz"[axis], size[axis]);
        made.size[axis] = static_cast<int>(std::min(size[axis], io::kMostAlongAnAxis));
        if (made.size[axis] > 1)
            made.spacing[axis] = old.spacing[axis] * (old.size[axis] - 1) / (made.size[axis] - 1);
    }
    requireUsable(old, made);
    return made;
}

Lattice withSpacing(const Lattice& old, const std::array<double, 3>& spacing) {
    Lattice made = old;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (old.size[axis] == 1) continue;
        // Spacings are rounded numbers: the last sample counts where it is missed by as little.
        constexpr double kRounding = 1e-9;
        const double count =
            std::floor((old.size[axis] - 1) * (old.spacing[axis] / spacing[axis]) + kRounding) + 1;
        if (count > static_cast<double>(io::kMostAlongAnAxis))
            io::refuse("would have {} samples along {}, of which there may be {}; give a larger spacing",
                       count, "xyz"[axis], io::kMostAlongAnAxis);
        made.size[axis] = static_cast<int>(count);
        made.spacing[axis] = spacing[axis];
    }
    requireUsable(old, made);
    return made;
}

Lattice withSquarePixels(const Lattice& plane) {
    constexpr int kMostPixels = 32767;
    double side = std::min(plane.spacing[0], plane.spacing[1]);
    for (std::size_t axis = 0; axis < 2; ++axis)
        side = std::max(side, (plane.size[axis] - 1) * plane.spacing[axis] / (kMostPixels - 1));
    Lattice made = plane;
    for (std::size_t axis = 0; axis < 2; ++axis) {
        made.size[axis] = static_cast<int>(
            std::max(std::lround((plane.size[axis] - 1) * plane.spacing[axis] / side) + 1, 1L));
        made.spacing[axis] = side;
    }
    return made;
}

std::vector<double> resampled(const double* samples, const Lattice& from, const Lattice& to,
                              const Progress& progress) {
    std::vector<double> made;
    const double* last = samples;
    Lattice at = from;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const bool isAsItIs = at.size[axis] == to.size[axis] && at.spacing[axis] == to.spacing[axis];
        if (isAsItIs) continue;
        std::size_t stride = 1, rows = 1;
        for (std::size_t other = 0; other < 3; ++other)
            (other < axis ? stride : rows) *= other == axis ? 1 : static_cast<std::size_t>(at.size[other]);
        made = resampledAlong(last, stride, rows, at.size[axis], to.size[axis],
                              to.spacing[axis] / at.spacing[axis], progress);
        if (made.empty()) return made;
        last = made.data();
        at.size[axis] = to.size[axis];
    }
    const auto points = static_cast<std::size_t>(at.size[0]) * static_cast<std::size_t>(at.size[1]) *
                        static_cast<std::size_t>(at.size[2]);
    if (made.empty()) made.assign(samples, samples + points);
    return made;
}

namespace {

template <class Grid>
bool resampleGrid(Grid& field, const Lattice& to, const Progress& progress) {
    const std::vector<double> samples = resampled(field.data(), latticeOf(field), to, progress);
    if (samples.empty()) return false;
    initGrid(field, to.size, to.spacing);
    std::copy(samples.begin(), samples.end(), field.data());
    return true;
}

}  // namespace

bool resample(FullLevelSet2D& field, const Lattice& to, const Progress& progress) {
    return resampleGrid(field, to, progress);
}

bool resample(FullLevelSet3D& field, const Lattice& to, io::Placement& placement, const Progress& progress) {
    if (!resampleGrid(field, to, progress)) return false;
    respace(placement, to.spacing);
    return true;
}

}  // namespace quorbin::fields
