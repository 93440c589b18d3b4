#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "../quorbin_export.h"
#include "matrix.h"

namespace brin {

/// A sparse matrix that is filled entry by entry. Room is reserved for the same number of entries in every
/// row; rows that need more get it elsewhere.
class QUORBIN_EXPORT SparseMatrix {
 public:
    /// An entry, as forEachEntry gives it.
    struct Entry {
        int column;
        double value;
    };

    /// rows × cols zeros with room for capacity entries in all. A negative size counts as 0.
    SparseMatrix(int rows, int cols, int capacity);

    int rows() const { return rows_; }
    int cols() const { return cols_; }
    std::size_t entryCount() const;

    /// The entry at row i and column j, created as 0.0 when absent. The reference is valid until an entry is
    /// created. Linear in the entries of the row. Indices outside the matrix are the caller's error,
    /// unchecked.
    double& get(int i, int j);

    /// Calls visit(column, value) for each entry of a row, in the order they were created.
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

    /// Solves A x = b by a direct method and returns x, n × 1. A column of not-a-number when A is singular,
    /// not square or of another size than b, or when memory does not suffice.
    static Matrix umfsolve(SparseMatrix& A, Matrix& b);

 private:
    int rows_, cols_;
    std::size_t perRow_;
    std::vector<std::uint32_t> count_;  // of entries in their reserved places
    std::vector<Entry> entries_;
    std::unordered_map<int, std::vector<Entry>> overflow_;  // of rows that are full
};

}  // namespace brin
