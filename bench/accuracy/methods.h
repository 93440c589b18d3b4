#pragma once

#include <functional>
#include <string>
#include <vector>

class FullLevelSet2D;
class FullLevelSet3D;

namespace accuracy {

/// A way to make a field a signed distance. Where it leaves samples without a distance it sets them to ±∞.
template <class Grid>
struct DistanceMethod {
    std::string name;
    /// Whether it is right where spacings differ.
    bool takesAnySpacings = true;
    /// Returns the seconds that the distances alone took.
    std::function<double(Grid&)> apply;
};

struct Motion {
    double time = 0;  ///< how far the flow came
    int steps = 0;
    double seconds = 0;
};

/// A way to move an interface by its curvature, φt = κ |∇φ|, from a signed distance to a field whose zero
/// level is the moved one.
template <class Grid>
struct CurvatureMethod {
    std::string name;
    bool takesAnySpacings = true;
    std::function<Motion(Grid&, double time)> move;
};

template <class Grid>
using DistanceMethods = std::vector<DistanceMethod<Grid>>;
template <class Grid>
using CurvatureMethods = std::vector<CurvatureMethod<Grid>>;

/// Those of the library.
template <class Grid>
DistanceMethods<Grid> libraryDistances();
template <class Grid>
CurvatureMethods<Grid> libraryMotions();

}  // namespace accuracy
