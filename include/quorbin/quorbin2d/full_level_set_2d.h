#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <boost/function.hpp>

#include "../brin/image.h"
#include "../progress.h"
#include "level_set_2d.h"

namespace lset::detail {
class Stretch;
}

class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// FullLevelSet2D::ensureSignedDistanceFMM, which progress may end: then false, and the values stay. It is
/// told of the points that have their distance, at every 32768th.
QUORBIN_EXPORT bool ensureSignedDistanceFMM(FullLevelSet2D& field, const Progress& progress);

/// FullLevelSet2D::ensureSignedDistance and ensureSignedDistanceBrute in the same way, told of each row that
/// they have gone over.
QUORBIN_EXPORT bool ensureSignedDistance(FullLevelSet2D& field, const Progress& progress);
QUORBIN_EXPORT bool ensureSignedDistanceBrute(FullLevelSet2D& field, const Progress& progress);

/// A grid over values that somebody else owns, row by row as data() has them, which must outlive it. It
/// frees memory of its own only; operations write to those values, init and release let go of them, and a
/// copy of it has its own. Throws std::invalid_argument for a negative size, and std::bad_alloc.
QUORBIN_EXPORT FullLevelSet2D gridOver(double* values, int width, int height, double xSpace, double ySpace);
QUORBIN_EXPORT const FullLevelSet2D gridOver(const double* values, int width, int height, double xSpace,
                                             double ySpace);

}  // namespace quorbin

/// A level set on a dense grid of width × height doubles.
///
/// A coordinate c outside the grid is mirrored once: on an axis of n points it stands for |c| if that is
/// below n (−1 for 1), else for 2n − 1 − |c| (n for n − 1). Only −2n < c < 2n is allowed, which is not
/// checked. A grid point takes 16 bytes. Not to be used from two threads at once. Operations that run out of
/// memory throw std::bad_alloc and leave the values unchanged, unless they say otherwise.
class QUORBIN_EXPORT FullLevelSet2D : public LevelSet2D {
 public:
    // Storage

    FullLevelSet2D() = default;
    ~FullLevelSet2D() override;
    FullLevelSet2D(const FullLevelSet2D&) = delete;
    /// A grid that has been moved from is empty.
    FullLevelSet2D(FullLevelSet2D&& other) noexcept;
    FullLevelSet2D& operator=(FullLevelSet2D&& other) noexcept;

    /// Makes this a grid of zeros with the given numbers of points (≥ 0) and spacings (world units), and
    /// frees what it held. If a size is negative or there is not enough memory, the grid stays as it was:
    /// compare getWidth() and getHeight(). Spacings are not checked.
    void init(int width, int height, double xSpace, double ySpace);

    /// Empties the grid: sizes and spacings become 0, and its memory is freed.
    virtual void release();

    /// Deep copy of sizes, spacings and values. If there is not enough memory, or other is this grid itself,
    /// the grid ends empty.
    void operator=(const FullLevelSet2D& other);

    int getWidth() const override;
    int getHeight() const override;
    double get(int x, int y) const override;
    double& operator()(int x, int y) override;
    bool have(int x, int y) const override;

    /// The values, row by row: point (x, y) is element y · width + x. Null before the first init and after
    /// release.
    double* data() { return values_.get(); }
    const double* data() const { return values_.get(); }

    /// The value at a point in grid-index units by bilinear interpolation. Coordinates are clamped to the
    /// grid; one that is not a number counts as 0. The grid must not be empty.
    double bilinear(double x, double y) const;

    // Differences. Where a neighbour would lie outside the grid, a one-sided difference is replaced by the
    // opposite one, and a central one by the one-sided one that stays in the grid; the curvature term reads
    // mirrored values. Along an axis of one point all first differences are 0. In a subclass they must not be
    // called: there the backward and the forward difference would call each other without end.

