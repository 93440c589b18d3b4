#include <brin/sparse_matrix.h>

#include <cmath>

#include "fields.h"

namespace {

void implicitCurvatureStep(benchmark::State& state) {
    FullLevelSet2D grid;
    fillDiscs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) grid.moveAlongCurvatureImplicit();
    reportPerItem(state, points(state));
}

/// Diffusion between a half and one and a half, mild advection, over the time of a cell and of ten.
void implicitCoefficientStep(benchmark::State& state, double dt) {
    FullLevelSet2D grid;
    fillDiscs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state)
        grid.moveWithCurvatureImplicit(
            [](LevelSet2D*, int x, int y, double& k, double& vx, double& vy, double& source) {
                k = 1 + 0.5 * std::sin(0.05 * x) * std::cos(0.07 * y);
                vx = 0.1 * std::sin(0.02 * y);
                vy = 0.1 * std::cos(0.03 * x);
                source = 0;
            },
            dt, 0);
    reportPerItem(state, points(state));
}

/// The system of a curvature step, assembled and handed to the direct solver.
void directSolver(benchmark::State& state) {
    const int size = static_cast<int>(state.range(0)), n = size * size;
    const auto reflected = [=](int c) { return c < 0 ? 1 : c == size ? size - 2 : c; };
    for (auto _ : state) {
        brin::SparseMatrix A(n, n, 5 * n);
        brin::Matrix b(n, 1);
        for (int y = 0, i = 0; y < size; ++y)
            for (int x = 0; x < size; ++x, ++i) {
                b(i, 0) = std::sin(0.1 * i);
                A.get(i, i) = 5;
                for (const int side : {-1, 1}) {
                    A.get(i, y * size + reflected(x + side)) -= 1;
                    A.get(i, reflected(y + side) * size + x) -= 1;
                }
            }
        benchmark::DoNotOptimize(brin::SparseMatrix::umfsolve(A, b));
    }
    reportPerItem(state, points(state));
}

void smallSizes(benchmark::internal::Benchmark* b) {
    b->Arg(256)->Arg(512)->Arg(1024)->Unit(benchmark::kMillisecond);
}

BENCHMARK(implicitCurvatureStep)->Apply(sizes);
BENCHMARK_CAPTURE(implicitCoefficientStep, timeOfACell, 1.0)->Apply(smallSizes);
BENCHMARK_CAPTURE(implicitCoefficientStep, timeOfTen, 10.0)->Apply(smallSizes);
BENCHMARK(directSolver)->Apply(smallSizes)->Iterations(1);

}  // namespace
