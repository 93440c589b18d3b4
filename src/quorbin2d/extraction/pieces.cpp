#include "pieces.h"

#include "common/extraction/component_figures.h"
#include "quorbin2d/storage/dense_traits.h"

namespace quorbin {

std::vector<Piece2D> pieces(const FullLevelSet2D& field) { return lset::detail::piecesOf<Piece2D>(field); }

FullLevelSet2D largestPieces(const FullLevelSet2D& field, std::size_t count) {
    return lset::detail::largestPiecesOf(field, count);
}

FullLevelSet2D withoutHolesBelow(const FullLevelSet2D& field, double size) {
    return lset::detail::withoutHoles(field, size);
}

}  // namespace quorbin
