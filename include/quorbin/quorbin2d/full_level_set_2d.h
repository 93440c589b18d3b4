#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <boost/function.hpp>

#include "../brin/image.h"
#include "level_set_2d.h"

class FullLevelSet3D;

/// A level set on a dense grid of width × height doubles.
///
/// A coordinate outside the grid is mirrored once: c < 0 reads |c| (−1 reads 1), and where |c| ≥ n it reads
/// 2n − 1 − |c| (n reads n − 1). Coordinates beyond −2n < c < 2n are the caller's error, unchecked. Object
/// and arrays take 16 bytes a grid point. Not to be used from two threads at once.
class QUORBIN_EXPORT FullLevelSet2D : public LevelSet2D {
 public:
    FullLevelSet2D() = default;
    ~FullLevelSet2D() override;
    FullLevelSet2D(const FullLevelSet2D&) = delete;
    /// What has been moved from is empty.
    FullLevelSet2D(FullLevelSet2D&& other) noexcept;
    FullLevelSet2D& operator=(FullLevelSet2D&& other) noexcept;

    // Storage

    /// Makes a grid of zeros with the given sizes (≥ 0) and spacings; what the object held is freed. Negative
    /// sizes, and sizes whose arrays cannot be had, leave the object unchanged: getWidth() and getHeight()
    /// tell.
    void init(int width, int height, double xSpace, double ySpace);

    /// Empties the grid: sizes and spacings 0, no arrays.
    virtual void release();

    /// Deep copy of sizes, spacings and values; the object ends empty if the arrays cannot be had.
    void operator=(const FullLevelSet2D& other);

    int getWidth() const override;
    int getHeight() const override;
    double get(int x, int y) const override;
    double& operator()(int x, int y) override;
    bool have(int x, int y) const override;

    /// The values, row by row: point (x, y) is element y · width + x. Null after release and
    /// before the first init.
    double* data() { return values_.get(); }
    const double* data() const { return values_.get(); }

    /// Bilinear interpolation at a point in grid-index units, clamped to the grid (not-a-number counts as 0).
    /// The grid must not be empty.
    double bilinear(double x, double y) const;

    // Differences: at the edge of the grid a one-sided difference becomes the opposite one, and a central one
    // the one-sided; the curvature term reads mirrored. Along an axis of one point all differences are 0;
    // a subclass must not ask for them, since there backward and forward defer to each other for ever.

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

    /// One forward Euler step of φt = Δφ over the stability limit 1 / (2/hx² + 2/hy²). Motion by curvature as
    /// long as the field is close to a signed distance: a circle shrinks by r² = r₀² − 2t. A subclass is
    /// asked for every central difference first, so its sizes must be 0 or at least 2.
    void moveAlongCurvature();

