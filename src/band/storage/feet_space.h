#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/storage/foot.h"
#include "common/storage/nearest.h"
#include "common/storage/spreading_lists.h"

namespace lset::detail {

/// What the reinitialisation of a band works with.
template <std::size_t dimensions>
struct FeetSpace {
    std::vector<Nearest> nearest;  // by number
    std::vector<Foot<dimensions>> feet;
    std::vector<double> distances;      // of the points beside the interface, by foot
    std::vector<std::uint64_t> inside;  // a bit for each point of a tile
    std::vector<std::uint64_t> front;   // the same for the points beside the interface
    SpreadingLists<int, dimensions> lists;
};

}  // namespace lset::detail
