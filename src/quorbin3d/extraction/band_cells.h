#pragma once

#include <cstddef>
#include <vector>

#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/extraction/cells.h"

namespace lset::detail {

/// The corner where an edge begins (0) or ends (1).
inline int cornerAt(int edge, int end) { return MarchingCubes::edges[edge][end]; }

/// A cell of a band whose corners are all stored.
template <class Place>
struct BandCell3D {
    GridPoint3D at;
    Place corners[8];
    double values[8];
    int number;  ///< its case

    GridPoint3D corner(int k) const {
        return {stepped(at.x, kCornerX[k]), stepped(at.y, kCornerY[k]), stepped(at.z, kCornerZ[k])};
    }
};

/// Visits them in the order of their first corners: visit(cell). The other corners are asked for by number,
/// no further than the first that is not stored.
template <class Reader, class Visit>
void forEachBandCell(const Reader& band, Visit visit) {
    using Place = typename Reader::Place;
    band.forEach([&](const Point3And<double>& point, const Place& p) {
        BandCell3D<Place> cell;
        cell.corners[0] = p;
        cell.corners[1] = band.template step<0, 1>(p);
        cell.corners[3] = band.template step<1, 1>(p);
        cell.corners[2] = band.template step<1, 1>(cell.corners[1]);
        for (int k = 4; k < 8; ++k) cell.corners[k] = band.template step<2, 1>(cell.corners[k - 4]);
        for (int k = 1; k < 8; ++k)
            if (!band.have(cell.corners[k])) return;
        cell.values[0] = point.value;
        for (int k = 1; k < 8; ++k) cell.values[k] = band.get(cell.corners[k]);
        cell.number = 0;
        for (int k = 0; k < 8; ++k)
            if (cell.values[k] <= 0) cell.number |= 1 << k;
        if (MarchingCubes::lut_sizes[cell.number] == 0) return;
        cell.at = {point.x, point.y, point.z};
        visit(cell);
    });
}

/// The crossings of cells of any band, formed anew through the slots whenever they are asked for.
class VirtualBandCrossings {
 public:
    using Cell = BandCell3D<VirtualBandReader3D::Place>;

    explicit VirtualBandCrossings(const VirtualBandReader3D& reader) : band_(reader.band()) {}
    void enterCell() {}

    Crossing at(const Cell& cell, int edge) const {
        const GridPoint3D p = cell.corner(cornerAt(edge, 0));
        const GridPoint3D q = cell.corner(cornerAt(edge, 1));
        Vec3 normal(0, 0, 0);
        const Vec3 vertex = band_.getPoint(p.x, p.y, p.z, q.x, q.y, q.z, &normal);
        return {vertex, unit(normal)};
    }

 private:
    const FastLevelSet3D& band_;
};

/// The same of exactly the band, formed once a cell, with gradients formed once a point.
class TiledBandCrossings {
 public:
    using Cell = BandCell3D<TiledBandReader3D::Place>;

    explicit TiledBandCrossings(TiledBandReader3D& reader)
        : band_(reader), gradients_(reader.tiles().size()), known_(gradients_.size()) {}
    void enterCell() { crossings_.clear(); }

    const Crossing& at(const Cell& cell, int edge) {
        return crossings_.at(edge, [&](int made) {
            const int a = cornerAt(made, 0), b = cornerAt(made, 1);
            const GridPoint3D p = cell.corner(a), q = cell.corner(b);
            Vec3 normal(0, 0, 0);
            const Vec3 vertex = zeroCrossing(
                p, cell.values[a], q, cell.values[b], &normal,
                [&](const GridPoint3D& point) { return gradientAt(cell.corners[&point == &p ? a : b]); });
            return Crossing{vertex, unit(normal)};
        });
    }

 private:
    const Vec3& gradientAt(int place) {
        const auto i = static_cast<std::size_t>(place);
        if (known_[i] == 0) {
            known_[i] = 1;
            const auto [dx, dy, dz] = bandGradient(band_, place);
            gradients_[i] = unit({dx, dy, dz});
        }
        return gradients_[i];
    }

    const TiledBandReader3D& band_;
    std::vector<Vec3> gradients_;  // by number
    std::vector<char> known_;
    CellCrossings3D crossings_;
};

inline VirtualBandCrossings bandCrossingsOf(VirtualBandReader3D& reader) {
    return VirtualBandCrossings(reader);
}
inline TiledBandCrossings bandCrossingsOf(TiledBandReader3D& reader) { return TiledBandCrossings(reader); }

}  // namespace lset::detail
