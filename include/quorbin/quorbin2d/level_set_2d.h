#pragma once

#include "../brin/vec.h"
#include "../quorbin_export.h"

/// A closed curve held as the zero crossing of a scalar field sampled on a regular grid: a value ≤ 0 is
/// inside, a value > 0 outside. Grid points are named by int (x, y), x along rows; spacings are world units
/// per grid step. Every generic algorithm of the library reads a field through these slots only.
class QUORBIN_EXPORT LevelSet2D {
 public:
    virtual ~LevelSet2D();

    /// Number of grid points along each axis.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;

    /// Distance between neighbouring grid points along each axis.
    virtual double getXSpace() const;
    virtual double getYSpace() const;

    /// Value at a grid point, and a reference through which it is written.
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

    /// Returns getCurvature and stores the upwind differences for the speeds vx and vy.
    virtual double getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx,
                                         double& dy) const = 0;

    /// Whether the point is stored.
    virtual bool have(int x, int y) const = 0;

    /// The zero crossing of the straight line from grid point (x0, y0) to (x1, y1), in grid-index units, by
    /// linear interpolation measured from the first point; the midpoint where the values differ by less than
    /// 1e-16. That the values differ in sign is not checked.
    brin::Vec2<double> getPoint(int x0, int y0, int x1, int y1) const;

 private:
    friend class FullLevelSet2D;
    friend class FastLevelSet2D;

    double xSpace_ = 0.0;
    double ySpace_ = 0.0;
};
