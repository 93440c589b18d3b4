#include "pieces.h"

#include "common/extraction/component_figures.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

std::optional<std::vector<Piece3D>> pieces(const FullLevelSet3D& field, const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return piecesOf<Piece3D>(field, whole); });
}
std::vector<Piece3D> pieces(const FullLevelSet3D& field) { return *pieces(field, Progress()); }

std::optional<FullLevelSet3D> largestPieces(const FullLevelSet3D& field, std::size_t count,
                                            const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return largestPiecesOf(field, count, whole); });
}
FullLevelSet3D largestPieces(const FullLevelSet3D& field, std::size_t count) {
    return *largestPieces(field, count, Progress());
}

std::optional<FullLevelSet3D> withoutHolesBelow(const FullLevelSet3D& field, double size,
                                                const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return withoutHoles(field, size, whole); });
}
FullLevelSet3D withoutHolesBelow(const FullLevelSet3D& field, double size) {
    return *withoutHolesBelow(field, size, Progress());
}

}  // namespace quorbin
