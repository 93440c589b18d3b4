#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <utility>

#include "common/storage/huge_pages.h"
#include "common/storage/mirror.h"
#include "quorbin3d/full_level_set_3d.h"

using lset::detail::adviseHugePages;
using lset::detail::mirror;

FullLevelSet3D::Array FullLevelSet3D::allocate(int width, int height, int depth) {
    // The product of two factors below 2³¹ cannot overflow 64 bits, that of three can.
    const std::size_t layer = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const auto layers = static_cast<std::size_t>(depth);
    if (layer != 0 && layers > SIZE_MAX / sizeof(double) / layer) return nullptr;
    const std::size_t points = layer * layers;
    auto* array = static_cast<double*>(std::calloc(std::max<std::size_t>(points, 1), sizeof(double)));
    if (array != nullptr) adviseHugePages(array, points * sizeof(double));
    return Array(array);
}

bool FullLevelSet3D::adopt(int width, int height, int depth, double xSpace, double ySpace, double zSpace) {
    if (width < 0 || height < 0 || depth < 0) return false;
    Array values = allocate(width, height, depth);
    if (!values) return false;
    Array scratch = allocate(width, height, depth);
    if (!scratch) return false;
    take(std::move(values), std::move(scratch), width, height, depth, xSpace, ySpace, zSpace);
    return true;
}

void FullLevelSet3D::take(Array values, Array scratch, int width, int height, int depth, double xSpace,
                          double ySpace, double zSpace) {
    width_ = width;
    height_ = height;
    depth_ = depth;
    xSpace_ = xSpace;
    ySpace_ = ySpace;
    zSpace_ = zSpace;
    values_ = std::move(values);
    scratch_ = std::move(scratch);
    ++generation_;
}

FullLevelSet3D::~FullLevelSet3D() { FullLevelSet3D::release(); }

void FullLevelSet3D::init(int width, int height, int depth, double xSpace, double ySpace, double zSpace) {
    adopt(width, height, depth, xSpace, ySpace, zSpace);
}

void FullLevelSet3D::operator=(const FullLevelSet3D& other) {
    release();
    const double xSpace = other.getXSpace(), ySpace = other.getYSpace(), zSpace = other.getZSpace();
    const int width = other.getWidth(), height = other.getHeight(), depth = other.getDepth();
    if (!adopt(width, height, depth, xSpace, ySpace, zSpace)) return;
    // A subclass may report other sizes than it stores.
    std::copy_n(other.values_.get(), std::min(size(), other.size()), values_.get());
}

FullLevelSet3D::FullLevelSet3D(FullLevelSet3D&& other) noexcept { *this = std::move(other); }

FullLevelSet3D& FullLevelSet3D::operator=(FullLevelSet3D&& other) noexcept {
    if (this == &other) return *this;
    width_ = std::exchange(other.width_, 0);
    height_ = std::exchange(other.height_, 0);
    depth_ = std::exchange(other.depth_, 0);
    xSpace_ = std::exchange(other.xSpace_, 0.0);
    ySpace_ = std::exchange(other.ySpace_, 0.0);
    zSpace_ = std::exchange(other.zSpace_, 0.0);
    values_ = std::move(other.values_);
    scratch_ = std::move(other.scratch_);
    ++generation_;
    ++other.generation_;
    return *this;
}

int FullLevelSet3D::getWidth() const { return width_; }
int FullLevelSet3D::getHeight() const { return height_; }
int FullLevelSet3D::getDepth() const { return depth_; }

double FullLevelSet3D::get(int x, int y, int z) const {
    const std::ptrdiff_t row = std::ptrdiff_t{mirror(z, depth_)} * height_ + mirror(y, height_);
    return values_[static_cast<std::size_t>(row * width_ + mirror(x, width_))];
}

double& FullLevelSet3D::operator()(int x, int y, int z) {
    const std::ptrdiff_t row = std::ptrdiff_t{mirror(z, depth_)} * height_ + mirror(y, height_);
    return values_[static_cast<std::size_t>(row * width_ + mirror(x, width_))];
}

bool FullLevelSet3D::have(int x, int y, int z) const {
    return 0 <= x && x < width_ && 0 <= y && y < height_ && 0 <= z && z < depth_;
}

void FullLevelSet3D::forEach(void (*f)(int, int, int, double&)) {
    for (int z = 0; z < depth_; ++z)
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) f(x, y, z, (*this)(x, y, z));
}

void FullLevelSet3D::forEachWithNeigh(void (*f)(int, int, int, double&)) { forEach(f); }

void FullLevelSet3D::release() {
    xSpace_ = ySpace_ = zSpace_ = 0.0;
    width_ = height_ = depth_ = 0;
    scratch_.reset();
    values_.reset();
    ++generation_;
}

namespace quorbin {

FullLevelSet3D gridOver(double* values, int width, int height, int depth, double xSpace, double ySpace,
                        double zSpace) {
    if (std::min({width, height, depth}) < 0) throw std::invalid_argument("gridOver: a size is negative");
    FullLevelSet3D grid;
    FullLevelSet3D::Array scratch = FullLevelSet3D::allocate(width, height, depth);
    if (!scratch) throw std::bad_alloc();
    grid.take(FullLevelSet3D::Array(values, {true}), std::move(scratch), width, height, depth, xSpace, ySpace,
              zSpace);
    return grid;
}

const FullLevelSet3D gridOver(const double* values, int width, int height, int depth, double xSpace,
                              double ySpace, double zSpace) {
    // The grid is const from here on, so that nothing writes to them.
    return gridOver(const_cast<double*>(values), width, height, depth, xSpace, ySpace, zSpace);
}

}  // namespace quorbin
