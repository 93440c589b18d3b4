#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include <boost/function.hpp>

#include "level_set_3d.h"

class FullLevelSet2D;

/// A level set on a dense grid of width × height × depth doubles.
///
/// A coordinate outside the grid is mirrored once, as in two dimensions: −1 reads 1, n reads n − 1.
/// Coordinates beyond −2n < c < 2n are the caller's error, unchecked. Object and arrays take 16 bytes a grid
/// point. Not to be used from two threads at once.
class QUORBIN_EXPORT FullLevelSet3D : public LevelSet3D {
 public:
    FullLevelSet3D() = default;
    ~FullLevelSet3D() override;
    FullLevelSet3D(const FullLevelSet3D&) = delete;
    /// What has been moved from is empty.
    FullLevelSet3D(FullLevelSet3D&& other) noexcept;
    FullLevelSet3D& operator=(FullLevelSet3D&& other) noexcept;

    // Storage

    /// Makes a grid of zeros with the given sizes (≥ 0) and spacings; what the object held is freed. Negative
    /// sizes, and sizes whose arrays cannot be had, leave the object unchanged: the sizes tell.
    void init(int width, int height, int depth, double xSpace, double ySpace, double zSpace);

    /// Empties the grid: sizes and spacings 0, no arrays.
    virtual void release();

    /// Deep copy of sizes, spacings and values; the object ends empty if the arrays cannot be had.
    void operator=(const FullLevelSet3D& other);

    int getWidth() const override;
    int getHeight() const override;
    int getDepth() const override;
    double get(int x, int y, int z) const override;
    double& operator()(int x, int y, int z) override;
    bool have(int x, int y, int z) const override;

    /// The values: point (x, y, z) is element x + width · (y + height · z). Null after release and before the
    /// first init.
    double* data() { return values_.get(); }
    const double* data() const { return values_.get(); }

    /// Layer by layer, row by row. Both visit every point.
    void forEach(void (*f)(int, int, int, double&)) override;
    void forEachWithNeigh(void (*f)(int, int, int, double&)) override;

    /// Writes the plane at a fixed coordinate into out, whose x and y are the two other axes in their order;
    /// makes it a signed distance if reinit. False, with out unchanged, for a coordinate outside the grid and
    /// where the plane does not fit into memory.
    bool getXPlane(int x, FullLevelSet2D& out, bool reinit) const;
    bool getYPlane(int y, FullLevelSet2D& out, bool reinit) const;
    bool getZPlane(int z, FullLevelSet2D& out, bool reinit) const;

    // Differences: one-sided ones read mirrored at the faces, a central one becomes the one-sided.

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
    double getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx, double& dy,
                                 double& dz) const override;

    /// Mean length of the central gradient over all points, 1 for a signed distance; not a number for an
    /// empty grid.
    double averageNormalLength() const;

    // Motion

    /// One forward Euler step of φt = Δφ over the stability limit 1 / (2/hx² + 2/hy² + 2/hz²). Motion by mean
    /// curvature as long as the field is close to a signed distance: a sphere shrinks by r² = r₀² − 4t. About
    /// 1.5 ns a point.
    void moveAlongCurvature();

    /// One backward Euler step of φt = Δφ over the time 1, by at most 15 Gauss-Seidel sweeps, until the root
    /// of the residual's sum of squares over the points of a layer is below 1e-4. Neighbours are reflected at
    /// all faces without repeating the edge point; an axis of one point has none. The z neighbours are
    /// weighted by the y spacing, so the z spacing should equal it.
    void moveAlongCurvatureImplicit();

    /// One forward Euler step with the rate that f returns; see FullLevelSet2D::moveWithCurvature. Returns
    /// the step taken.
    double moveWithCurvature(const boost::function<double(LevelSet3D*, int, int, int, double*)>& f);

    // Distance

    /// Replaces the values by the signed distance to the zero crossing, in world units, by fast marching
    /// (Sethian 1996), first order. Negative or zero for values ≤ 0. A field without a zero crossing ends as
    /// zeros. Beside the level set's arrays a byte a point for states and 16 to 32 bytes for each point of
    /// the queue.
    void ensureSignedDistanceFMM();

    /// Unsigned distance of a point from those of its neighbours whose state equals sign (1 outside, −1
    /// inside), by the eikonal quadratic; 1e11 if there is none. Both arrays have one entry for each grid
    /// point; states are signed numbers.
    double estimateDistance(const double* distances, const char* states, int sign, int x, int y, int z) const;

    // Files

    /// Writes sizes, spacings and values, little-endian: as FR3D, runs of bytes, where all values are −1, 0
    /// or 1 to within 0.001, and as FL3D, doubles, otherwise. False if that fails, and the file may then be
    /// cut short.
    bool save(const char* path) const;

    /// Reads an FL3D or FR3D file. False leaves the object unchanged when the file cannot be opened, is of
    /// another kind, has a short header, sizes that are negative or too large, or needs more memory than
    /// there is. A file whose values end early, or with a run of none, also gives false, with zeros for what
    /// is missing. A negative run stores nothing. Prints a line for an FR3D file.
    bool load(const char* path);

 private:
    struct Free {
        void operator()(double* array) const { std::free(array); }
    };
    using Array = std::unique_ptr<double[], Free>;

    static Array allocate(int width, int height, int depth);
    bool adopt(int width, int height, int depth, double xSpace, double ySpace, double zSpace);
    std::size_t size() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) *
               static_cast<std::size_t>(depth_);
    }

    int width_ = 0;
    int height_ = 0;
    int depth_ = 0;
    Array values_;
    Array scratch_;
};
