#pragma once

#include <array>
#include <vector>

#include <quorbin.h>

#include "../io/image.h"

namespace quorbin::fields {

/// Where samples lie along x, y and z: how many there are, and how far apart. A picture has one along z.
struct Lattice {
    std::array<int, 3> size = {1, 1, 1};
    std::array<double, 3> spacing = {1, 1, 1};
};

Lattice latticeOf(const FullLevelSet2D& field);
Lattice latticeOf(const FullLevelSet3D& field);

/// A lattice over the same place: its first samples are those of the old one, its last ones too (by size), or
/// within a spacing of those (by spacing). An axis of one sample stays as it is. Refuses what leaves one
/// sample of several, and too many of them.
Lattice withSize(const Lattice& old, const std::array<long long, 3>& size);
Lattice withSpacing(const Lattice& old, const std::array<double, 3>& spacing);

/// The lattice on which the samples of a plane are as far apart along x as along y: the smaller of the two
/// spacings, but no more samples along an axis than a picture can have.
Lattice withSquarePixels(const Lattice& plane);

/// Samples on another lattice that begins at the same place, along one axis after the other by Keys' cubic
/// interpolation (1981), which takes four samples an axis. Where samples become fewer, it is stretched to
/// average over those between. Beyond the border goes on what is before it, turned by half a circle about
/// the last sample, which therefore is taken as it is. A constant and a field that is linear come out as they
/// are but for rounding, and at spacings that divide the old ones old samples to the last bit. Values may lie
/// beyond all those around them, by an eighth of their range an axis. Not-a-number spreads to what takes a
/// part of it. Progress starts anew with each axis; where it ends the work there are no samples.
std::vector<double> resampled(const double* samples, const Lattice& from, const Lattice& to,
                              const Progress& progress = {});

/// The same of a field. Points of a volume stay where they are in the world. Progress may end it: then false,
/// and all is as it was.
bool resample(FullLevelSet2D& field, const Lattice& to, const Progress& progress = {});
bool resample(FullLevelSet3D& field, const Lattice& to, io::Placement& placement,
              const Progress& progress = {});

}  // namespace quorbin::fields
