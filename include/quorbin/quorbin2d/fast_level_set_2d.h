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

/// The band that FastLevelSet2D::initTo makes of a dense grid, without the line that initTo prints: the
/// corners of the cells that the contour crosses, with their values or, if reinitialized, made a signed
/// distance by FastLevelSet2D::ensureSignedDistanceFMM.
QUORBIN_EXPORT FastLevelSet2D bandOf(const FullLevelSet2D& grid, bool reinitialized = true);

/// The band with these points and values. Throws std::invalid_argument if a point is there twice, and
/// std::bad_alloc. Spacings are not checked.
QUORBIN_EXPORT FastLevelSet2D bandOf(const std::vector<PointAnd<double>>& points, double xSpace,
                                     double ySpace);

}  // namespace quorbin

namespace lset::detail {
template <std::size_t dimensions>
struct BandWorkspace;
struct BandAccess;
}  // namespace lset::detail

/// A level set on a narrow band: only grid points around the zero crossing are stored, in a hash table, so
/// that memory and time follow the length of the contour and not the area. The band has no width, height or
/// edge, and coordinates may be negative. A point that is not stored reads as 0. Operations visit points in
/// the order of the hash table: bucket by bucket, and in a bucket in the order in which they were added. A
/// stored point takes about 50 bytes, and about 100 more from the first operation on. Copies are deep; a band
/// that has been moved from is empty. Operations that run out of memory throw std::bad_alloc and leave the
/// points as they were, unless they say otherwise.
class QUORBIN_EXPORT FastLevelSet2D : public LevelSet2D {
 public:
    // Storage

    /// An empty band with spacings of 1.
    FastLevelSet2D();

    ~FastLevelSet2D() override;
    FastLevelSet2D(const FastLevelSet2D& other);
    FastLevelSet2D& operator=(const FastLevelSet2D& other);
    FastLevelSet2D(FastLevelSet2D&& other) noexcept;
    FastLevelSet2D& operator=(FastLevelSet2D&& other) noexcept;

    /// −1, since a band has no extent.
    int getWidth() const override;
    int getHeight() const override;

    /// The value of a point, 0 if it is not stored.
    double get(int x, int y) const override;
    /// The value of a point, as a reference that is valid until the points change. A point that is not stored
    /// is added to the band with the value 0.
    double& operator()(int x, int y) override;
    /// Whether a point is stored.
    bool have(int x, int y) const override;

    /// Number of stored points. Takes time in proportion to the number of buckets.
    int size() const;

    /// The stored points, for visiting them in order, bucket by bucket.
    const PointHash<double>& points() const { return values_; }

    // Differences: as on the dense grid, but without edges; a neighbour that is not stored reads as 0.

