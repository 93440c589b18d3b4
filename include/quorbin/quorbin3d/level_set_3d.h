#pragma once

#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "gpoint3.h"

/// A closed surface held as the zero crossing of a scalar field sampled on a regular grid: a value ≤ 0 is
/// inside, a value > 0 outside. Grid points are named by int (x, y, z), x along rows, y across them, z across
/// layers; spacings are world units per grid step. Every generic algorithm of the library reads a field
/// through these slots only.
class QUORBIN_EXPORT LevelSet3D {
 public:
    virtual ~LevelSet3D();

    /// Distance between neighbouring grid points along each axis.
    virtual double getXSpace() const;
    virtual double getYSpace() const;
    virtual double getZSpace() const;

    /// Number of grid points along each axis.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual int getDepth() const = 0;

    /// Value at a grid point, and a reference through which it is written.
    virtual double get(int x, int y, int z) const = 0;
    virtual double& operator()(int x, int y, int z) = 0;

    /// First differences at a grid point, in value per world unit: central, backward (Minus), forward (Plus),
    /// and upwind, which is backward for speed > 0 and forward for any other.
    virtual double getDyCentral(int x, int y, int z) const = 0;
    virtual double getDyMinus(int x, int y, int z) const = 0;
    virtual double getDyPlus(int x, int y, int z) const = 0;
    virtual double getDyUpwind(int x, int y, int z, double speed) const = 0;
    virtual double getDxCentral(int x, int y, int z) const = 0;
    virtual double getDxMinus(int x, int y, int z) const = 0;
    virtual double getDxPlus(int x, int y, int z) const = 0;
    virtual double getDxUpwind(int x, int y, int z, double speed) const = 0;
    virtual double getDzCentral(int x, int y, int z) const = 0;
    virtual double getDzMinus(int x, int y, int z) const = 0;
    virtual double getDzPlus(int x, int y, int z) const = 0;
    virtual double getDzUpwind(int x, int y, int z, double speed) const = 0;

    /// The curvature term: the seven-point Laplacian, which is the sum of the principal curvatures of the
    /// level surfaces where the field is a signed distance. It is not divided by the length of the gradient.
    virtual double getCurvature(int x, int y, int z) const = 0;

    /// Returns getCurvature and stores the upwind differences for the speeds vx, vy and vz.
    virtual double getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx,
                                         double& dy, double& dz) const = 0;

    /// Whether the point is stored.
    virtual bool have(int x, int y, int z) const = 0;

    /// Calls f(x, y, z, value) for every stored point; f may change the value. With forEachWithNeigh, for
    /// those whose cell towards +x, +y, +z is stored.
    virtual void forEach(void (*f)(int, int, int, double&)) = 0;
    virtual void forEachWithNeigh(void (*f)(int, int, int, double&)) = 0;

    /// The zero surface as a soup of triangles by marching cubes, in grid-index units: counterclockwise seen
    /// from outside, with unit normals (or 0 where there is no gradient) that point outwards. Cells row by
    /// row, layer by layer; triangle i is vertices 3i, 3i + 1, 3i + 2. All three vectors are emptied first.
    virtual void getTriangles(std::vector<brin::Vec3<double>>& vertices,
                              std::vector<brin::Vec3<double>>& normals, std::vector<gpoint3>& triangles);

    /// The zero crossing of the straight line between two grid points, in grid-index units, measured from the
    /// first; the midpoint where the values differ by less than 1e-16. normal, unless null, gets the mean of
    /// the unit gradients at the two, weighted alike, which is no unit vector; it is left alone at a
    /// midpoint. Two values ≤ 0 are reported on standard output.
    brin::Vec3<double> getPoint(int x1, int y1, int z1, int x2, int y2, int z2,
                                brin::Vec3<double>* normal) const;

    /// Unsigned distance of a point from the crossings of its own six grid edges; 1e11 if none is crossed.
    double estimateDistanceInit(int x, int y, int z) const;

 private:
    friend class FastLevelSet3D;
    friend class FullLevelSet3D;

    double xSpace_ = 0.0;
    double ySpace_ = 0.0;
    double zSpace_ = 0.0;
};
