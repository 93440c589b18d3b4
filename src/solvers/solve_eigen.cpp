#include <Eigen/SparseCore>
#include <Eigen/SparseLU>
#include <new>
#include <vector>

#include "solvers/direct_solver.h"
#include "solvers/nested_dissection.h"

namespace lset::detail {

namespace {

using Matrix = Eigen::SparseMatrix<double>;

/// Rows and columns that share an entry, in either direction, are neighbours.
Graph graphOf(const Matrix& columns) {
    const Matrix rows = columns.transpose();
    Graph graph;
    graph.start.push_back(0);
    for (int j = 0; j < columns.outerSize(); ++j) {
        for (const Matrix* side : {&columns, &rows})
            for (Matrix::InnerIterator entry(*side, j); entry; ++entry)
                if (entry.row() != j) graph.neighbours.push_back(static_cast<int>(entry.row()));
        graph.start.push_back(static_cast<int>(graph.neighbours.size()));
    }
    return graph;
}

}  // namespace

bool solveDirectly(const brin::SparseMatrix& A, const double* b, double* x) {
    const int n = A.rows();
    if (n == 0) return true;
    try {
        Matrix columns(n, n);
        std::vector<int> perColumn(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            A.forEachEntry(i, [&](int j, double) { ++perColumn[static_cast<std::size_t>(j)]; });
        columns.reserve(perColumn);
        for (int i = 0; i < n; ++i)
            A.forEachEntry(i, [&](int j, double value) { columns.insert(i, j) = value; });
        columns.makeCompressed();

        // The order of COLAMD costs twice the time on the matrices of grids, that of minimum degree fifty
        // times.
        const std::vector<int> order = nestedDissection(graphOf(columns));
        Eigen::PermutationMatrix<Eigen::Dynamic> place(n);
        for (int k = 0; k < n; ++k) place.indices()[order[static_cast<std::size_t>(k)]] = k;
        columns = place * columns * place.transpose();
        columns.makeCompressed();

        Eigen::SparseLU<Matrix, Eigen::NaturalOrdering<int>> solver;
        // Pivots on the diagonal, which keep to the order, where they are a tenth of the largest.
        solver.setPivotThreshold(0.1);
        solver.analyzePattern(columns);
        solver.factorize(columns);
        if (solver.info() != Eigen::Success) return false;
        const Eigen::VectorXd solution = solver.solve(place * Eigen::Map<const Eigen::VectorXd>(b, n));
        Eigen::Map<Eigen::VectorXd>(x, n) = place.transpose() * solution;
        return solver.info() == Eigen::Success;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace lset::detail
