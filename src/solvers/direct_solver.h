#pragma once

#include "brin/sparse_matrix.h"

namespace lset::detail {

/// Solves A x = b by the direct solver chosen when the library was configured. False when A is singular or
/// memory does not suffice; x is then undefined.
bool solveDirectly(const brin::SparseMatrix& A, const double* b, double* x);

}  // namespace lset::detail
