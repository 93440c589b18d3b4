#pragma once

#include <quorbin.h>

#include "methods.h"

/// What is measured, one source a subject, each with the methods that it is given. Sizes are n points an
/// axis. Each function prints lines of JSON (see line.h).
namespace accuracy {

/// Change of the area of a disc, or of the volume of a ball, by 1, 10 and 100 calls.
template <class Grid>
void drift(const DistanceMethods<Grid>& methods, int n);

/// Errors of the distance of a circle or sphere within three samples of it, and further off; with a field
/// whose slope at the interface is factor, and samples that lie stretch times further apart along the last
/// axis.
template <class Grid>
void circleDistances(const DistanceMethods<Grid>& methods, int n, double factor = 1, double stretch = 1);

/// The same outside an ellipse or ellipsoid.
template <class Grid>
void ellipsoidDistances(const DistanceMethods<Grid>& methods, int n);

/// Errors of the distance of a square, largest at its corners, and its area after 1 and 50 calls.
void squareCorners(const DistanceMethods<FullLevelSet2D>& methods, int n);

/// Rods two samples thick, straight and diagonal, as distance and as mask: samples that change sides in 50
/// calls, and change of volume at the first and in the others.
void thinRods(const DistanceMethods<FullLevelSet3D>& methods, int n);

/// A disc or ball until half of its area or of its r² is gone: how much too fast that goes.
template <class Grid>
void roundCurvature(const CurvatureMethods<Grid>& methods, int n, double stretch = 1);

/// A five-pointed star and a square until half of the area is gone.
void pointedCurvature(const CurvatureMethods<FullLevelSet2D>& methods, int n, double stretch = 1);

/// Discs, stars, squares, balls and cubes that keep their size: what change of it is left.
void constantSize(int n2, int n3);

/// A dumbbell becomes two pieces: when, and what happens besides.
void pinch(const CurvatureMethods<FullLevelSet3D>& methods, int n);

/// Shapes carried around and back by a velocity: the slotted disc (Zalesak 1979), the vortex (LeVeque 1996),
/// the deformation (Enright et al. 2002).
void carriedShapes(bool isSmall);

/// What new operations take, as parts of what old ones take in the same run.
void reinitializeTimes(int n2, int n3);
void bandStepTimes(int n);
void longFlowTimes(int n);

}  // namespace accuracy
