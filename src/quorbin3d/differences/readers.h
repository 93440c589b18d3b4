#pragma once

#include <cstddef>
#include <typeinfo>

#include "common/storage/mirror.h"
#include "quorbin3d/differences/stencils.h"
#include "quorbin3d/full_level_set_3d.h"

namespace lset::detail {

/// Reads any level set; each name is its slot, so whatever a subclass overrides is honoured.
struct VirtualReader3D {
    const LevelSet3D& levelSet;

    int width() const { return levelSet.getWidth(); }
    int height() const { return levelSet.getHeight(); }
    int depth() const { return levelSet.getDepth(); }
    double hx() const { return levelSet.getXSpace(); }
    double hy() const { return levelSet.getYSpace(); }
    double hz() const { return levelSet.getZSpace(); }
    double get(int x, int y, int z) const { return levelSet.get(x, y, z); }
    double getInGrid(int x, int y, int z) const { return levelSet.get(x, y, z); }
    double curvature(int x, int y, int z) const { return levelSet.getCurvature(x, y, z); }
    double dxCentral(int x, int y, int z) const { return levelSet.getDxCentral(x, y, z); }
    double dyCentral(int x, int y, int z) const { return levelSet.getDyCentral(x, y, z); }
    double dzCentral(int x, int y, int z) const { return levelSet.getDzCentral(x, y, z); }
};

/// Reads the array of exactly the dense grid, mirrored at its faces.
class DenseReader3D {
 public:
    explicit DenseReader3D(const FullLevelSet3D& grid)
        : values_(grid.data()),
          width_(grid.getWidth()),
          height_(grid.getHeight()),
          depth_(grid.getDepth()),
          hx_(grid.getXSpace()),
          hy_(grid.getYSpace()),
          hz_(grid.getZSpace()) {}

    int width() const { return width_; }
    int height() const { return height_; }
    int depth() const { return depth_; }
    double hx() const { return hx_; }
    double hy() const { return hy_; }
    double hz() const { return hz_; }
    const double* row(int y, int z) const { return values_ + (std::ptrdiff_t{z} * height_ + y) * width_; }
    double get(int x, int y, int z) const {
        return row(mirror(y, height_), mirror(z, depth_))[mirror(x, width_)];
    }
    /// For points that need no mirroring.
    double getInGrid(int x, int y, int z) const { return row(y, z)[x]; }
    double curvature(int x, int y, int z) const { return laplacian(*this, x, y, z); }
    double dxCentral(int x, int y, int z) const { return central<0>(*this, x, y, z); }
    double dyCentral(int x, int y, int z) const { return central<1>(*this, x, y, z); }
    double dzCentral(int x, int y, int z) const { return central<2>(*this, x, y, z); }

 private:
    const double* values_;
    int width_, height_, depth_;
    double hx_, hy_, hz_;
};

/// Calls body with the reader that the exact type of the level set allows. Meant once a call, outside the
/// loops.
template <class Body>
decltype(auto) withReader(const LevelSet3D& levelSet, Body&& body) {
    if (&typeid(levelSet) == &typeid(FullLevelSet3D))
        return body(DenseReader3D(static_cast<const FullLevelSet3D&>(levelSet)));
    return body(VirtualReader3D{levelSet});
}

}  // namespace lset::detail
