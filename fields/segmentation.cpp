#include "segmentation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

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
                    k = weight_;
                    vx = vy = 0;
                    source = force(x, y);
                },
                h / std::max(largestForce(), 1e-3), 0);
        } else {
            field.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
                const double outward = force(x, y);
                *limit = 1 / (stiffness + 2 * std::abs(outward) / h);
                return weight_ * levelSet->getCurvature(x, y) + outward;
            });
        }
        if (step != steps && !(implicit_ && step % kImplicitReinit == 0)) continue;
        if (!hasCrossing(field)) return false;
        distanceByProjection(field);
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
        points.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
            const double outward = force(inPicture(x, width_), inPicture(y, height_));
            *limit = 1 / (stiffness + 2 * std::abs(outward) / h);
            return weight_ * levelSet->getCurvature(x, y) + outward;
        });
        if ((step == steps || step % kReinit == 0) && !band.reinitialise()) return false;
    }
    return true;
}

double furthestApart(const FullLevelSet2D& one, const FullLevelSet2D& other) {
    double furthest = 0;
    for (const auto& [from, to] : {std::pair{&one, &other}, {&other, &one}}) {
        std::vector<brin::Vec2<double>> points;
        std::vector<std::pair<int, int>> segments;
        from->getLinesUnique(points, segments);
        for (const auto& point : points)
            furthest = std::max(furthest, std::abs(to->bilinear(point.x, point.y)));
    }
    return furthest / std::min(one.getXSpace(), one.getYSpace());
}

}  // namespace quorbin::fields
