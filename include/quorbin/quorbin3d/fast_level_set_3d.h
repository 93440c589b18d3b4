#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <boost/function.hpp>

#include "../hash.h"
#include "level_set_3d.h"

class FastLevelSet3D;
class FullLevelSet3D;

namespace quorbin {

/// The band that FastLevelSet3D::initTo makes of a dense grid, without the line that initTo prints: the
/// corners of the cells that the surface crosses, with their values or, if reinitialized, made a signed
/// distance by FastLevelSet3D::ensureSignedDistanceFMM.
QUORBIN_EXPORT FastLevelSet3D bandOf(const FullLevelSet3D& grid, bool reinitialized = true);

/// The band with these points and values. Throws std::invalid_argument if a point is there twice, and
/// std::bad_alloc. Spacings are not checked.
QUORBIN_EXPORT FastLevelSet3D bandOf(const std::vector<Point3And<double>>& points, double xSpace,
                                     double ySpace, double zSpace);

/// See mesh.h.
QUORBIN_EXPORT void getTrianglesUnique(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

}  // namespace quorbin

namespace lset::detail {
template <std::size_t dimensions>
struct BandWorkspace;
struct BandAccess;
}  // namespace lset::detail

/// A level set on a narrow band: only grid points around the zero surface are stored, in a hash table, so
/// that memory and time follow the area of the surface and not the volume. The band has no width, height,
/// depth or face, and coordinates may be negative. A point that is not stored reads as 0. Operations visit
/// points in the order of the hash table: bucket by bucket, and in a bucket in the order in which they were
/// added. A stored point takes 70 to 90 bytes, and about 110 more from the first march on. Copies are deep; a
/// band that has been moved from is empty. Not to be used from two threads at once, not even for reading,
/// since const operations share a workspace too. Operations that run out of memory throw std::bad_alloc and
/// leave the points as they were, unless they say otherwise.
class QUORBIN_EXPORT FastLevelSet3D : public LevelSet3D {
 public:
    // Storage

    /// An empty band with spacings of 1.
    FastLevelSet3D();

    ~FastLevelSet3D() override;
    FastLevelSet3D(const FastLevelSet3D& other);
    FastLevelSet3D& operator=(const FastLevelSet3D& other);
    FastLevelSet3D(FastLevelSet3D&& other) noexcept;
    FastLevelSet3D& operator=(FastLevelSet3D&& other) noexcept;

    /// −1, since a band has no extent.
    int getWidth() const override;
    int getHeight() const override;
    int getDepth() const override;

    /// The value of a point, 0 if it is not stored.
    double get(int x, int y, int z) const override;
    /// The value of a point, as a reference that is valid until the points change. A point that is not stored
    /// is added to the band with the value 0.
    double& operator()(int x, int y, int z) override;
    /// Whether a point is stored.
    bool have(int x, int y, int z) const override;

    void forEach(void (*f)(int, int, int, double&)) override;
    void forEachWithNeigh(void (*f)(int, int, int, double&)) override;

    /// Does nothing; the band keeps its points.
    virtual void release();

    /// Number of stored points. Takes time in proportion to the number of buckets.
    virtual int size() const;

    /// The stored points, for visiting them in order, bucket by bucket.
    const Point3Hash<double>& points() const { return values_; }

    // Differences: as on the dense grid, but without faces; a neighbour that is not stored reads as 0.

    double getDyCentral(int x, int y, int z) const override;
    double getDyMinus(int x, int y, int z) const override;
    double getDyPlus(int x, int y, int z) const override;
    double getDyUpwind(int x, int y, int z, double speed) const override;
    double getDxCentral(int x, int y, int z) const override;
    double getDxMinus(int x, int y, int z) const override;
    double getDxPlus(int x, int y, int z) const override;
    double getDxUpwind(int x, int y, int z, double speed) const override;
    double getDzCentral(int x, int y, int z) const override;
    double getDzMinus(int x, int y, int z) const override;
    double getDzPlus(int x, int y, int z) const override;
    double getDzUpwind(int x, int y, int z, double speed) const override;
    double getCurvature(int x, int y, int z) const override;
    /// Returns the seven-point Laplacian, and stores the upwind differences in dx, dy and dz: backward for a
    /// speed > 0, forward for any other. Reads seven values in all. The Laplacian may differ from that of
    /// getCurvature in the last bit.
    double getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx, double& dy,
                                 double& dz) const override;

    /// Mean length of the gradient, by central differences, over the interior points (see below): about 1 for
    /// a signed distance. Not a number if there are none.
    double averageNormalLength() const;

    // Motion. Steps move the interior points, which are those whose six neighbours are stored.

