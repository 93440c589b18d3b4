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

/// What FastLevelSet3D::initTo makes of a grid, as a band of its own and without a printed line: the corners
/// of the cells that the surface crosses, and unless reinitialized is false the signed distance to it around
/// them.
QUORBIN_EXPORT FastLevelSet3D bandOf(const FullLevelSet3D& grid, bool reinitialized = true);

QUORBIN_EXPORT void getTrianglesUnique(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

}  // namespace quorbin

namespace lset::detail {
template <std::size_t dimensions>
struct BandWorkspace;
}

/// A level set on a narrow band around the zero surface, in a hash table of grid points: memory and time
/// follow the area of the surface and not the volume. As on the band of two dimensions there is no extent and
/// no face, coordinates may be negative, a point that is not stored reads as 0, and points are visited in the
/// order of the hash. Each stored point takes 70 to 90 bytes, and about 110 more from the first march on.
/// Copies are deep; a band that has been moved from is empty. Not to be used from two threads at once,
/// reading included: operations share what they work with.
class QUORBIN_EXPORT FastLevelSet3D : public LevelSet3D {
 public:
    // Storage

    /// An empty band with spacings of 1.
    FastLevelSet3D();
    ~FastLevelSet3D() override;
    FastLevelSet3D(const FastLevelSet3D& other);
    FastLevelSet3D& operator=(const FastLevelSet3D& other);
    FastLevelSet3D(FastLevelSet3D&& other);
    FastLevelSet3D& operator=(FastLevelSet3D&& other) noexcept;

    /// −1: there is no extent.
    int getWidth() const override;
    int getHeight() const override;
    int getDepth() const override;

    double get(int x, int y, int z) const override;
    /// The value of a point, which enters the band with the value 0 where it is not stored.
    double& operator()(int x, int y, int z) override;
    bool have(int x, int y, int z) const override;

    void forEach(void (*f)(int, int, int, double&)) override;
    void forEachWithNeigh(void (*f)(int, int, int, double&)) override;

    /// Does nothing; the band keeps its points.
    virtual void release();

    /// Number of stored points.
    virtual int size() const;

    /// The stored points, for visiting them in order.
    const Point3Hash<double>& points() const { return values_; }

    // Differences: as on the dense grid, but without faces.

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
    /// Returns the seven-point Laplacian and stores one-sided differences, from seven values: backward for a
    /// speed > 0, forward for any other.
    double getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx, double& dy,
                                 double& dz) const override;

    /// Mean length of the central gradient over the interior points, 1 for a signed distance; not a number if
    /// there are none.
    double averageNormalLength() const;

    // Motion: of interior points, those whose six neighbours are stored.

    /// One forward Euler step of φt = Δφ over 0.95 of the stability limit. Points that are not interior leave
    /// the band, so that each step strips a layer: reinitialise before it is too thin, every step or every
    /// second.
    void moveAlongCurvature();

    /// One forward Euler step with the rate that f returns, over 0.95 of the smallest limit it writes.
    /// f(levelSet, x, y, z, limit) finds 0 in *limit. f sees the old field; points that are not interior keep
    /// their values. Returns the step taken, 0 if no point is interior. An empty f throws
    /// boost::bad_function_call; whatever f throws passes through with the values unchanged.
    double moveWithCurvature(const boost::function<double(LevelSet3D*, int, int, int, double*)>& f);

    /// One backward Euler step of φt = k Δφ + v · ∇φ + s over the time dt, by at most maxIterations
    /// Gauss-Seidel sweeps, until the residual's root mean square is below 1e-4. f(levelSet, x, y, z, k, vx,
    /// vy, vz, s) is called once an interior point and finds 0 in all five, which are in world units; it sees
    /// the old field and must not add points. A positive factor takes the forward difference, the stable
    /// side, so that with k ≥ 0 the sweeps converge for every dt. Points that are not interior keep their
    /// values.
    void moveWithCurvatureImplicit(const boost::function<void(LevelSet3D*, int, int, int, double&, double&,
                                                              double&, double&, double&)>& f,
                                   double dt, int maxIterations);

    // Distance

    /// Replaces the band by the corners of the cells of a dense grid that the surface crosses, with their
    /// values, and unless reinit is 0 makes it a signed distance at once. The spacings become those of the
    /// grid. Prints the number of points.
    void initTo(const FullLevelSet3D& grid, int reinit);

    /// Replaces the band by the signed distance to its zero surface, in world units, by fast marching, first
    /// order. Stored afterwards is what the march reached: the points up to 2.1 · max(hx, hy, hz) from the
    /// surface and their neighbours. A band without a surface becomes empty; one with a spacing that is not
    /// positive and finite stays as it is. About 0.3 µs a point. The number of points grows with how unequal
    /// the spacings are: the limit is many of the smallest.
    void ensureSignedDistanceFMM();

    /// Unsigned distance of a point from those of its neighbours whose state equals sign (1 outside, −1
    /// inside), by the eikonal quadratic; 1e11 if there is none. A known neighbour without a distance has 0.
    double estimateDistance(const Point3Hash<double>& distances, const Point3Hash<char>& states, int sign,
                            int x, int y, int z) const;

    // Extraction

    /// The zero surface as on the dense grid, of the cells whose eight corners are stored, in the order of
    /// their first corners. Normals within a layer of the edge of the band are unreliable, vertices are not.
    /// See also getTrianglesUnique.
    void getTriangles(std::vector<brin::Vec3<double>>& vertices, std::vector<brin::Vec3<double>>& normals,
                      std::vector<gpoint3>& triangles) override;

 private:
    friend QUORBIN_EXPORT FastLevelSet3D quorbin::bandOf(const FullLevelSet3D& grid, bool reinitialized);
    friend QUORBIN_EXPORT void quorbin::getTrianglesUnique(const FastLevelSet3D& band,
                                                           std::vector<brin::Vec3<double>>& vertices,
                                                           std::vector<brin::Vec3<double>>& normals,
                                                           std::vector<gpoint3>& triangles);

    void makeOf(const FullLevelSet3D& grid, bool reinitialized);

    Point3Hash<double> values_;
    std::unique_ptr<lset::detail::BandWorkspace<3>> work_;
};
