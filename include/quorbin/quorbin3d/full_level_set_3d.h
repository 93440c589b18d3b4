#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include <boost/function.hpp>

#include "../progress.h"
#include "level_set_3d.h"

namespace lset::detail {
class Stretch;
}

class FullLevelSet3D;
class FullLevelSet2D;

namespace quorbin {

/// FullLevelSet3D::ensureSignedDistanceFMM, which progress may end: then false, and the values stay. It is
/// told of the points that have their distance, at every 32768th.
QUORBIN_EXPORT bool ensureSignedDistanceFMM(FullLevelSet3D& field, const Progress& progress);

/// A grid over values that somebody else owns, layer by layer as data() has them, which must outlive it. It
/// frees memory of its own only; operations write to those values, init and release let go of them, and a
/// copy of it has its own. Throws std::invalid_argument for a negative size, and std::bad_alloc.
QUORBIN_EXPORT FullLevelSet3D gridOver(double* values, int width, int height, int depth, double xSpace,
                                       double ySpace, double zSpace);
QUORBIN_EXPORT const FullLevelSet3D gridOver(const double* values, int width, int height, int depth,
                                             double xSpace, double ySpace, double zSpace);

}  // namespace quorbin

/// A level set on a dense grid of width × height × depth doubles.
///
/// A coordinate c outside the grid is mirrored once: on an axis of n points it stands for |c| if that is
/// below n (−1 for 1), else for 2n − 1 − |c| (n for n − 1). Only −2n < c < 2n is allowed, which is not
/// checked. A grid point takes 16 bytes. Not to be used from two threads at once. Operations that run out of
/// memory throw std::bad_alloc and leave the values unchanged, unless they say otherwise.
class QUORBIN_EXPORT FullLevelSet3D : public LevelSet3D {
 public:
    // Storage

    FullLevelSet3D() = default;
    ~FullLevelSet3D() override;
    FullLevelSet3D(const FullLevelSet3D&) = delete;
    /// A grid that has been moved from is empty.
    FullLevelSet3D(FullLevelSet3D&& other) noexcept;
    FullLevelSet3D& operator=(FullLevelSet3D&& other) noexcept;

    /// Makes this a grid of zeros with the given numbers of points (≥ 0) and spacings (world units), and
    /// frees what it held. If a size is negative or there is not enough memory, the grid stays as it was:
    /// compare its sizes. Spacings are not checked.
    void init(int width, int height, int depth, double xSpace, double ySpace, double zSpace);

    /// Empties the grid: sizes and spacings become 0, and its memory is freed.
    virtual void release();

    /// Deep copy of sizes, spacings and values. If there is not enough memory, or other is this grid itself,
    /// the grid ends empty.
    void operator=(const FullLevelSet3D& other);

    int getWidth() const override;
    int getHeight() const override;
    int getDepth() const override;
    double get(int x, int y, int z) const override;
    double& operator()(int x, int y, int z) override;
    bool have(int x, int y, int z) const override;

    /// The values: point (x, y, z) is element x + width · (y + height · z). Null before the first init and
    /// after release.
    double* data() { return values_.get(); }
    const double* data() const { return values_.get(); }

    /// Both call f for every point, layer by layer and in each row by row.
    void forEach(void (*f)(int, int, int, double&)) override;
    void forEachWithNeigh(void (*f)(int, int, int, double&)) override;

    /// Makes out the plane of the points with the given coordinate, and then, if reinit, its signed distance
    /// by ensureSignedDistanceFMM. Along x and y, out has the other two axes in their order, with their
    /// spacings. Returns false, with out unchanged, if the coordinate is outside the grid or there is not
    /// enough memory for the plane.
    bool getXPlane(int x, FullLevelSet2D& out, bool reinit) const;
    bool getYPlane(int y, FullLevelSet2D& out, bool reinit) const;
    bool getZPlane(int z, FullLevelSet2D& out, bool reinit) const;

    // Differences. At the faces of the grid one-sided differences and the curvature term read mirrored
    // values, and a central difference is replaced by the one-sided one that stays in the grid.

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