    double getDyCentral(int x, int y) const override;
    double getDyMinus(int x, int y) const override;
    double getDyPlus(int x, int y) const override;
    double getDyUpwind(int x, int y, double speed) const override;
    double getDxCentral(int x, int y) const override;
    double getDxMinus(int x, int y) const override;
    double getDxPlus(int x, int y) const override;
    double getDxUpwind(int x, int y, double speed) const override;
    double getCurvature(int x, int y) const override;
    /// Returns the five-point Laplacian, and stores the upwind differences in dx and dy: backward for a speed
    /// > 0, forward for any other. Reads five values in all. The Laplacian may differ from that of
    /// getCurvature in the last bit.
    double getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx, double& dy) const override;

    // Motion. Steps move the interior points, which are those whose four neighbours are stored.

    /// One forward Euler step of φt = Δφ with 0.95 of the longest stable time step, 1 / (2/hx² + 2/hy²).
    /// Points that are not interior leave the band, so that each step takes off a layer of points. Call
    /// ensureSignedDistanceFMM after every step or every second one, before the band is too thin.
    void moveAlongCurvature();

    /// One forward Euler step with a rate of change of your own. f(levelSet, x, y, limit) is called for each
    /// interior point; it returns that rate, in value per unit of time, and must write to *limit, where it
    /// finds 0, the largest time step that it allows. The step taken is 0.95 of the smallest limit. Points
    /// that are not interior keep their values. f sees the old values; points that it adds are not moved but
    /// count as neighbours from then on. An empty f throws boost::bad_function_call. After that, and after
    /// any exception from f, the values are unchanged.
    void moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f);

    /// One implicit step over the time dt, by at most maxIterations Gauss-Seidel sweeps, until the residual's
    /// root mean square is below 1e-4. Each sweep solves, at each interior point in turn,
    ///
    ///     (1 + 2 dt (1/hx² + 1/hy²) − dt (vx wx + vy wy)) φ = old + s + dt k L + dt (vx ax + vy ay)
    ///
    /// for φ. old is the value before the step, and L the sum of the neighbours along x, divided by hx², and
    /// of those along y, divided by hy². Where vx > 0, wx is 1 and ax is the neighbour at x − 1, negated;
    /// elsewhere wx is −1 and ax is the neighbour at x + 1; wy and ay likewise. This is not the equation of
    /// the dense grid: the factor of φ is without k, advection is not divided by the spacings, and s is not
    /// multiplied by dt. f(levelSet, x, y, k, vx, vy, s) is called for each interior point in every sweep,
    /// must write all four coefficients, and sees the old values. Points that are not interior keep their
    /// values; points that f adds do not take part and are dropped. An empty f throws
    /// boost::bad_function_call. After that, and after any exception from f, the values are unchanged.
    void moveWithCurvatureImplicit(
        const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
        int maxIterations);

    // Distance

    /// Replaces the band by the corners of those cells of a dense grid that the contour crosses, with their
    /// values. The spacings become those of the grid. Unless reinit is 0, ensureSignedDistanceFMM follows.
    /// Prints a line with the number of points to standard output.
    void initTo(FullLevelSet2D& grid, int reinit);

    /// Replaces the band by the signed distance to its zero crossing, in world units, by fast marching, first
    /// order. It then has the points up to 2.1 · max(hx, hy) from the crossing, and their neighbours. A band
    /// without a crossing becomes empty; one with a spacing that is not positive and finite stays as it is.
    /// About 0.2 µs a point.
    void ensureSignedDistanceFMM();

    /// Replaces the band by the signed distance to the nearest segment of getLines, in grid units. It then
    /// has the points that are at most two grid steps along each axis from a cell with a segment, and whose
    /// distance from it, in grid units too, is below 3 · hx. The distance is negative on the left of the
    /// nearest segment. A band without segments becomes empty.
    void ensureSignedDistance();

    /// Unsigned distance of a point from the contour, in world units, from the crossings on the four grid
    /// edges that meet at it; 1e11 if none of them is crossed. A neighbour that is not stored counts as equal
    /// to the point.
    double estimateDistanceInit(int x, int y);

    /// Unsigned distance of a point, in world units, by the eikonal quadratic (see eikonal.h) from the
    /// distances of its known neighbours: those whose state equals sign (1 outside, −1 inside). 1e11 if there
    /// is none. A known neighbour that is not in distances counts as having the distance 0.
    double estimateDistance(const PointHash<double>& distances, const PointHash<char>& states, int sign,
                            int x, int y) const;

    // Extraction

    /// The zero contour as a soup of directed segments, as FullLevelSet2D::getLines makes it, from the cells
    /// whose four corners are stored, in the order of their lower left corners in the band. Both vectors are
    /// emptied first.
    void getLines(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments);

    /// The same segments in the same order, but neighbouring cells share the point on their common edge, as
    /// getPolygons needs it.
    void getLinesUnique(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments);

 private:
    friend QUORBIN_EXPORT FastLevelSet2D quorbin::bandOf(const FullLevelSet2D& grid, bool reinitialized);
    friend QUORBIN_EXPORT FastLevelSet2D quorbin::bandOf(const std::vector<PointAnd<double>>& points,
                                                         double xSpace, double ySpace);
    friend lset::detail::BandAccess;

    void makeOf(FullLevelSet2D& grid, bool reinitialized);
    void makeOf(const std::vector<PointAnd<double>>& points, double xSpace, double ySpace);
    lset::detail::BandWorkspace<2>& work() const;

    PointHash<double> values_;
    mutable std::unique_ptr<lset::detail::BandWorkspace<2>> work_;  // null until it is needed
};
