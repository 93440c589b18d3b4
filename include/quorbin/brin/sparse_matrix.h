#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "../quorbin_export.h"
#include "matrix.h"

namespace brin {

/// A sparse matrix of doubles that is filled entry by entry. Every row has room for the same number of
/// entries; the entries of a row beyond that are kept elsewhere, at a higher cost.
class QUORBIN_EXPORT SparseMatrix {
 public:
    /// An entry of a row.
    struct Entry {
        int column;
        double value;
    };

    /// A matrix of rows × cols zeros with room for capacity entries in all, capacity / rows in each row,
    /// rounded up. Negative arguments count as 0. Throws std::bad_alloc or std::length_error.
    SparseMatrix(int rows, int cols, int capacity);

    int rows() const { return rows_; }
    int cols() const { return cols_; }
    /// Number of entries that get has created, whatever their values.
    std::size_t entryCount() const;

    /// The entry in row i and column j, which is created as 0.0 if it is absent. The reference is valid until
    /// the next entry is created. Takes time in proportion to the entries of the row. Indices must be inside
    /// the matrix; this is not checked.
    double& get(int i, int j);

    /// Calls visit(column, value) for each entry of a row, in the order in which they were created.
    template <class Visit>
    void forEachEntry(int row, Visit visit) const {
        const auto r = static_cast<std::size_t>(row);
        for (std::size_t k = 0; k < count_[r]; ++k) {
            const Entry& entry = entries_[r * perRow_ + k];
            visit(entry.column, entry.value);
        }
        const auto more = overflow_.find(row);
        if (more != overflow_.end())
            for (const Entry& entry : more->second) visit(entry.column, entry.value);
    }

    /// Solves A x = b by a direct method and returns x. A must be n × n and b n × 1; neither is changed. x
    /// has as many rows as A, and all of them are not-a-number if A is singular, if the sizes do not fit, or
    /// if there is not enough memory.
    static Matrix umfsolve(SparseMatrix& A, Matrix& b);

 private:
    int rows_, cols_;
    std::size_t perRow_;
    std::vector<std::uint32_t> count_;  // of entries in their reserved places
    std::vector<Entry> entries_;
    std::unordered_map<int, std::vector<Entry>> overflow_;  // of rows that are full
};

}  // namespace brin
