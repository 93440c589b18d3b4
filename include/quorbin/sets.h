#pragma once

#include <optional>

#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// Union, intersection and difference (what is in a and not in b) of the insides of two level sets of the
/// same grid, and what is not inside of one, as signed distances (see reinitialize). A value ≤ 0 is inside,
/// and not-a-number is outside. Where the result has no interface – an empty intersection, say – it is
/// returned all the same: as the smaller or larger of the values that it has, all of one side, with infinity
/// for not-a-number.
///
/// Throws std::invalid_argument, naming sizes and spacings, if those of the two differ, or if a spacing is
/// not a positive finite number; std::bad_alloc. Values are read as they are stored, past what a subclass
/// overrides. Costs what reinitialize does.
QUORBIN_EXPORT FullLevelSet2D unite(const FullLevelSet2D& a, const FullLevelSet2D& b);
QUORBIN_EXPORT FullLevelSet3D unite(const FullLevelSet3D& a, const FullLevelSet3D& b);
QUORBIN_EXPORT FullLevelSet2D intersect(const FullLevelSet2D& a, const FullLevelSet2D& b);
QUORBIN_EXPORT FullLevelSet3D intersect(const FullLevelSet3D& a, const FullLevelSet3D& b);
QUORBIN_EXPORT FullLevelSet2D subtract(const FullLevelSet2D& a, const FullLevelSet2D& b);
QUORBIN_EXPORT FullLevelSet3D subtract(const FullLevelSet3D& a, const FullLevelSet3D& b);
QUORBIN_EXPORT FullLevelSet2D complement(const FullLevelSet2D& field);
QUORBIN_EXPORT FullLevelSet3D complement(const FullLevelSet3D& field);

/// The same for two bands with the same spacings. A point that one of them does not store has the side of the
/// nearest point of its row (along x) that it stores, of the left one if two are as near, and is outside if
/// there is none. So the insides must be bounded, and each band must hold both sides of its interface. width
/// is that of the result, see ReinitializeOptions. Without an interface the result is an empty band.
QUORBIN_EXPORT FastLevelSet2D unite(const FastLevelSet2D& a, const FastLevelSet2D& b, double width = 0);
QUORBIN_EXPORT FastLevelSet3D unite(const FastLevelSet3D& a, const FastLevelSet3D& b, double width = 0);
QUORBIN_EXPORT FastLevelSet2D intersect(const FastLevelSet2D& a, const FastLevelSet2D& b, double width = 0);
QUORBIN_EXPORT FastLevelSet3D intersect(const FastLevelSet3D& a, const FastLevelSet3D& b, double width = 0);
QUORBIN_EXPORT FastLevelSet2D subtract(const FastLevelSet2D& a, const FastLevelSet2D& b, double width = 0);
QUORBIN_EXPORT FastLevelSet3D subtract(const FastLevelSet3D& a, const FastLevelSet3D& b, double width = 0);
/// What is not inside of a band has no bound, and cannot be combined with another one.
QUORBIN_EXPORT FastLevelSet2D complement(const FastLevelSet2D& band, double width = 0);
QUORBIN_EXPORT FastLevelSet3D complement(const FastLevelSet3D& band, double width = 0);

/// All of these, which progress may end: then there is no result.
QUORBIN_EXPORT std::optional<FullLevelSet2D> unite(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                                   const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> unite(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                                   const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> intersect(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                                       const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> intersect(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                                       const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> subtract(const FullLevelSet2D& a, const FullLevelSet2D& b,
                                                      const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> subtract(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                                      const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet2D> complement(const FullLevelSet2D& field,
                                                        const Progress& progress);
QUORBIN_EXPORT std::optional<FullLevelSet3D> complement(const FullLevelSet3D& field,
                                                        const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> unite(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                                   double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> unite(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                                   double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> intersect(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                                       double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> intersect(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                                       double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> subtract(const FastLevelSet2D& a, const FastLevelSet2D& b,
                                                      double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> subtract(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                                      double width, const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet2D> complement(const FastLevelSet2D& band, double width,
                                                        const Progress& progress);
QUORBIN_EXPORT std::optional<FastLevelSet3D> complement(const FastLevelSet3D& band, double width,
                                                        const Progress& progress);

}  // namespace quorbin
