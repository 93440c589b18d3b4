#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include <boost/function.hpp>

#include "../hash.h"
#include "level_set_2d.h"

class FastLevelSet2D;
class FullLevelSet2D;

namespace quorbin {

/// What FastLevelSet2D::initTo makes of a grid, as a band of its own and without a printed line: the corners
/// of the cells that the contour crosses, and unless reinitialized is false the signed distance to it around
/// them.
QUORBIN_EXPORT FastLevelSet2D bandOf(FullLevelSet2D& grid, bool reinitialized = true);

}  // namespace quorbin

namespace lset::detail {
template <std::size_t dimensions>
struct BandWorkspace;
}

/// A level set on a narrow band: values are stored at the grid points around the zero crossing only, in a
/// hash table, so that memory and time follow the length of the contour and not the area. There is no width,
/// height or edge, and coordinates may be negative. A point that is not stored reads as 0. Points are visited
/// in the order of the hash: by bucket, and in a bucket in the order in which they came. Each stored point
/// takes about 50 bytes, and about 100 more from the first operation on. Copies are deep; a band that has
/// been moved from is empty.
class QUORBIN_EXPORT FastLevelSet2D : public LevelSet2D {
 public:
    // Storage

    /// An empty band with spacings of 1.
    FastLevelSet2D();
    ~FastLevelSet2D() override;
    FastLevelSet2D(const FastLevelSet2D& other);
    FastLevelSet2D& operator=(const FastLevelSet2D& other);
    FastLevelSet2D(FastLevelSet2D&& other);
    FastLevelSet2D& operator=(FastLevelSet2D&& other) noexcept;

    /// −1: there is no extent.
    int getWidth() const override;
    int getHeight() const override;

    double get(int x, int y) const override;
    /// The value of a point, which enters the band with the value 0 where it is not stored.
    double& operator()(int x, int y) override;
    bool have(int x, int y) const override;

    /// Number of stored points.
    int size() const;

    /// The stored points, for visiting them in order.
    const PointHash<double>& points() const { return values_; }

    // Differences: as on the dense grid, but without edges.

    double getDyCentral(int x, int y) const override;
    double getDyMinus(int x, int y) const override;
    double getDyPlus(int x, int y) const override;
    double getDyUpwind(int x, int y, double speed) const override;
    double getDxCentral(int x, int y) const override;
    double getDxMinus(int x, int y) const override;
    double getDxPlus(int x, int y) const override;
    double getDxUpwind(int x, int y, double speed) const override;
    double getCurvature(int x, int y) const override;
    /// Returns the five-point Laplacian and stores one-sided differences, from five values: backward for a
    /// speed > 0, forward for any other.
    double getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx, double& dy) const override;

    // Motion: of interior points, those whose four neighbours are stored.

    /// One forward Euler step of φt = Δφ over 0.95 of the stability limit. Points that are not interior leave
    /// the band, so that each step strips a layer: reinitialise before it is too thin, every step or every
    /// second.
    void moveAlongCurvature();

    /// One forward Euler step with the rate that f returns, over 0.95 of the smallest limit it writes.
    /// f(levelSet, x, y, limit) finds 0 in *limit. f sees the old field; points that are not interior keep
    /// their values. An empty f throws boost::bad_function_call; whatever f throws passes through with the
    /// values unchanged.
    void moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f);

    /// One implicit step by at most maxIterations Gauss-Seidel sweeps, until the residual's root mean square
    /// is below 1e-4. Each sweep solves (1 + 2 dt (1/hx² + 1/hy²) − dt (vx wx + vy wy)) φ = old + s + dt k L
    /// + dt (vx ax + vy ay) at each interior point, L the sum of the neighbours over the squared spacings and
    /// w = 1, a the negated backward neighbour for a positive coefficient, w = −1, a the forward one for any
    /// other. Another equation than the dense grid's: the diagonal does not know k, advection is not divided
    /// by the spacing nor s multiplied by dt. f(levelSet, x, y, k, vx, vy, s) must write all four and is
    /// called in every sweep; it sees the old field. Points that are not interior keep their values.
    void moveWithCurvatureImplicit(
        const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
        int maxIterations);

    // Distance

    /// Replaces the band by the corners of the cells of a dense grid that the contour crosses, with their
    /// values, and unless reinit is 0 makes it a signed distance at once. The spacings become those of the
    /// grid. Prints the number of points.
    void initTo(FullLevelSet2D& grid, int reinit);

    /// Replaces the band by the signed distance to its zero crossing, in world units, by fast marching, first
    /// order. Stored afterwards is what the march reached: the points up to 2.1 · max(hx, hy) from the
    /// crossing and their neighbours. A band without a crossing becomes empty. About 0.2 µs a point.
    void ensureSignedDistanceFMM();

    /// The same by distance to the segments of the contour, in grid units: the points within three x spacings
    /// of a segment of a cell whose corners are all stored. The sign is the side of the nearest segment.
    void ensureSignedDistance();

    /// Unsigned distance of a point from the crossings of its own four grid edges; 1e11 if none is crossed. A
    /// neighbour that is not stored counts as equal.
    double estimateDistanceInit(int x, int y);

    /// Unsigned distance of a point from those of its neighbours whose state equals sign (1 outside, −1
    /// inside), by the eikonal quadratic; 1e11 if there is none. A known neighbour without a distance has 0.
    double estimateDistance(const PointHash<double>& distances, const PointHash<char>& states, int sign,
                            int x, int y) const;

    // Extraction

    /// The zero contour as a soup of directed segments, as on the dense grid, of the cells whose four corners
    /// are stored, in the order of their lower left corners. Both vectors are emptied first.
    void getLines(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments);

    /// The same segments in the same order, but a point that two cells share is stored once, as getPolygons
    /// needs it.
    void getLinesUnique(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments);

 private:
    friend QUORBIN_EXPORT FastLevelSet2D quorbin::bandOf(FullLevelSet2D& grid, bool reinitialized);

    void makeOf(FullLevelSet2D& grid, bool reinitialized);

    PointHash<double> values_;
    std::unique_ptr<lset::detail::BandWorkspace<2>> work_;
};
