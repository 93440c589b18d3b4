#include "placing.h"

#include <algorithm>

namespace quorbin::fields {

void respace(io::Placement& placement, const std::array<double, 3>& spacing) {
    if (placement.affine)
        for (auto& row : *placement.affine)
            for (std::size_t axis = 0; axis < 3; ++axis)
                if (spacing[axis] != placement.spacing[axis])
                    row[axis] *= spacing[axis] / placement.spacing[axis];
    placement.spacing = spacing;
}

void startAt(io::Placement& placement, const std::array<int, 3>& index) {
    if (std::all_of(index.begin(), index.end(), [](int i) { return i == 0; })) return;
    if (!placement.affine) {
        constexpr int kAsAnotherFile = 2;
        placement.placeCode = kAsAnotherFile;
        io::Affine& affine = placement.affine.emplace();
        for (std::size_t axis = 0; axis < 3; ++axis) affine[axis][axis] = placement.spacing[axis];
    }
    for (auto& row : *placement.affine) row[3] += row[0] * index[0] + row[1] * index[1] + row[2] * index[2];
}

}  // namespace quorbin::fields