    /// One forward Euler step of φt = Δφ with 0.95 of the longest stable time step, 1 / (2/hx² + 2/hy² +
    /// 2/hz²). Points that are not interior leave the band, so that each step takes off a layer of points.
    /// Call ensureSignedDistanceFMM after every step or every second one, before the band is too thin.
    void moveAlongCurvature();

    /// One forward Euler step with a rate of change of your own. f(levelSet, x, y, z, limit) is called for
    /// each interior point; it returns that rate, in value per unit of time, and must write to *limit, where
    /// it finds 0, the largest time step that it allows. The step taken is 0.95 of the smallest limit; it is
    /// returned, and is 0 if no point is interior. Points that are not interior keep their values. f sees the
    /// old values; points that it adds are not moved but count as neighbours from then on. An empty f throws
    /// boost::bad_function_call. After that, and after any exception from f, the values are unchanged.
    double moveWithCurvature(const boost::function<double(LevelSet3D*, int, int, int, double*)>& f);

    /// One backward Euler step of φt = k Δφ + v · ∇φ + s over the time dt, by at most maxIterations
    /// Gauss-Seidel sweeps, until the residual's root mean square is below 1e-4. f(levelSet, x, y, z, k, vx,
    /// vy, vz, s) is called once for each interior point and writes the coefficients there, in world units;
    /// it finds 0 in all five and sees the old values. ∇ takes the forward difference along an axis where v
    /// is positive and the backward one elsewhere. That is the stable side, so that with k ≥ 0 the sweeps
    /// converge for every dt. Points that are not interior keep their values. Points that f adds are neither
    /// moved nor neighbours, and the step drops them. An empty f throws boost::bad_function_call. After that,
    /// and after any exception from f, the values are unchanged.
    void moveWithCurvatureImplicit(const boost::function<void(LevelSet3D*, int, int, int, double&, double&,
                                                              double&, double&, double&)>& f,
                                   double dt, int maxIterations);

    // Distance

    /// Replaces the band by the corners of those cells of a dense grid that the surface crosses, with their
    /// values. The spacings become those of the grid. Unless reinit is 0, ensureSignedDistanceFMM follows.
    /// Prints a line with the number of points to standard output.
    void initTo(const FullLevelSet3D& grid, int reinit);

    /// Replaces the band by the signed distance to its zero surface, in world units, by fast marching, first
    /// order. It then has the points up to 2.1 · max(hx, hy, hz) from the surface, and their neighbours.
    /// Since the largest spacing sets this limit, the band is many points thick along an axis whose spacing
    /// is much smaller. A band without a surface becomes empty; one with a spacing that is not positive and
    /// finite stays as it is. About 0.3 µs a point.
    void ensureSignedDistanceFMM();

    /// Unsigned distance of a point, in world units, by the eikonal quadratic (see eikonal.h) from the
    /// distances of its known neighbours: those whose state equals sign (1 outside, −1 inside). 1e11 if there
    /// is none. A known neighbour that is not in distances counts as having the distance 0.
    double estimateDistance(const Point3Hash<double>& distances, const Point3Hash<char>& states, int sign,
                            int x, int y, int z) const;

    // Extraction

    /// The zero surface as on the dense grid, from the cells whose eight corners are stored, in the order of
    /// their corners with the smallest coordinates in the band. Normals within one point of the edge of the
    /// band are unreliable, since neighbours are missing there; vertices are right everywhere. See also
    /// getTrianglesUnique.
    void getTriangles(std::vector<brin::Vec3<double>>& vertices, std::vector<brin::Vec3<double>>& normals,
                      std::vector<gpoint3>& triangles) override;

 private:
    friend QUORBIN_EXPORT FastLevelSet3D quorbin::bandOf(const FullLevelSet3D& grid, bool reinitialized);
    friend QUORBIN_EXPORT FastLevelSet3D quorbin::bandOf(const std::vector<Point3And<double>>& points,
                                                         double xSpace, double ySpace, double zSpace);
    friend QUORBIN_EXPORT void quorbin::getTrianglesUnique(const FastLevelSet3D& band,
                                                           std::vector<brin::Vec3<double>>& vertices,
                                                           std::vector<brin::Vec3<double>>& normals,
                                                           std::vector<gpoint3>& triangles);
    friend lset::detail::BandAccess;

    void makeOf(const FullLevelSet3D& grid, bool reinitialized);
    void makeOf(const std::vector<Point3And<double>>& points, double xSpace, double ySpace, double zSpace);
    lset::detail::BandWorkspace<3>& work() const;

    Point3Hash<double> values_;
    mutable std::unique_ptr<lset::detail::BandWorkspace<3>> work_;  // null until it is needed
};
