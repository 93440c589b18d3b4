#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "brin/vec.h"
#include "measure.h"
#include "progress.h"
#include "quorbin_export.h"

class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// A connected part of the inside.
struct Piece2D {
    Figures2D figures;
    std::size_t samples;     ///< how many lie in it
    brin::Vec2<int> inside;  ///< coordinates of its first sample, row by row from (0, 0)
};
struct Piece3D {
    Figures3D figures;
    std::size_t samples;
    brin::Vec3<int> inside;
};

/// The connected parts of the inside (values ≤ 0), in the order of their first samples. Samples are
/// connected to their four neighbours, in volumes to six: what touches by a diagonal is apart whichever way
/// that runs. So it is in meshes; contours join two regions that touch by (x + 1, y) and (x, y + 1), and
/// their areas are then larger than those of the pieces together. The figures are those that measure gives
/// for a grid with this piece alone. Not-a-number is outside. Values are read as they are stored. Throws
/// std::bad_alloc, and std::length_error above four billion pieces. About 50 ns and 4 bytes a point beside
/// what measure takes for the bounding box of each.
QUORBIN_EXPORT std::vector<Piece2D> pieces(const FullLevelSet2D& field);
QUORBIN_EXPORT std::vector<Piece3D> pieces(const FullLevelSet3D& field);

/// The level set with its count pieces of largest area or volume, of equal ones those that come first. Made a
/// signed distance (see reinitialize) if pieces were left out and some are left; else a copy.
QUORBIN_EXPORT FullLevelSet2D largestPieces(const FullLevelSet2D& field, std::size_t count);
QUORBIN_EXPORT FullLevelSet3D largestPieces(const FullLevelSet3D& field, std::size_t count);

/// The level set without those of its holes whose area or volume, in world units, is below a size. A hole is
/// a part of the outside, connected by diagonals too, that does not reach the border of the grid. Made a
/// signed distance if holes were filled and an interface is left; else a copy. Throws std::invalid_argument
/// if the size is not-a-number.
QUORBIN_EXPORT FullLevelSet2D withoutHolesBelow(const FullLevelSet2D& field, double size);
QUORBIN_EXPORT FullLevelSet3D withoutHolesBelow(const FullLevelSet3D& field, double size);

/// All of these, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<std::vector<Piece2D>> pieces(const FullLevelSet2D& field,
                                                          const Progress& progress);
QUORBIN_EXPORT std::optional<std::vector<Piece3D>> pieces(const FullLevelSet3D& field,
                                                          const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> largestPieces(const FullLevelSet2D& field, std::size_t count,
                                                           const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> largestPieces(const FullLevelSet3D& field, std::size_t count,
                                                           const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> withoutHolesBelow(const FullLevelSet2D& field, double size,
                                                               const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> withoutHolesBelow(const FullLevelSet3D& field, double size,
                                                               const Progress& progress);

}  // namespace quorbin
