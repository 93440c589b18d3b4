#pragma once

#include "common/states.h"
#include "quorbin2d/distance/eikonal_quadratic.h"

namespace lset::detail {

/// The directions of the six neighbours, those of an axis side by side.
enum Direction : int { kXMinus, kXPlus, kYMinus, kYPlus, kZMinus, kZPlus };
constexpr int axisOf(int direction) { return direction / 2; }

/// Corners of neighbours on three different axes, and pairs on two, in the order in which they are looked at.
constexpr Direction kTriples[8][3] = {{kXPlus, kYPlus, kZPlus},    {kXMinus, kYPlus, kZPlus},
                                      {kXMinus, kYMinus, kZPlus},  {kXPlus, kYMinus, kZPlus},
                                      {kXPlus, kYPlus, kZMinus},   {kXMinus, kYPlus, kZMinus},
                                      {kXMinus, kYMinus, kZMinus}, {kXPlus, kYMinus, kZMinus}};
constexpr Direction kPairs[12][2] = {{kXMinus, kYPlus}, {kXPlus, kYPlus},   {kZPlus, kYPlus},
                                     {kZMinus, kYPlus}, {kXMinus, kYMinus}, {kXPlus, kYMinus},
                                     {kZPlus, kYMinus}, {kZMinus, kYMinus}, {kZPlus, kXPlus},
                                     {kZPlus, kXMinus}, {kZMinus, kXPlus},  {kZMinus, kXMinus}};
constexpr Direction kSingles[6] = {kXPlus, kYPlus, kYMinus, kXMinus, kZPlus, kZMinus};

/// A candidate from here on is no distance.
constexpr double kUsable = 1e10;

/// The eikonal quadratic for neighbours on three axes, and for those on two, with what depends on the spacings alone formed
/// once. The former is guarded, the latter not; callers take a running minimum.
class EikonalQuadratics3D {
 public:
    EikonalQuadratics3D(double hx, double hy, double hz)
        : h_{hx, hy, hz},
          w_{1.0 / (hx * hx), 1.0 / (hy * hy), 1.0 / (hz * hz)},
          minusFourA_((w_[0] + w_[1] + w_[2]) * -4.0),
          twiceA_((w_[0] + w_[1] + w_[2]) + (w_[0] + w_[1] + w_[2])),
          pairs_{EikonalQuadratic2D(hx, hy), EikonalQuadratic2D(hx, hz), EikonalQuadratic2D(hy, hz)} {}

    double triple(double a, double b, double c) const {
        const double linear = (w_[0] * a + w_[1] * b + w_[2] * c) * -2.0;
        const double constant = a * (w_[0] * a) + b * (w_[1] * b) + c * (w_[2] * c) - 1.0;
        const double discriminant = linear * linear + constant * minusFourA_;
        if (discriminant < 0) return kNoDistance;
        const double t = (std::sqrt(discriminant) - linear) / twiceA_;
        return t < 0 ? kNoDistance : t;
    }

    /// Of neighbours on two axes, the lower one first.
    double pair(int lowerAxis, int higherAxis, double a, double b) const {
        return pairs_[lowerAxis + higherAxis - 1](a, b);
    }

    double single(int axis, double a) const { return a + h_[axis]; }

 private:
    double h_[3], w_[3];
    double minusFourA_, twiceA_;
    EikonalQuadratic2D pairs_[3];  // of the axes x y, x z, y z
};

enum class Source { kSingle, kPair, kTriple };
struct Estimate3D {
    double distance;
    Source source;
};

/// Tentative distance of a point from those of its neighbours that are known, by direction. Candidates from three axes rule out
/// those from two, and these the single ones, however near.
inline Estimate3D estimateFrom(const bool (&known)[6], const double (&d)[6],
                               const EikonalQuadratics3D& quadratics) {
    RunningMin nearest;
    for (const auto& [x, y, z] : kTriples)
        if (known[x] && known[y] && known[z]) nearest.offer(quadratics.triple(d[x], d[y], d[z]));
    if (nearest.best < kUsable) return {nearest.best, Source::kTriple};
    for (const auto& [p, q] : kPairs)
        if (known[p] && known[q])
            nearest.offer(p < q ? quadratics.pair(axisOf(p), axisOf(q), d[p], d[q])
                                : quadratics.pair(axisOf(q), axisOf(p), d[q], d[p]));
    if (nearest.best < kUsable) return {nearest.best, Source::kPair};
    for (const Direction s : kSingles)
        if (known[s]) nearest.offer(quadratics.single(axisOf(s), d[s]));
    return {nearest.best, Source::kSingle};
}

}  // namespace lset::detail
