#include "quorbin2d/extraction/crossing.h"
#include "quorbin2d/level_set_2d.h"

brin::Vec2<double> LevelSet2D::getPoint(int x0, int y0, int x1, int y1) const {
    const double f0 = get(x0, y0);
    const double f1 = get(x1, y1);
    return lset::detail::zeroCrossing({double(x0), double(y0)}, f0, {double(x1), double(y1)}, f1);
}
