#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "common/flows/flow_engine.h"
#include "common/storage/dense_traits.h"
#include "flow.h"
#include "reinitialize.h"

namespace lset::detail {

/// What Flow2D and Flow3D have in common; frontOf(grid, border) is the front of a signed distance.
template <class Grid, class Point>
struct FlowParts {
    using Traits = DenseTraits<Grid>;
    static constexpr std::size_t dimensions = Traits::dimensions;
    using Engine = FlowEngine<Point, dimensions>;
    using Lattice = typename Engine::Lattice;

    static Lattice latticeOf(const Grid& grid) { return {Traits::sizes(grid), Traits::spacings(grid)}; }

    /// Made is an Engine by another name.
    template <class Made, class FrontOf>
    static std::unique_ptr<Made> start(const Grid& field, typename Tracing<Point>::Velocity velocity,
                                       double time, const quorbin::FlowOptions& options,
                                       const FrontOf& frontOf) {
        for (const int size : Traits::sizes(field))
            if (size < 4) throw std::invalid_argument("a flow needs at least four points along each axis");
        if (!std::isfinite(time)) throw std::invalid_argument("the time is not finite");
        if (!(options.tolerance > 0)) throw std::invalid_argument("the tolerance of a flow must be positive");
        Grid distance = copyOf(field, Stretch());
        quorbin::reinitialize(distance);
        return std::make_unique<Made>(
            latticeOf(field), std::vector<double>(distance.data(), distance.data() + pointCount(distance)),
            frontOf(distance, options.border), std::move(velocity), time, options);
    }

    static std::vector<double> valuesOf(const Engine& engine, const std::vector<Point>& points) {
        std::vector<double> values;
        values.reserve(points.size());
        for (const Point& point : points) values.push_back(engine.valueAt(point));
        return values;
    }

    static Grid fieldOf(const Engine& engine, int refinement) {
        const Lattice& lattice = engine.lattice();
        if (refinement < 1) throw std::invalid_argument("a refinement must be at least 1");
        Lattice fine = lattice;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            fine.sizes[axis] = (lattice.sizes[axis] - 1) * refinement + 1;
            fine.h[axis] = lattice.h[axis] / refinement;
        }
        Grid grid = gridOf<Grid>(fine.sizes, fine.h);
        engine.fill(fine, grid.data());
        try {
            quorbin::reinitialize(grid);
        } catch (const quorbin::NoInterface&) {  // it has left the grid: the values are all of one side
        }
        return grid;
    }
};

/// Samples on a grid as a velocity everywhere.
template <class Point, std::size_t dimensions>
auto interpolatedVelocity(std::vector<Point> samples, const FlowLattice<Point, dimensions>& lattice) {
    for (std::size_t axis = 0; axis < dimensions; ++axis)
        if (lattice.sizes[axis] < 1 || !(lattice.h[axis] > 0) || !std::isfinite(lattice.h[axis]))
            throw std::invalid_argument(
                "a velocity on a grid needs points, and spacings that are positive and finite");
    if (samples.size() != lattice.count())
        throw std::invalid_argument("a velocity on a grid needs as many samples as the grid has points");
    for (const Point& sample : samples)
        if (!std::isfinite(dot(sample, sample)))
            throw std::invalid_argument("a velocity on a grid must be finite everywhere");
    return [samples = std::move(samples), lattice](double, const Point* points, std::size_t count,
                                                   Point* velocities) {
        for (std::size_t i = 0; i < count; ++i)
            velocities[i] = interpolated<Point>(lattice, samples, points[i]);
    };
}

}  // namespace lset::detail