    /// Mean length of the gradient, by central differences, over all points: about 1 for a signed distance.
    /// Not a number for an empty grid.
    double averageNormalLength() const;

    // Motion

    /// One forward Euler step of φt = Δφ with the longest stable time step, 1 / (2/hx² + 2/hy² + 2/hz²). As
    /// long as the field is close to a signed distance, this moves the surface by its mean curvature, the sum
    /// of the principal ones: a sphere shrinks by r² = r₀² − 4t. About 1.5 ns a point.
    void moveAlongCurvature();

    /// One backward Euler step of φt = Δφ over the time 1, by at most 15 Gauss-Seidel sweeps, until √(S /
    /// (width · height)) is below 1e-4, where S is the sum of the squared residuals of all points. At all
    /// faces neighbours are reflected without repeating the edge point (−1 stands for 1, n for n − 2); along
    /// an axis of one point there are none. The neighbours along z are weighted by the y spacing, so the z
    /// spacing should equal it.
    void moveAlongCurvatureImplicit();

    /// One forward Euler step with a rate of change of your own. f(levelSet, x, y, z, limit) is called for
    /// each point, layer by layer; for all else see FullLevelSet2D::moveWithCurvature. Returns the step
    /// taken.
    double moveWithCurvature(const boost::function<double(LevelSet3D*, int, int, int, double*)>& f);

    // Distance

    /// Replaces the values by the signed distance to the zero crossing, in world units, by fast marching
    /// (Sethian 1996), first order. Where the value was ≤ 0, the distance is negative or 0. A field without a
    /// zero crossing becomes all zeros. O(n log n), about 0.3 µs a point; beside the grid it takes a byte a
    /// point and 16 to 32 bytes for each point of the front. A grid of more than 2147483647 points is left
    /// unchanged.
    void ensureSignedDistanceFMM();

    /// Unsigned distance of a grid point, in world units, by the eikonal quadratic (see eikonal.h) from the
    /// distances of its known neighbours: those whose state equals sign (1 outside, −1 inside). 1e11 if there
    /// is none. Both arrays have one entry for each grid point, in the order of data(); states are signed
    /// numbers.
    double estimateDistance(const double* distances, const char* states, int sign, int x, int y, int z) const;

    // Files

    /// Writes sizes, spacings and values to a file, little-endian: to an FR3D file, in which values are
    /// rounded and stored in runs of equal ones, if all are 0 or within 0.001 of −1 or 1; otherwise to an
    /// FL3D file of doubles. Returns false if that fails; the file may then be cut short.
    bool save(const char* path) const;

    /// Reads an FL3D or FR3D file; returns whether it was complete. The grid stays as it was if the file
    /// cannot be opened, is of another kind, ends within its header, has a negative size, or needs more
    /// memory than there is. If the values end early, or at a run of length 0, the grid gets the file's
    /// sizes, spacings and the values up to there, and zeros for the rest. A run of negative length is passed
    /// over. For an FR3D file a line is printed to standard output.
    bool load(const char* path);

 private:
    friend bool quorbin::ensureSignedDistanceFMM(FullLevelSet3D&, const quorbin::Progress&);
    struct Free {
        bool isBorrowed;  // false where nobody says so
        void operator()(double* array) const {
            if (!isBorrowed) std::free(array);
        }
    };
    using Array = std::unique_ptr<double[], Free>;

    friend FullLevelSet3D quorbin::gridOver(double*, int, int, int, double, double, double);

    template <class Watch>
    void march(const lset::detail::Stretch& stretch);

    static Array allocate(int width, int height, int depth);
    bool adopt(int width, int height, int depth, double xSpace, double ySpace, double zSpace);
    void take(Array values, Array scratch, int width, int height, int depth, double xSpace, double ySpace,
              double zSpace);
    std::size_t size() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) *
               static_cast<std::size_t>(depth_);
    }

    int width_ = 0;
    int height_ = 0;
    int depth_ = 0;
    Array values_;
    Array scratch_;
    unsigned generation_ = 0;  // another one for each grid that this has been
};
