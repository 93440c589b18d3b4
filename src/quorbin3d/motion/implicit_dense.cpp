#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "common/motion/reflected.h"
#include "quorbin3d/differences/readers.h"

using namespace lset::detail;

namespace {

constexpr int kRowsAtOnce = 4;

/// What a sweep multiplies and divides by. Along an axis of one point there are no neighbours.
template <class Over>
struct Weights {
    Over overX, overY;  // divide by the squared spacings
    double minusDiagonal;
    bool alongX, alongY, alongZ;
};

/// A row of the iterate under way, between its neighbours.
struct Row {
    double* here;
    const double *before, *after, *below, *above;
    const double* old;
    double* squares;  // of the residuals, before each point's own update
};

template <class Over>
void relax(const Row& row, int x, std::ptrdiff_t left, std::ptrdiff_t right, const Weights<Over>& weight) {
    double neighbours = weight.alongX ? weight.overX(row.here[right] + row.here[left]) : 0.0;
    if (weight.alongY) neighbours = neighbours + weight.overY(row.after[x] + row.before[x]);
    // By the y spacing, though the diagonal has the z spacing.
    if (weight.alongZ) neighbours = neighbours + weight.overY(row.above[x] + row.below[x]);
    const double residual = row.old[x] + neighbours + weight.minusDiagonal * row.here[x];
    row.squares[x] = residual * residual;
    // Both negated: where the sum is zero, that decides its sign.
    row.here[x] = (-row.old[x] - neighbours) / weight.minusDiagonal;
}

/// Rows that follow each other, each a step behind the one before: every point sees the same values as one
/// row after the other would show it, but the points under way do not wait for each other.
template <class Over>
void relaxRows(const Row* rows, int count, int width, const Weights<Over>& weight) {
    const auto relaxAt = [&](const Row& row, int x) {
        const Reflected beside(x, width);
        relax(row, x, beside.before, beside.after, weight);
    };
    for (int step = 0; step < width + count - 1; ++step) {
        if (count == kRowsAtOnce && step >= kRowsAtOnce && step < width - 1) {
            for (int r = 0; r < kRowsAtOnce; ++r)
                relax(rows[r], step - r, step - r - 1, step - r + 1, weight);
            continue;
        }
        for (int r = 0; r < count; ++r)
            if (step - r >= 0 && step - r < width) relaxAt(rows[r], step - r);
    }
}

/// One Gauss-Seidel sweep over u; returns the sum of squares of the residuals. readRow(y, z, buffer) gives a
/// row of the field before the step.
template <class Over, class ReadRow>
double sweep(double* u, int width, int height, int depth, const Weights<Over>& weight, ReadRow readRow) {
    const std::ptrdiff_t stride = width, layer = stride * height;
    std::vector<double> squares(static_cast<std::size_t>(width) * kRowsAtOnce), values(squares.size());
    double sum = 0.0;
    for (int z = 0; z < depth; ++z) {
        const Reflected besideZ(z, depth);
        for (int y = 0; y < height; y += kRowsAtOnce) {
            Row rows[kRowsAtOnce];
            const int count = std::min(kRowsAtOnce, height - y);
            for (int r = 0; r < count; ++r) {
                const Reflected besideY(y + r, height);
                double* const plane = u + z * layer;
                const std::ptrdiff_t row = (y + r) * stride;
                rows[r] = {plane + row,
                           plane + besideY.before * stride,
                           plane + besideY.after * stride,
                           u + besideZ.before * layer + row,
                           u + besideZ.after * layer + row,
                           readRow(y + r, z, values.data() + r * stride),
                           squares.data() + r * stride};
            }
            relaxRows(rows, count, width, weight);
            for (std::ptrdiff_t i = 0; i < count * stride; ++i)
                sum = sum + squares[static_cast<std::size_t>(i)];
        }
    }
    return sum;
}

/// A row of the field, read through the slot, or as it lies.
const double* readRow(const VirtualReader3D& field, int width, int y, int z, double* buffer) {
    for (int x = 0; x < width; ++x) buffer[x] = field.get(x, y, z);
    return buffer;
}
const double* readRow(const DenseReader3D& field, int, int y, int z, double*) { return field.row(y, z); }

}  // namespace

void FullLevelSet3D::moveAlongCurvatureImplicit() {
    constexpr int kSweeps = 15;
    constexpr double kTolerance = 0.0001;
    if (size() == 0) return;
    const double hx = getXSpace(), hy = getYSpace(), hz = getZSpace();
    const auto inverse = [](double h, int points) { return points > 1 ? 1 / (h * h) : 0.0; };
    const double half = inverse(hx, width_) + inverse(hy, height_) + inverse(hz, depth_);
    const double diagonal = (half + half) + 1.0;
    std::copy_n(values_.get(), size(), scratch_.get());
    const double pointsOfLayer = static_cast<double>(width_) * height_;
    withReader(*this, [&](const auto& field) {
        const auto rowOf = [&](int y, int z, double* buffer) { return readRow(field, width_, y, z, buffer); };
        withDivision(
            [&](auto overX, auto overY) {
                const Weights<decltype(overX)> weight{overX,      overY,       -diagonal,
                                                      width_ > 1, height_ > 1, depth_ > 1};
                for (int i = 0; i < kSweeps; ++i) {
                    const double sum = sweep(scratch_.get(), width_, height_, depth_, weight, rowOf);
                    if (std::sqrt(sum / pointsOfLayer) < kTolerance) break;
                }
            },
            hx * hx, hy * hy);
    });
    std::copy_n(scratch_.get(), size(), values_.get());
}
