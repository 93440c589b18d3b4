#include <algorithm>
#include <climits>
#include <cstddef>

#include "brin/sparse_matrix.h"
#include "quorbin2d/full_level_set_2d.h"

namespace {

/// The system of an implicit step: one row for each grid point, row by row. Neighbours beyond the edge are reflected
/// without repeating the edge point, at both ends, so that an edge point has the same neighbour twice.
class ImplicitSystem {
 public:
    ImplicitSystem(int width, int height)
        : width_(width),
          height_(height),
          A_(width * height, width * height, 5 * width * height),
          b_(width * height, 1) {}

    /// Weights of the neighbours of a point; along an axis of one point there are none.
    struct Weights {
        double left, right, below, above;
    };

    void setRow(int x, int y, double rightSide, double diagonal, const Weights& weight) {
        const int i = y * width_ + x;
        b_.data()[i] = rightSide;
        A_.get(i, i) = diagonal;
        if (width_ > 1) {
            A_.get(i, y * width_ + (x - 1 < 0 ? 1 : x - 1)) += weight.left;
            A_.get(i, y * width_ + (x + 1 >= width_ ? width_ - 2 : x + 1)) += weight.right;
        }
        if (height_ > 1) {
            A_.get(i, (y - 1 < 0 ? 1 : y - 1) * width_ + x) += weight.below;
            A_.get(i, (y + 1 >= height_ ? height_ - 2 : y + 1) * width_ + x) += weight.above;
        }
    }

    void solve(double* values) {
        const brin::Matrix u = brin::SparseMatrix::umfsolve(A_, b_);
        std::copy_n(u.data(), u.rows(), values);
    }

 private:
    int width_, height_;
    brin::SparseMatrix A_;
    brin::Matrix b_;
};

/// 1 / h², or nothing along an axis of one point.
double inverseSquare(double h, int points) { return points > 1 ? 1.0 / (h * h) : 0.0; }

}  // namespace

void FullLevelSet2D::moveAlongCurvatureImplicit() {
    if (size() > INT_MAX / 5) return;
    const double wx = inverseSquare(getXSpace(), width_), wy = inverseSquare(getYSpace(), height_);
    const double diagonal = (wx + wy) + (wx + wy) + 1.0;
    ImplicitSystem system(width_, height_);
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) system.setRow(x, y, get(x, y), diagonal, {-wx, -wx, -wy, -wy});
    system.solve(values_.get());
}

void FullLevelSet2D::moveWithCurvatureImplicit(
    const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
    int /*maxIterations*/) {
    if (size() > INT_MAX / 5) return;
    const double hx = getXSpace(), hy = getYSpace();
    const double weight = inverseSquare(hx, width_) + inverseSquare(hy, height_);
    ImplicitSystem system(width_, height_);
    double k = 0, vx = 0, vy = 0, source = 0;  // one set for all points: a callback must write all four
    const double* const values = values_.get();
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            f(this, x, y, k, vx, vy, source);
            if (values_.get() != values) return;  // the callback has released the grid or made another of it
            const double cx = (-dt * k) / (hx * hx), cy = (-dt * k) / (hy * hy);
            double diagonal = (2 * dt * k) * weight + 1;
            ImplicitSystem::Weights weights{cx, cx, cy, cy};
            // Backward for a positive coefficient, forward for any other, as the upwind differences choose.
            if (width_ > 1) {
                const double a = (vx / hx) * dt;
                diagonal = vx > 0 ? diagonal - a : diagonal + a;
                (vx > 0 ? weights.left : weights.right) = vx > 0 ? cx + a : cx - a;
            }
            if (height_ > 1) {
                const double c = (vy / hy) * dt;
                diagonal = vy > 0 ? diagonal - c : diagonal + c;
                (vy > 0 ? weights.below : weights.above) = vy > 0 ? cy + c : cy - c;
            }
            system.setRow(x, y, dt * source + get(x, y), diagonal, weights);
        }
    system.solve(values_.get());
}
