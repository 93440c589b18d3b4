#pragma once

#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "gpoint3.h"

/// A closed surface held as the zero crossing of a scalar field that is sampled on a regular grid: a value ≤
/// 0 is inside, a value > 0 outside. A grid point has the whole-number coordinates (x, y, z), x along a row,
/// y across rows, z across layers; in world units they are multiplied by the spacings. Algorithms read any
/// subclass through these virtual functions only. In comments φ is the field, φt its rate of change, and hx,
/// hy and hz are the spacings.
class QUORBIN_EXPORT LevelSet3D {
 public:
    virtual ~LevelSet3D();

    /// Distance between neighbouring grid points along each axis, in world units.
    virtual double getXSpace() const;
    virtual double getYSpace() const;
    virtual double getZSpace() const;

    /// Number of grid points along each axis.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual int getDepth() const = 0;

    /// The value at a grid point, and a reference by which it can be written.
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

    /// Returns getCurvature, and stores the upwind differences for the speeds vx, vy and vz in dx, dy and dz.
    virtual double getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx,
                                         double& dy, double& dz) const = 0;

    /// Whether a point is in the grid or stored in the band.
    virtual bool have(int x, int y, int z) const = 0;

    /// Calls f(x, y, z, value) for every stored point; f may change the value. forEachWithNeigh visits only
    /// points of which the whole cell towards +x, +y, +z is stored.
    virtual void forEach(void (*f)(int, int, int, double&)) = 0;
    virtual void forEachWithNeigh(void (*f)(int, int, int, double&)) = 0;

    /// The zero surface by marching cubes, as a soup of triangles with vertices in grid-index units. Triangle
    /// i is the vertices 3i, 3i + 1 and 3i + 2, counterclockwise seen from outside. Each vertex has a normal:
    /// the direction of the gradient, outwards and of length 1, or 0 where there is no gradient. Cells are
    /// visited layer by layer, in each row by row. All three vectors are emptied first.
    virtual void getTriangles(std::vector<brin::Vec3<double>>& vertices,
                              std::vector<brin::Vec3<double>>& normals, std::vector<gpoint3>& triangles);

    /// Where the field is zero between two grid points, in grid-index units, by linear interpolation from the
    /// first; the midpoint if the values differ by less than 1e-16. Unless normal is null, *normal becomes
    /// the mean of the unit gradients at the two points, weighted as for the position; it is not of unit
    /// length, and with the midpoint it is left unchanged. If both values are ≤ 0, prints a line to standard
    /// output.
    brin::Vec3<double> getPoint(int x1, int y1, int z1, int x2, int y2, int z2,
                                brin::Vec3<double>* normal) const;

    /// Unsigned distance of a grid point from the surface, in world units, from the crossings on the six grid
    /// edges that meet at it; 1e11 if none of them is crossed. A neighbour that is not stored counts as equal
    /// to the point.
    double estimateDistanceInit(int x, int y, int z) const;

 private:
    friend class FastLevelSet3D;
    friend class FullLevelSet3D;

    double xSpace_ = 0.0;
    double ySpace_ = 0.0;
    double zSpace_ = 0.0;
};
