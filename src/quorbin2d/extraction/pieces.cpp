#include "pieces.h"

#include "common/extraction/component_figures.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

std::optional<std::vector<Piece2D>> pieces(const FullLevelSet2D& field, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return piecesOf<Piece2D>(field, whole); });
}
std::vector<Piece2D> pieces(const FullLevelSet2D& field) { return *pieces(field, Progress()); }

std::optional<FullLevelSet2D> largestPieces(const FullLevelSet2D& field, std::size_t count,
                                            const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return largestPiecesOf(field, count, whole); });
}
FullLevelSet2D largestPieces(const FullLevelSet2D& field, std::size_t count) {
    return *largestPieces(field, count, Progress());
}

std::optional<FullLevelSet2D> withoutHolesBelow(const FullLevelSet2D& field, double size,
                                                const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return withoutHoles(field, size, whole); });
}
FullLevelSet2D withoutHolesBelow(const FullLevelSet2D& field, double size) {
    return *withoutHolesBelow(field, size, Progress());
}

}  // namespace quorbin
