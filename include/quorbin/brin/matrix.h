#pragma once

#include <cassert>
#include <cstddef>
#include <memory>
#include <vector>

namespace brin {

/// A dense matrix of doubles, stored row by row without gaps. A new matrix is all zeros; negative sizes count
/// as 0. A copy shares its elements with the original: what is written to one is seen in both.
class Matrix {
 public:
    Matrix(int rows, int cols)
        : rows_(rows > 0 ? rows : 0),
          cols_(cols > 0 ? cols : 0),
          elements_(std::make_shared<std::vector<double>>(static_cast<std::size_t>(rows_) *
                                                          static_cast<std::size_t>(cols_))) {}

    int rows() const { return rows_; }
    int cols() const { return cols_; }
    double* data() { return elements_->data(); }
    const double* data() const { return elements_->data(); }

    /// The element in row i and column j; the indices are checked by an assertion only.
    double& operator()(int i, int j) { return (*elements_)[index(i, j)]; }
    const double& operator()(int i, int j) const { return (*elements_)[index(i, j)]; }

 private:
    std::size_t index(int i, int j) const {
        assert(i >= 0 && i < rows_ && j >= 0 && j < cols_);
        return static_cast<std::size_t>(i) * static_cast<std::size_t>(cols_) + static_cast<std::size_t>(j);
    }

    int rows_, cols_;
    std::shared_ptr<std::vector<double>> elements_;
};

}  // namespace brin
