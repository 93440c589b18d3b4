#include <Eigen/OrderingMethods>
#include <Eigen/SparseCore>
#include <Eigen/SparseLU>
#include <new>

#include "brin/direct_solver.h"

namespace lset::detail {

bool solveDirectly(const brin::SparseMatrix& A, const double* b, double* x) {
    const int n = A.rows();
    if (n == 0) return true;
    try {
        Eigen::SparseMatrix<double> columns(n, n);
        std::vector<int> perColumn(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            A.forEachEntry(i, [&](int j, double) { ++perColumn[static_cast<std::size_t>(j)]; });
        columns.reserve(perColumn);
        for (int i = 0; i < n; ++i)
            A.forEachEntry(i, [&](int j, double value) { columns.insert(i, j) = value; });
        columns.makeCompressed();

        Eigen::SparseLU<Eigen::SparseMatrix<double>, Eigen::COLAMDOrdering<int>> solver;
        solver.analyzePattern(columns);
        solver.factorize(columns);
        if (solver.info() != Eigen::Success) return false;
        Eigen::Map<Eigen::VectorXd>(x, n) = solver.solve(Eigen::Map<const Eigen::VectorXd>(b, n));
        return solver.info() == Eigen::Success;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace lset::detail
