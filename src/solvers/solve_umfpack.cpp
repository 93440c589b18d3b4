#include <suitesparse/umfpack.h>

#include <memory>
#include <new>
#include <vector>

#include "solvers/direct_solver.h"

namespace lset::detail {

namespace {

struct FreeSymbolic {
    void operator()(void* symbolic) const { umfpack_di_free_symbolic(&symbolic); }
};
struct FreeNumeric {
    void operator()(void* numeric) const { umfpack_di_free_numeric(&numeric); }
};

/// A matrix by compressed columns.
struct Columns {
    std::vector<int> start, row;
    std::vector<double> value;
};

bool compress(const brin::SparseMatrix& A, Columns& columns) {
    std::vector<int> row, column;
    std::vector<double> value;
    for (int i = 0; i < A.rows(); ++i)
        A.forEachEntry(i, [&](int j, double v) {
            row.push_back(i);
            column.push_back(j);
            value.push_back(v);
        });
    columns.start.resize(static_cast<std::size_t>(A.cols()) + 1);
    columns.row.resize(value.size());
    columns.value.resize(value.size());
    return umfpack_di_triplet_to_col(A.rows(), A.cols(), static_cast<int>(value.size()), row.data(),
                                     column.data(), value.data(), columns.start.data(), columns.row.data(),
                                     columns.value.data(), nullptr) == UMFPACK_OK;
}

}  // namespace

bool solveDirectly(const brin::SparseMatrix& A, const double* b, double* x) {
    const int n = A.rows();
    if (n == 0) return true;
    try {
        Columns columns;
        if (!compress(A, columns)) return false;
        const int* start = columns.start.data();
        const int* row = columns.row.data();
        const double* value = columns.value.data();
        // Minimum degree is faster up to about 512 x 512 grid points, nested dissection beyond.
        constexpr int kLarge = 1 << 18;
        double control[UMFPACK_CONTROL];
        umfpack_di_defaults(control);
        control[UMFPACK_ORDERING] = n > kLarge ? UMFPACK_ORDERING_METIS : UMFPACK_ORDERING_AMD;
        void* made = nullptr;
        if (umfpack_di_symbolic(n, n, start, row, value, &made, control, nullptr) != UMFPACK_OK) return false;
        const std::unique_ptr<void, FreeSymbolic> symbolic(made);
        made = nullptr;
        const int factorised = umfpack_di_numeric(start, row, value, symbolic.get(), &made, control, nullptr);
        const std::unique_ptr<void, FreeNumeric> numeric(made);
        return factorised == UMFPACK_OK && umfpack_di_solve(UMFPACK_A, start, row, value, x, b, numeric.get(),
                                                            control, nullptr) == UMFPACK_OK;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace lset::detail
