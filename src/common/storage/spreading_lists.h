#pragma once

#include <cstddef>
#include <vector>

#include "common/storage/nearest.h"
#include "common/vector.h"

namespace lset::detail {

/// What feet are spread with: the feet, and the points that pass theirs on.
template <class Place, std::size_t dimensions>
struct SpreadingLists {
    struct Spreading {
        Place place;
        Nearest nearest;
    };

    std::vector<Vector<dimensions>> feet;
    std::vector<Place> pending, changed, later;
    std::vector<Spreading> round;

    void clear() {
        feet.clear();
        pending.clear();
        changed.clear();
        later.clear();
        round.clear();
    }
};

}  // namespace lset::detail
