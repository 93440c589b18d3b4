#pragma once

#include <initializer_list>

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

/// The known neighbours along one axis.
struct KnownAlongAxis {
    int count = 0;
    double distance[2];

    void add(double d) { distance[count++] = d; }
    const double* begin() const { return distance; }
    const double* end() const { return distance + count; }
};

/// Tentative distance of a point from those of its neighbours that are known, by direction. Candidates from three axes rule out
/// those from two, and these the single ones, however near.
inline Estimate3D estimateFrom(const bool (&known)[6], const double (&d)[6],
                               const EikonalQuadratics3D& quadratics) {
    KnownAlongAxis along[3];
    for (int direction = 0; direction < 6; ++direction)
        if (known[direction]) along[axisOf(direction)].add(d[direction]);
    RunningMin nearest;
    for (const double x : along[0])
        for (const double y : along[1])
            for (const double z : along[2]) nearest.offer(quadratics.triple(x, y, z));
    if (nearest.best < kUsable) return {nearest.best, Source::kTriple};
    for (const int lower : {0, 1})
        for (int higher = lower + 1; higher < 3; ++higher)
            for (const double a : along[lower])
                for (const double b : along[higher]) nearest.offer(quadratics.pair(lower, higher, a, b));
    if (nearest.best < kUsable) return {nearest.best, Source::kPair};
    for (const int axis : {0, 1, 2})
        for (const double a : along[axis]) nearest.offer(quadratics.single(axis, a));
    return {nearest.best, Source::kSingle};
}

/// The next tentative distance of a point once a neighbour along an axis, at the distance here, has become known. Only
/// candidates that it is part of can be new; the minimum over the others is the last distance, unless that comes from fewer
/// axes than are known now. The last distance must be usable; its source becomes that of the next.
template <int axis>
double improved(double last, Source& source, double here, const KnownAlongAxis& lower,
                const KnownAlongAxis& higher, const EikonalQuadratics3D& quadratics) {
    const auto pair = [&](int other, double there) {
        return axis < other ? quadratics.pair(axis, other, here, there)
                            : quadratics.pair(other, axis, there, here);
    };
    RunningMin nearest;
    for (const double h : higher)
        for (const double l : lower)
            nearest.offer(axis == 0   ? quadratics.triple(here, l, h)
                          : axis == 1 ? quadratics.triple(l, here, h)
                                      : quadratics.triple(l, h, here));
    if (source == Source::kTriple) return last > nearest.best ? nearest.best : last;
    if (nearest.best < kUsable) {
        source = Source::kTriple;
        return nearest.best;
    }
    nearest = RunningMin();
    for (const double l : lower) nearest.offer(pair(axis == 0 ? 1 : 0, l));
    for (const double h : higher) nearest.offer(pair(axis == 2 ? 1 : 2, h));
    if (source == Source::kPair) return last > nearest.best ? nearest.best : last;
    if (nearest.best < kUsable) {
        source = Source::kPair;
        return nearest.best;
    }
    const double single = quadratics.single(axis, here);
    return last > single ? single : last;
}

}  // namespace lset::detail
