#pragma once

#include <cstddef>
#include <typeinfo>

#include "common/storage/mirror.h"
#include "quorbin2d/differences/stencils.h"
#include "quorbin2d/full_level_set_2d.h"

namespace lset::detail {

/// Reads any level set; each name is its slot, so whatever a subclass overrides is honoured.
struct VirtualReader2D {
    const LevelSet2D& levelSet;

    int width() const { return levelSet.getWidth(); }
    int height() const { return levelSet.getHeight(); }
    double hx() const { return levelSet.getXSpace(); }
    double hy() const { return levelSet.getYSpace(); }
    double get(int x, int y) const { return levelSet.get(x, y); }
    double getInGrid(int x, int y) const { return levelSet.get(x, y); }
    double dxMinus(int x, int y) const { return levelSet.getDxMinus(x, y); }
    double dxPlus(int x, int y) const { return levelSet.getDxPlus(x, y); }
    double dyMinus(int x, int y) const { return levelSet.getDyMinus(x, y); }
    double dyPlus(int x, int y) const { return levelSet.getDyPlus(x, y); }
    double curvature(int x, int y) const { return levelSet.getCurvature(x, y); }
};

/// Reads the array of exactly the dense grid, mirrored at its edges. Along an axis of one point, where
/// backward and forward differences would defer to each other for ever, differences are 0.
class DenseReader2D {
 public:
    explicit DenseReader2D(const FullLevelSet2D& grid)
        : values_(grid.data()),
          width_(grid.getWidth()),
          height_(grid.getHeight()),
          hx_(grid.getXSpace()),
          hy_(grid.getYSpace()) {}

    int width() const { return width_; }
    int height() const { return height_; }
    double hx() const { return hx_; }
    double hy() const { return hy_; }
    const double* row(int y) const { return values_ + static_cast<std::ptrdiff_t>(y) * width_; }
    double get(int x, int y) const { return row(mirror(y, height_))[mirror(x, width_)]; }
    /// For points that need no mirroring.
    double getInGrid(int x, int y) const { return row(y)[x]; }
    double dxMinus(int x, int y) const { return width_ == 1 ? 0.0 : detail::dxMinus(*this, x, y); }
    double dxPlus(int x, int y) const { return width_ == 1 ? 0.0 : detail::dxPlus(*this, x, y); }
    double dyMinus(int x, int y) const { return height_ == 1 ? 0.0 : detail::dyMinus(*this, x, y); }
    double dyPlus(int x, int y) const { return height_ == 1 ? 0.0 : detail::dyPlus(*this, x, y); }
    double curvature(int x, int y) const { return laplacian(*this, x, y); }

 private:
    const double* values_;
    int width_, height_;
    double hx_, hy_;
};

/// Calls body with the reader that the exact type of the level set allows. Meant once a call, outside the
/// loops.
template <class Body>
decltype(auto) withReader(const LevelSet2D& levelSet, Body&& body) {
    // By address: comparing names costs more than reading a point. A second copy of the type in another
    // library would only be taken for a subclass.
    if (&typeid(levelSet) == &typeid(FullLevelSet2D))
        return body(DenseReader2D(static_cast<const FullLevelSet2D&>(levelSet)));
    return body(VirtualReader2D{levelSet});
}

}  // namespace lset::detail
