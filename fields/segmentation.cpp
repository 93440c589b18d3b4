#include "segmentation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

#include "../io/failure.h"
#include "distance.h"
#include "from_samples.h"

namespace quorbin::fields {

Segmentation::Segmentation(const io::Image& picture, double weight, bool implicit)
    : width_(picture.width),
      height_(picture.height),
      intensity_(picture.samples),
      weight_(weight),
      implicit_(implicit) {
    const auto [low, high] = std::minmax_element(intensity_.begin(), intensity_.end());
    const double darkest = *low, span = *high > *low ? *high - *low : 1;
    for (double& value : intensity_) value = (value - darkest) / span;
}

double Segmentation::force(int x, int y) const {
    return forceOf(intensity_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                              static_cast<std::size_t>(x)]);
}

double Segmentation::forceOf(double intensity) const {
    const double toInside = intensity - meanInside_, toOutside = intensity - meanOutside_;
    return toInside * toInside - toOutside * toOutside;
}

double Segmentation::largestForce() const {
    double largest = 0;
    for (const double intensity : {0.0, 1.0}) largest = std::max(largest, std::abs(forceOf(intensity)));
    return largest;  // linear in the intensity, so largest at an end
}

void Segmentation::measureMeans(const FullLevelSet2D& field) {
    double sumInside = 0, sumOutside = 0;
    std::size_t inside = 0;
    for (std::size_t i = 0; i < intensity_.size(); ++i) {
        const bool isInside = field.data()[i] <= 0;
        (isInside ? sumInside : sumOutside) += intensity_[i];
        inside += isInside ? 1 : 0;
    }
    if (inside > 0) meanInside_ = sumInside / static_cast<double>(inside);
    if (inside < intensity_.size())
        meanOutside_ = sumOutside / static_cast<double>(intensity_.size() - inside);
}

bool Segmentation::move(FullLevelSet2D& field, int steps) {
    constexpr int kImplicitReinit = 5;
    const double hx = field.getXSpace(), hy = field.getYSpace(), h = std::min(hx, hy);
    const double stiffness = 2 * weight_ * (1 / (hx * hx) + 1 / (hy * hy));
    for (int step = 1; step <= steps; ++step) {
        measureMeans(field);
        if (implicit_) {
            field.moveWithCurvatureImplicit(
                [&](LevelSet2D*, int x, int y, double& k, double& vx, double& vy, double& source) {
                    if (x == 0) look();
                    k = weight_;
                    vx = vy = 0;
                    source = force(x, y);
                },
                h / std::max(largestForce(), 1e-3), 0);
        } else {
            field.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
                if (x == 0) look();
                const double outward = force(x, y);
                *limit = 1 / (stiffness + 2 * std::abs(outward) / h);
                return weight_ * levelSet->getCurvature(x, y) + outward;
            });
        }
        if (step != steps && !(implicit_ && step % kImplicitReinit == 0)) continue;
        if (!hasCrossing(field)) return false;
        Progress looked;
        if (look_) looked = [&](int, int) { return look(), true; };
        distanceByProjection(field, looked);
    }
    return true;
}

bool Segmentation::move(Band<2>& band, const FullLevelSet2D& field, int steps) {
    constexpr int kReinit = 2;
    measureMeans(field);
    FastLevelSet2D& points = band.points();
    const double hx = points.getXSpace(), hy = points.getYSpace(), h = std::min(hx, hy);
    const double stiffness = 2 * weight_ * (1 / (hx * hx) + 1 / (hy * hy));
    const auto inPicture = [](int c, int count) {
        const int mirrored = c < 0 ? -c : c < count ? c : 2 * (count - 1) - c;
        return std::clamp(mirrored, 0, count - 1);
    };
    for (int step = 1; step <= steps; ++step) {
        look();
        points.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
            const double outward = force(inPicture(x, width_), inPicture(y, height_));
            *limit = 1 / (stiffness + 2 * std::abs(outward) / h);
            return weight_ * levelSet->getCurvature(x, y) + outward;
        });
        if ((step == steps || step % kReinit == 0) && !band.reinitialise()) return false;
    }
    return true;
}

double furthestApart(const FullLevelSet2D& one, const FullLevelSet2D& other,
                     const std::function<void()>& look) {
    double furthest = 0;
    const int width = one.getWidth(), height = one.getHeight();
    for (const auto& [from, to] : {std::pair{&one, &other}, {&other, &one}}) {
        const auto isInside = [values = from->data(), width](int x, int y) {
            return values[static_cast<std::ptrdiff_t>(y) * width + x] <= 0;
        };
        const auto measure = [&, from = from, to = to](int x, int y, int nextX, int nextY) {
            if (isInside(x, y) == isInside(nextX, nextY)) return;
            const brin::Vec2<double> point = from->getPoint(x, y, nextX, nextY);
            furthest = std::max(furthest, std::abs(to->bilinear(point.x, point.y)));
        };
        for (int y = 0; y < height; ++y) {
            if (look) look();
            for (int x = 0; x < width; ++x) {
                if (x + 1 < width) measure(x, y, x + 1, y);
                if (y + 1 < height) measure(x, y, x, y + 1);
            }
        }
    }
    return furthest / std::min(one.getXSpace(), one.getYSpace());
}

namespace {

constexpr int kStepsBetweenLooks = 10;
constexpr double kStill = 0.1;  // samples
constexpr double kReach = 3;    // of a band, in the larger spacing

struct Ended {};

SegmentResult follow(const io::Image& picture, FullLevelSet2D& field, const SegmentOptions& options) {
    const double hx = field.getXSpace(), hy = field.getYSpace();
    if (options.onBand && !suitsABand({hx, hy}))
        io::refuse("its spacings differ too much for a band; leave out --band");
    SegmentResult result;
    Segmentation segmentation(picture, options.weight, options.implicit);
    std::function<void()> look;
    if (options.progress)
        look = [&] {
            if (!options.progress(result.steps, options.maxSteps)) throw Ended();
        };
    segmentation.whileMoving(look);
    std::optional<Band<2>> band;
    if (options.onBand) band.emplace(field, kReach * std::max(hx, hy));
    if (options.follow) options.follow(0, field);
    FullLevelSet2D before;
    do {
        before = field;
        const int steps = std::min(kStepsBetweenLooks, options.maxSteps - result.steps);
        const bool isLeft = band ? segmentation.move(*band, field, steps) : segmentation.move(field, steps);
        if (band) band->copyTo(field);
        result.steps += steps;
        if (!isLeft || !hasCrossing(field))
            throw io::Failure(
                io::kNoCrossing,
                fmt::format(
                    "nothing is left of the outline after {} steps; give a smaller --weight or another start",
                    result.steps));
        result.moved = furthestApart(before, field, look);
        if (options.follow) options.follow(result.steps, field);
        if (look) look();
    } while (result.moved >= kStill && result.steps < options.maxSteps);
    result.isStill = result.moved < kStill;
    result.meanInside = segmentation.meanInside();
    result.meanOutside = segmentation.meanOutside();
    return result;
}

}  // namespace

SegmentResult segment(const io::Image& picture, FullLevelSet2D& field, const SegmentOptions& options) {
    try {
        return follow(picture, field, options);
    } catch (const Ended&) {
        SegmentResult result;
        result.isEnded = true;
        return result;
    }
}

}  // namespace quorbin::fields
