#include "band/motion/steps.h"
#include "quorbin3d/differences/band_readers.h"

using namespace lset::detail;

void FastLevelSet3D::moveAlongCurvature() {
    const double hx = getXSpace(), hy = getYSpace(), hz = getZSpace();
    moveBandAlongCurvature(*this, work(), 1.0 / (2.0 / (hx * hx) + 2.0 / (hy * hy) + 2.0 / (hz * hz)),
                           values_);
}

double FastLevelSet3D::moveWithCurvature(
    const boost::function<double(LevelSet3D*, int, int, int, double*)>& f) {
    return moveBandWithCurvature(*this, f, values_);
}
