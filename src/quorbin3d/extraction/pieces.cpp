#include "pieces.h"

#include "common/extraction/component_figures.h"
#include "quorbin3d/storage/dense_traits.h"

namespace quorbin {

std::vector<Piece3D> pieces(const FullLevelSet3D& field) { return lset::detail::piecesOf<Piece3D>(field); }

FullLevelSet3D largestPieces(const FullLevelSet3D& field, std::size_t count) {
    return lset::detail::largestPiecesOf(field, count);
}

FullLevelSet3D withoutHolesBelow(const FullLevelSet3D& field, double size) {
    return lset::detail::withoutHoles(field, size);
}

}  // namespace quorbin
