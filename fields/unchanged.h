#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "../io/documents.h"

namespace quorbin::fields {

/// Puts the values of a grid back as they were, unless the operation under way says that it is done. Keeps no
/// copy where nothing can end it.
template <class Grid>
class UnchangedUnlessDone {
 public:
    UnchangedUnlessDone(Grid& grid, bool canEnd) : grid_(grid) {
        if (canEnd) before_.assign(grid.data(), grid.data() + io::pointsOf(grid));
    }
    ~UnchangedUnlessDone() { std::copy(before_.begin(), before_.end(), grid_.data()); }
    UnchangedUnlessDone(const UnchangedUnlessDone&) = delete;
    void operator=(const UnchangedUnlessDone&) = delete;

    void done() { before_.clear(); }

 private:
    Grid& grid_;
    std::vector<double> before_;
};

}  // namespace quorbin::fields
