#pragma once

#include <algorithm>
#include <cmath>
#include <type_traits>

#include <quorbin.h>

namespace quorbin::python {

/// The square of the difference along an axis on the side from which what moves outwards at this speed comes.
inline double upwindSquare(double speed, double minus, double plus) {
    const double slope = std::max({speed > 0 ? minus : -minus, speed > 0 ? -plus : plus, 0.0});
    return slope * slope;
}

/// The rate −F |∇φ| for the speed F outwards, by upwind differences (Rouy and Tourin 1992).
inline double outwardRate(const LevelSet2D& field, double speed, int x, int y) {
    const double alongX = upwindSquare(speed, field.getDxMinus(x, y), field.getDxPlus(x, y));
    const double alongY = upwindSquare(speed, field.getDyMinus(x, y), field.getDyPlus(x, y));
    return -speed * std::sqrt(alongX + alongY);
}
inline double outwardRate(const LevelSet3D& field, double speed, int x, int y, int z) {
    const double alongX = upwindSquare(speed, field.getDxMinus(x, y, z), field.getDxPlus(x, y, z));
    const double alongY = upwindSquare(speed, field.getDyMinus(x, y, z), field.getDyPlus(x, y, z));
    const double alongZ = upwindSquare(speed, field.getDzMinus(x, y, z), field.getDzPlus(x, y, z));
    return -speed * std::sqrt((alongX + alongY) + alongZ);
}

/// One step over a time, at the speed that speedAt(coordinates) has at each point that moves, in their order.
/// Progress may throw: then nothing has moved.
template <class LevelSet, class SpeedAt>
void moveWithSpeed(LevelSet& levelSet, double limit, const Progress& progress, const SpeedAt& speedAt) {
    const auto rateAt = [&](const auto& field, double* most, int x, auto... c) {
        if (x == 0) progress(0, 1);
        *most = limit;
        return outwardRate(field, speedAt(x, c...), x, c...);
    };
    if constexpr (std::is_base_of_v<LevelSet2D, LevelSet>)
        levelSet.moveWithCurvature(
            [&](LevelSet2D* field, int x, int y, double* most) { return rateAt(*field, most, x, y); });
    else
        levelSet.moveWithCurvature([&](LevelSet3D* field, int x, int y, int z, double* most) {
            return rateAt(*field, most, x, y, z);
        });
}

}  // namespace quorbin::python
