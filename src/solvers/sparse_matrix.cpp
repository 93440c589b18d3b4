#include "brin/sparse_matrix.h"

#include <algorithm>
#include <cassert>
#include <limits>

#include "solvers/direct_solver.h"

namespace brin {

SparseMatrix::SparseMatrix(int rows, int cols, int capacity)
    : rows_(std::max(rows, 0)),
      cols_(std::max(cols, 0)),
      perRow_(rows > 0 && capacity > 0 ? static_cast<std::size_t>((capacity - 1) / rows + 1) : 0),
      count_(static_cast<std::size_t>(rows_)),
      entries_(static_cast<std::size_t>(rows_) * perRow_) {}

std::size_t SparseMatrix::entryCount() const {
    std::size_t total = 0;
    for (const std::uint32_t inPlace : count_) total += inPlace;
    for (const auto& more : overflow_) total += more.second.size();
    return total;
}

double& SparseMatrix::get(int i, int j) {
    assert(i >= 0 && i < rows_ && j >= 0 && j < cols_);
    const auto row = static_cast<std::size_t>(i);
    Entry* const first = entries_.data() + row * perRow_;
    Entry* const end = first + count_[row];
    for (Entry* entry = first; entry != end; ++entry)
        if (entry->column == j) return entry->value;
    if (count_[row] < perRow_) {
        ++count_[row];
        *end = {j, 0.0};
        return end->value;
    }
    std::vector<Entry>& more = overflow_[i];
    for (Entry& entry : more)
        if (entry.column == j) return entry.value;
    more.push_back({j, 0.0});
    return more.back().value;
}

Matrix SparseMatrix::umfsolve(SparseMatrix& A, Matrix& b) {
    Matrix x(A.rows_, 1);
    const bool fits = A.rows_ == A.cols_ && b.rows() == A.rows_ && b.cols() == 1;
    if (!fits || !lset::detail::solveDirectly(A, b.data(), x.data()))
        std::fill_n(x.data(), x.rows(), std::numeric_limits<double>::quiet_NaN());
    return x;
}

}  // namespace brin