    double getDyCentral(int x, int y) const override;
    double getDyMinus(int x, int y) const override;
    double getDyPlus(int x, int y) const override;
    double getDyUpwind(int x, int y, double speed) const override;
    double getDxCentral(int x, int y) const override;
    double getDxMinus(int x, int y) const override;
    double getDxPlus(int x, int y) const override;
    double getDxUpwind(int x, int y, double speed) const override;
    double getCurvature(int x, int y) const override;
    double getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx, double& dy) const override;

    // Motion

    /// One forward Euler step of φt = Δφ with the longest stable time step, 1 / (2/hx² + 2/hy²). As long as
    /// the field is close to a signed distance, this moves the contour by its curvature: a circle shrinks by
    /// r² = r₀² − 2t. In a subclass all central differences are asked for first, so that each size must be 0
    /// or at least 2. About 1 ns a point.
    void moveAlongCurvature();

    /// One forward Euler step with a rate of change of your own. f(levelSet, x, y, limit) is called for each
    /// point, row by row; it returns that rate, in value per unit of time, and must write to *limit the
    /// largest time step that it allows. The step taken is the smallest of these limits, at most 1e11. f sees
    /// the old field throughout; if it releases the grid or makes another of it, the step ends there. An
    /// empty f throws boost::bad_function_call. After that, and after any exception from f, the values are
    /// unchanged.
    void moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f);

    /// One backward Euler step of φt = Δφ over the time 1: replaces φ by the solution u of (I − Δ) u = φ.
    /// Stable whatever the spacings. At all four edges neighbours are reflected without repeating the edge
    /// point (−1 stands for 1, n for n − 2); along an axis of one point there are none. Solved by cosine
    /// transforms in about 100 ns and 16 bytes a point. If any value is not finite, all become not-a-number.
    void moveAlongCurvatureImplicit();

    /// One backward Euler step over the time dt: replaces φ by the solution u of
    ///
    ///     (I − dt (k Δ + vx Dx + vy Dy)) u = φ + dt s
    ///
    /// f(levelSet, x, y, k, vx, vy, s) writes the coefficients of each point: the weight k of diffusion, the
    /// speeds vx and vy of advection, and the source s. It must write all four every time, and sees the old
    /// field. At the edges neighbours are those of moveAlongCurvatureImplicit. Dx and Dy are backward
    /// differences where the coefficient is positive and forward ones elsewhere. That is the unstable side:
    /// advection over several cells in a step makes the equations hard to solve. maxIterations has no effect
    /// here. Solved to a backward error of 1e-14 by BiCGStab in 1 to 5 µs and 120 bytes a point or, if that
    /// does not converge, by a direct method: 10 µs and 1500 bytes a point, and more on larger grids. All
    /// values become not-a-number if the equations have no solution, if the direct method runs out of memory,
    /// or if a value or coefficient is not finite while k, vx and vy are not 0 everywhere. For an f that is
    /// empty, throws or makes another grid see moveWithCurvature.
    void moveWithCurvatureImplicit(
        const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
        int maxIterations);

    // Distance

    /// Replaces the values by the signed distance to the zero crossing, in world units, by fast marching
    /// (Sethian 1996), first order. Where the value was ≤ 0, the distance is negative or 0. A field without a
    /// zero crossing becomes all zeros. O(n log n), about 0.1 µs a point; beside the grid it takes a byte a
    /// point and memory in proportion to the front. A grid of more than 2147483647 points is left unchanged.
    void ensureSignedDistanceFMM();

    /// Replaces the values by the distance to the nearest segment of getLines, in grid units whatever the
    /// spacings: negative where the value was ≤ 0 or not a number. Distances above √(2 · width · height) are
    /// set to that. All others are exact for the segments: a tree of boxes finds the nearest one in O(log n)
    /// a point.
    void ensureSignedDistanceBrute();

    /// The same in linear time, by four sweeps over the grid, two forward and two backward, in which points
    /// pass the index of their nearest segment on to their neighbours (Danielsson 1980). Exact near the
    /// contour. Further off, mostly to its lower right and upper left, a point may miss its nearest segment
    /// and take one that is some per cent further away. Points further than √(width · height) keep their
    /// values, so a field without a zero crossing stays as it is. Takes 12 bytes a point while it works.
    void ensureSignedDistance();

    /// Unsigned distance of a grid point from the contour, in world units, from the crossings on the four
    /// grid edges that meet at it; 1e11 if none of them is crossed.
    double estimateDistanceInit(int x, int y) const;

    /// Unsigned distance of a grid point, in world units, by the eikonal quadratic (see eikonal.h) from the
    /// distances of its known neighbours: those whose state equals sign (1 outside, −1 inside). 1e11 if there
    /// is none. Both arrays have one entry for each grid point, row by row; states are signed numbers.
    double estimateDistance(const double* distances, const char* states, int sign, int x, int y) const;

    // Extraction

    /// The zero contour by marching squares, as a soup of directed segments in grid-index units. A segment
    /// holds the indices of its start and its end in points; no two segments share a point. Values > 0 lie on
    /// the right of a segment (x to the right, y upwards). Cells are visited row by row. Both vectors are
    /// emptied first.
    void getLines(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments) const;

    /// The same segments in the same order, but neighbouring cells share the point on their common edge, as
    /// getPolygons needs it.
    void getLinesUnique(std::vector<brin::Vec2<double>>& points,
                        std::vector<std::pair<int, int>>& segments) const;

    /// A number for an edge (0 to 3, see MarchingSquares) of cell (x, y), the same for both cells that share
    /// the edge. Any other edge ends the process with a failed assertion, in release builds too.
    int getUniqueIndexMI(int x, int y, int edge) const;

    // Files

    /// Writes sizes, spacings and values to an FL2D file (little-endian). Returns false if that fails; the
    /// file may then be cut short.
    bool save(const char* path) const;

    /// Reads an FL2D file; returns whether it was complete. The grid stays as it was if the file cannot be
    /// opened, is of another kind, ends within its header, has a negative size, or needs more memory than
    /// there is. If the file ends within its values, the grid gets the file's sizes, spacings and complete
    /// values, and zeros for the rest.
    bool load(const char* path);

    /// The inside as an image of the same size with one channel: 255 where the value is ≤ 0, and 0 elsewhere.
    brin::Image<unsigned char> getBinaryImage() const;

 private:
    friend class FullLevelSet3D;  // which cuts planes
    friend bool quorbin::ensureSignedDistanceFMM(FullLevelSet2D&, const quorbin::Progress&);
    friend bool quorbin::ensureSignedDistance(FullLevelSet2D&, const quorbin::Progress&);
    friend bool quorbin::ensureSignedDistanceBrute(FullLevelSet2D&, const quorbin::Progress&);

    // Memory from calloc costs nothing until it is touched, so a file whose header tells too large a size
    // does no harm.
    struct Free {
        bool isBorrowed;  // false where nobody says so
        void operator()(double* array) const {
            if (!isBorrowed) std::free(array);
        }
    };
    using Array = std::unique_ptr<double[], Free>;

    friend FullLevelSet2D quorbin::gridOver(double*, int, int, double, double);

    template <class Watch>
    void march(const lset::detail::Stretch& stretch);
    bool measureBySweeps(const quorbin::Progress& progress);
    bool measureByBruteForce(const quorbin::Progress& progress);

    static Array allocate(int width, int height);
    bool adopt(int width, int height, double xSpace, double ySpace);
    void take(Array values, Array scratch, int width, int height, double xSpace, double ySpace);
    std::size_t size() const { return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_); }

    int width_ = 0;
    int height_ = 0;
    Array values_;
    Array scratch_;
    unsigned generation_ = 0;  // another one for each grid that this has been
};
