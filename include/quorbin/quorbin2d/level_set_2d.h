#pragma once

#include "../brin/vec.h"
#include "../quorbin_export.h"

/// A closed curve held as the zero crossing of a scalar field that is sampled on a regular grid: a value ≤ 0
/// is inside, a value > 0 outside. A grid point has the whole-number coordinates (x, y), x along a row; in
/// world units they are multiplied by the spacings. Algorithms read any subclass through these virtual
/// functions only. In comments φ is the field, φt its rate of change, and hx and hy are the spacings.
class QUORBIN_EXPORT LevelSet2D {
 public:
    virtual ~LevelSet2D();

    /// Number of grid points along each axis.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;

    /// Distance between neighbouring grid points along each axis, in world units.
    virtual double getXSpace() const;
    virtual double getYSpace() const;

    /// The value at a grid point, and a reference by which it can be written.
    virtual double get(int x, int y) const = 0;
    virtual double& operator()(int x, int y) = 0;

    /// First differences at a grid point, in value per world unit: central, backward (Minus), forward (Plus),
    /// and upwind, which is backward for speed > 0 and forward for any other.
    virtual double getDyCentral(int x, int y) const = 0;
    virtual double getDyMinus(int x, int y) const = 0;
    virtual double getDyPlus(int x, int y) const = 0;
    virtual double getDyUpwind(int x, int y, double speed) const = 0;
    virtual double getDxCentral(int x, int y) const = 0;
    virtual double getDxMinus(int x, int y) const = 0;
    virtual double getDxPlus(int x, int y) const = 0;
    virtual double getDxUpwind(int x, int y, double speed) const = 0;

    /// The curvature term: the five-point Laplacian, which is the curvature of the level lines where the
    /// field is a signed distance. It is not divided by the length of the gradient.
    virtual double getCurvature(int x, int y) const = 0;

    /// Returns getCurvature, and stores the upwind differences for the speeds vx and vy in dx and dy.
    virtual double getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx,
                                         double& dy) const = 0;

    /// Whether a point is in the grid or stored in the band.
    virtual bool have(int x, int y) const = 0;

    /// Where the field is zero between the grid points (x0, y0) and (x1, y1), in grid-index units, by linear
    /// interpolation; the midpoint if the values differ by less than 1e-16. The values should differ in sign;
    /// this is not checked. Exchanging the two points may change the last bits of the result.
    brin::Vec2<double> getPoint(int x0, int y0, int x1, int y1) const;

 private:
    friend class FullLevelSet2D;
    friend class FastLevelSet2D;

    double xSpace_ = 0.0;
    double ySpace_ = 0.0;
};
