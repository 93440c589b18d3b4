#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <type_traits>

#include <quorbin.h>

namespace quorbin::fields {

/// Writes the values of a closed band that lie in a field, clamped to the reach; all others are the reach,
/// with the sign of the side that they are on.
void writeBand(const FastLevelSet2D& band, double reach, FullLevelSet2D& field);
void writeBand(const FastLevelSet3D& band, double reach, FullLevelSet3D& field);

/// The signed distance of a picture (2) or volume (3) on a narrow band. A band has no border where an outline
/// could end, so a few points beyond it are stored too, mirrored as the dense grid mirrors.
template <std::size_t dimensions>
class Band {
 public:
    using Grid = std::conditional_t<dimensions == 2, FullLevelSet2D, FullLevelSet3D>;
    using Points = std::conditional_t<dimensions == 2, FastLevelSet2D, FastLevelSet3D>;

    /// What of the outline lies beside the border of the grid can be mirrored there.
    enum class Border { kMirrored, kOpen };

    /// Of the points nearer to the outline than reach.
    Band(const Grid& distance, double reach, Border border = Border::kMirrored);

    /// Makes the band a signed distance again. False where nothing is left of the outline.
    bool reinitialise();

    /// Writes the values back, to the reach; beyond it they end there, on the side they are on.
    void copyTo(Grid& field) const { writeBand(band_, reach_, field); }

    Points& points() { return band_; }

 private:
    void mirror();
    void mirror(std::size_t axis);

    std::array<int, dimensions> size_;
    double reach_;
    Border border_;
    Points band_;
};

extern template class Band<2>;
extern template class Band<3>;

/// Whether a band is of use. It reaches two of the largest spacings, so where they differ much it is many
/// points thick along the axis with the smallest.
bool suitsABand(std::initializer_list<double> spacings);

}  // namespace quorbin::fields
