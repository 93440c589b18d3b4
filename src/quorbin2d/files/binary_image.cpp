#include "quorbin2d/differences/readers.h"

using namespace lset::detail;

brin::Image<unsigned char> FullLevelSet2D::getBinaryImage() const {
    brin::Image<unsigned char> mask(width_, height_, 1);
    withReader(*this, [&](const auto& field) {
        unsigned char* pixel = mask.data();
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) *pixel++ = field.get(x, y) <= 0.0 ? 255 : 0;
    });
    return mask;
}
