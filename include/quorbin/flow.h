#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "brin/vec.h"
#include "progress.h"
#include "quorbin_export.h"

class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// A velocity in world units per unit of time: writes those at count points (world units, grid index times
/// spacing) at a time. Asked for many points at once, in the caller's thread; points may lie beyond the grid.
using Velocity2D = std::function<void(double time, const brin::Vec2<double>* points, std::size_t count,
                                      brin::Vec2<double>* velocities)>;
using Velocity3D = std::function<void(double time, const brin::Vec3<double>* points, std::size_t count,
                                      brin::Vec3<double>* velocities)>;

/// A steady velocity that is known on a grid, x fastest, interpolated linearly along each axis; beyond the
/// grid it is that of the nearest point of it. Throws std::invalid_argument unless there are as many samples
/// as points and all of them are finite, and the spacings positive and finite.
QUORBIN_EXPORT Velocity2D velocityOnGrid(std::vector<brin::Vec2<double>> samples, int width, int height,
                                         double xSpace, double ySpace);
QUORBIN_EXPORT Velocity3D velocityOnGrid(std::vector<brin::Vec3<double>> samples, int width, int height,
                                         int depth, double xSpace, double ySpace, double zSpace);

struct FlowOptions {
    /// What flows in from beyond the grid: outside, or what was at the border.
    enum class Border { kOutside, kContinued };
    Border border = Border::kOutside;

    /// How far, in spacings, a front point may be from where it belongs after a step; halved steps bring it
    /// below.
    double tolerance = 0.02;

    /// Told of thousandths of the time.
    Progress progress;
};

/// A level set carried by a velocity, φt + V·∇φ = 0, that remembers: it keeps the field at the start, and of
/// each step the map back to where its points came from (the method of characteristic maps, Mercier, Yin and
/// Nave 2020; 12 bytes a point of a band around the interface, and a bit for each point of the grid). The
/// field at any time is the start's, seen through all maps in turn, so that nothing is interpolated twice and
/// next to nothing of it is lost; parts thinner than a cell come back when the flow lets them.
///
/// Points are traced by Runge's and Kutta's fourth-order method in as many substeps as a step needs, which is
/// some twenty spacings long; maps are read by cubics through four points an axis. The interface's own points
/// are carried forward, and where they move apart others come between them: they tell where the band is.
///
/// All throw std::invalid_argument for a grid of fewer than four points along an axis, a spacing that is not
/// positive and finite, a time that is not finite or lies behind, and a velocity that is not finite;
/// NoInterface; std::bad_alloc. The flow is then as it was.
class QUORBIN_EXPORT Flow2D {
 public:
    Flow2D(const FullLevelSet2D& start, Velocity2D velocity, double time = 0,
           const FlowOptions& options = {});
    ~Flow2D();
    Flow2D(Flow2D&& other) noexcept;
    Flow2D& operator=(Flow2D&& other) noexcept;

    /// Goes on to a time; false if progress ended it, and then it is where it was.
    bool advance(double time);

    double time() const;
    /// How many maps there are.
    std::size_t steps() const;
    /// Bytes that the maps take.
    std::size_t bytes() const;

    /// The level set now, a signed distance, on the grid of the start with each spacing divided by a whole
    /// number ≥ 1. Where no interface is left all values are of one side.
    FullLevelSet2D field(int refinement = 1) const;
    /// The values of the start's signed distance that have come to points; beyond about three spacings from
    /// the interface no more than their sign counts.
    std::vector<double> values(const std::vector<brin::Vec2<double>>& points) const;

 private:
    struct Engine;
    std::unique_ptr<Engine> engine_;
};

/// The same of a volume.
class QUORBIN_EXPORT Flow3D {
 public:
    Flow3D(const FullLevelSet3D& start, Velocity3D velocity, double time = 0,
           const FlowOptions& options = {});
    ~Flow3D();
    Flow3D(Flow3D&& other) noexcept;
    Flow3D& operator=(Flow3D&& other) noexcept;

    bool advance(double time);

    double time() const;
    std::size_t steps() const;
    std::size_t bytes() const;

    FullLevelSet3D field(int refinement = 1) const;
    std::vector<double> values(const std::vector<brin::Vec3<double>>& points) const;

 private:
    struct Engine;
    std::unique_ptr<Engine> engine_;
};

/// The level set carried by a velocity from the time 0 on for a time ≥ 0, as a signed distance: a Flow's
/// field at its end. If progress ends it the grid is empty. Throws as Flow2D does.
QUORBIN_EXPORT FullLevelSet2D advect(const FullLevelSet2D& field, const Velocity2D& velocity, double time,
                                     const FlowOptions& options = {});
QUORBIN_EXPORT FullLevelSet3D advect(const FullLevelSet3D& field, const Velocity3D& velocity, double time,
                                     const FlowOptions& options = {});

}  // namespace quorbin
