#include "band/motion/steps.h"
#include "quorbin2d/differences/band_readers.h"

using namespace lset::detail;

void FastLevelSet2D::moveAlongCurvature() {
    const double hx = getXSpace(), hy = getYSpace();
    moveBandAlongCurvature(*this, work(), 1.0 / (2.0 / (hx * hx) + 2.0 / (hy * hy)), values_);
}

void FastLevelSet2D::moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f) {
    moveBandWithCurvature(*this, f, values_);
}
