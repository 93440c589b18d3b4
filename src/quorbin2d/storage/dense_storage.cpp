#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <utility>

#include "common/storage/huge_pages.h"
#include "common/storage/mirror.h"
#include "quorbin2d/full_level_set_2d.h"

using lset::detail::adviseHugePages;
using lset::detail::mirror;

FullLevelSet2D::Array FullLevelSet2D::allocate(int width, int height) {
    // Both factors are below 2³¹, so the product of points cannot overflow 64 bits; calloc checks the bytes.
    const std::size_t points = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto* array = static_cast<double*>(std::calloc(std::max<std::size_t>(points, 1), sizeof(double)));
    if (array != nullptr) adviseHugePages(array, points * sizeof(double));
    return Array(array);
}

bool FullLevelSet2D::adopt(int width, int height, double xSpace, double ySpace) {
    if (width < 0 || height < 0) return false;
    Array values = allocate(width, height);
    Array scratch = allocate(width, height);
    if (!values || !scratch) return false;
    take(std::move(values), std::move(scratch), width, height, xSpace, ySpace);
    return true;
}

void FullLevelSet2D::take(Array values, Array scratch, int width, int height, double xSpace, double ySpace) {
    width_ = width;
    height_ = height;
    xSpace_ = xSpace;
    ySpace_ = ySpace;
    values_ = std::move(values);
    scratch_ = std::move(scratch);
    ++generation_;
}

FullLevelSet2D::~FullLevelSet2D() { FullLevelSet2D::release(); }

void FullLevelSet2D::init(int width, int height, double xSpace, double ySpace) {
    adopt(width, height, xSpace, ySpace);
}

void FullLevelSet2D::operator=(const FullLevelSet2D& other) {
    release();
    const double ySpace = other.getYSpace();
    const double xSpace = other.getXSpace();
    const int height = other.getHeight();
    const int width = other.getWidth();
    if (!adopt(width, height, xSpace, ySpace)) return;
    // A subclass may report other sizes than it stores.
    std::copy_n(other.values_.get(), std::min(size(), other.size()), values_.get());
}

FullLevelSet2D::FullLevelSet2D(FullLevelSet2D&& other) noexcept { *this = std::move(other); }

FullLevelSet2D& FullLevelSet2D::operator=(FullLevelSet2D&& other) noexcept {
    if (this == &other) return *this;
    width_ = std::exchange(other.width_, 0);
    height_ = std::exchange(other.height_, 0);
    xSpace_ = std::exchange(other.xSpace_, 0.0);
    ySpace_ = std::exchange(other.ySpace_, 0.0);
    values_ = std::move(other.values_);
    scratch_ = std::move(other.scratch_);
    ++generation_;
    ++other.generation_;
    return *this;
}

int FullLevelSet2D::getWidth() const { return width_; }
int FullLevelSet2D::getHeight() const { return height_; }

double FullLevelSet2D::get(int x, int y) const {
    const std::ptrdiff_t row = mirror(y, height_);
    return values_[static_cast<std::size_t>(row * width_ + mirror(x, width_))];
}

double& FullLevelSet2D::operator()(int x, int y) {
    const std::ptrdiff_t row = mirror(y, height_);
    return values_[static_cast<std::size_t>(row * width_ + mirror(x, width_))];
}

bool FullLevelSet2D::have(int x, int y) const { return 0 <= x && x < width_ && 0 <= y && y < height_; }

void FullLevelSet2D::release() {
    xSpace_ = ySpace_ = 0.0;
    width_ = height_ = 0;
    scratch_.reset();
    values_.reset();
    ++generation_;
}

double FullLevelSet2D::bilinear(double x, double y) const {
    const auto clamp = [](double c, double last) {
        const double lowered = c > 0 ? c : 0.0;
        return last < lowered ? last : lowered;
    };
    const double px = clamp(x, width_ - 1), py = clamp(y, height_ - 1);
    const int ix = static_cast<int>(px), iy = static_cast<int>(py);
    const double fx = px - ix, fy = py - iy;
    const int ix1 = std::min(ix + 1, width_ - 1), iy1 = std::min(iy + 1, height_ - 1);

    const double f00 = get(ix, iy);
    const double f10 = get(ix1, iy);
    const double f11 = get(ix1, iy1);
    const double f01 = get(ix, iy1);
    return ((1 - fx) * (1 - fy)) * f00 + (fx * (1 - fy)) * f10 + (fx * fy) * f11 + (fy * (1 - fx)) * f01;
}

namespace quorbin {

FullLevelSet2D gridOver(double* values, int width, int height, double xSpace, double ySpace) {
    if (std::min(width, height) < 0) throw std::invalid_argument("gridOver: a size is negative");
    FullLevelSet2D grid;
    FullLevelSet2D::Array scratch = FullLevelSet2D::allocate(width, height);
    if (!scratch) throw std::bad_alloc();
    grid.take(FullLevelSet2D::Array(values, {true}), std::move(scratch), width, height, xSpace, ySpace);
    return grid;
}

const FullLevelSet2D gridOver(const double* values, int width, int height, double xSpace, double ySpace) {
    // The grid is const from here on, so that nothing writes to them.
    return gridOver(const_cast<double*>(values), width, height, xSpace, ySpace);
}

}  // namespace quorbin