    /// One forward Euler step of the whole grid with the rate that f returns. f(levelSet, x, y, limit)
    /// returns the rate of change of the value at (x, y), in value per unit of time, and must write to *limit
    /// the largest time step it allows there; the step taken is the smallest of them (1e11 if none is
    /// smaller). f sees the old field throughout. An empty f throws boost::bad_function_call; whatever f
    /// throws passes through with the values unchanged.
    void moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f);

    /// One backward Euler step of φt = Δφ over the time 1, (I − Δ) u = φ, stable whatever the spacings.
    /// Neighbours are reflected at all four edges without repeating the edge point; an axis of one point has
    /// none. Solved by cosine transforms in about 100 ns and 16 bytes a point. Where a value is not finite,
    /// all become not-a-number.
    void moveAlongCurvatureImplicit();

    /// One backward Euler step of size dt, (I − dt (k Δ + vx Dx + vy Dy)) u = φ + dt s, with the coefficients
    /// that f writes for each point: f(levelSet, x, y, k, vx, vy, s), diffusion weight, advection along x and
    /// y, source. All four must be written every time. Dx and Dy are the backward difference for a positive
    /// coefficient and the forward one for any other: the unstable choice, so that advection over several
    /// cells in a step makes the equations hard to solve. f sees the old field. The last argument has no
    /// effect on the dense grid. Solved to a backward error of 1e-14 by BiCGStab in 1 to 5 µs and 120 bytes a
    /// point, or, where that does not converge, directly: 10 µs and 1500 bytes a point, and more on larger
    /// grids. Values become not-a-number where the equations have no solution or hold what is not finite. For
    /// what f throws see moveWithCurvature.
    void moveWithCurvatureImplicit(
        const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
        int maxIterations);

    // Distance

    /// Replaces the values by the signed distance to the zero crossing, in world units, by fast marching
    /// (Sethian 1996), first order. Negative or zero for values ≤ 0. A field without a zero
    /// crossing ends as zeros. O(n log n); beside the arrays of the grid it takes a byte a point and memory
    /// proportional to the front. More points than an int can number leave the object unchanged.
    void ensureSignedDistanceFMM();

    /// Replaces values by the distance to the nearest segment of getLines, in grid units whatever the
    /// spacings, negative for values that were ≤ 0 or not a number; distances above √(2 · width · height)
    /// become that. Exact for the segments: a tree of boxes finds the nearest, O(log n) a point.
    void ensureSignedDistanceBrute();

    /// The same in four sweeps that pass the index of the nearest segment from point to point (Danielsson
    /// 1980), in linear time. Exact near the contour; further off the sweeps, two forward and two backward,
    /// may miss the nearest segment and find one some per cent further, mostly towards the lower right and
    /// the upper left. Points further than √(width · height) keep their values, so a field without a zero
    /// crossing stays as it is. Takes 12 bytes a point while it works.
    void ensureSignedDistance();

    /// Unsigned distance of a point from the crossings of its own four grid edges; 1e11 if none is crossed.
    double estimateDistanceInit(int x, int y) const;

    /// Unsigned distance of a point from those of its neighbours whose state equals sign (1 outside, −1
    /// inside), by the eikonal quadratic; 1e11 if there is none. Both arrays have one entry for each grid
    /// point, row by row; states are signed numbers.
    double estimateDistance(const double* distances, const char* states, int sign, int x, int y) const;

    // Extraction

    /// The zero contour as a soup of directed segments by marching squares, in grid-index units: values > 0
    /// lie on the right of a segment when x grows to the right and y upwards. Cells row by row; each segment
    /// owns two fresh points. Both vectors are emptied first.
    void getLines(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments) const;

    /// The same segments in the same order, but a point that two cells share is stored once.
    void getLinesUnique(std::vector<brin::Vec2<double>>& points,
                        std::vector<std::pair<int, int>>& segments) const;

    /// A number for edge 0 to 3 of cell (x, y) that is the same from both cells which share it; any other
    /// edge fails an assertion, in release builds too.
    int getUniqueIndexMI(int x, int y, int edge) const;

    // Files

    /// Writes sizes, spacings and values as FL2D (little-endian); false if that fails, and the file may then
    /// be cut short.
    bool save(const char* path) const;

    /// Reads an FL2D file. False leaves the object unchanged when the file cannot be opened, is of another
    /// kind, has a short header, sizes that are negative or too large, or needs more memory than there is. A
    /// file that ends within the values also gives false, with the file's size and spacings and zeros for
    /// what is missing.
    bool load(const char* path);

    /// One channel, 255 where the value is ≤ 0 and 0 elsewhere.
    brin::Image<unsigned char> getBinaryImage() const;

 private:
    friend class FullLevelSet3D;  // which cuts planes

    // Memory from calloc costs nothing until it is touched, which a header that lies about its size never
    // does.
    struct Free {
        void operator()(double* array) const { std::free(array); }
    };
    using Array = std::unique_ptr<double[], Free>;

    static Array allocate(int width, int height);
    bool adopt(int width, int height, double xSpace, double ySpace);
    std::size_t size() const { return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_); }

    int width_ = 0;
    int height_ = 0;
    Array values_;
    Array scratch_;
};
