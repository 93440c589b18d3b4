#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <vector>

#include "common/distance/set_operations.h"
#include "common/extraction/components.h"
#include "pieces.h"

namespace lset::detail {

inline double contentOf(const quorbin::Figures2D& figures) { return figures.area; }
inline double contentOf(const quorbin::Figures3D& figures) { return figures.volume; }

template <class Grid>
using ComponentsOf = Components<DenseTraits<Grid>::dimensions>;

template <class Grid>
ComponentsOf<Grid> insideComponents(const Grid& grid, const Stretch& stretch) {
    const double* const values = grid.data();
    return {DenseTraits<Grid>::sizes(grid), Adjacency::kFaces, [=](std::size_t i) { return values[i] <= 0; },
            stretch};
}

/// A part of a grid around a component with a row more all around, where the grid has one. valueOf(i) gives
/// the value of the point with this index in the grid. first becomes the part's first point.
template <class Grid, class Component, class Point, class ValueOf>
Grid cutOut(const Grid& grid, const Component& component, Point& first, const ValueOf& valueOf,
            Stretch stretch) {
    const auto sizes = DenseTraits<Grid>::sizes(grid);
    Point partSizes;
    for (std::size_t axis = 0; axis < sizes.size(); ++axis) {
        first[axis] = std::max(component.lowest[axis] - 1, 0);
        const int last = std::min(component.highest[axis] + 1, sizes[axis] - 1);
        partSizes[axis] = last - first[axis] + 1;
    }
    Grid part = gridOf<Grid>(partSizes, DenseTraits<Grid>::spacings(grid));
    const std::size_t count = pointCount(part);
    stretch.expect(count);
    for (std::size_t k = 0; k < count; ++k) {
        stretch.step();
        std::size_t left = k, i = 0, stride = 1;
        for (std::size_t axis = 0; axis < sizes.size(); ++axis) {
            const auto size = static_cast<std::size_t>(partSizes[axis]);
            i += (left % size + static_cast<std::size_t>(first[axis])) * stride;
            left /= size;
            stride *= static_cast<std::size_t>(sizes[axis]);
        }
        part.data()[k] = valueOf(i);
    }
    return part;
}

/// The figures of a component of the inside. None of the others is beside one of its points, so that its
/// contour stays as it is when these count as outside.
template <class Grid>
auto figuresOf(const Grid& grid, const ComponentsOf<Grid>& components, std::size_t number,
               const Stretch& stretch) {
    typename ComponentsOf<Grid>::Point first;
    const double* const values = grid.data();
    const Grid part = cutOut(
        grid, components.list()[number], first,
        [&](std::size_t i) {
            const bool isOther = values[i] <= 0 && components.of(i) != number;
            return isOther ? 1.0 : values[i];
        },
        stretch.part(0, 0.4));
    auto figures = toTheEnd(quorbin::measure(part, stretch.part(0.4, 1).function()));
    const auto h = DenseTraits<Grid>::spacings(grid);
    for (std::size_t axis = 0; axis < h.size(); ++axis) {
        const double from = h[axis] * first[axis];
        const int a = static_cast<int>(axis);
        figures.centroid[a] += from;
        figures.lowest[a] += from;
        figures.highest[a] += from;
    }
    return figures;
}

/// visit(number, stretch) for each component, with stretches as long as their boxes are large.
template <std::size_t dimensions, class Visit>
void forEachComponent(const Components<dimensions>& components, const Stretch& stretch, const Visit& visit) {
    const auto boxOf = [](const auto& component) {
        double points = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            points *= component.highest[axis] - component.lowest[axis] + 3.0;
        return points;
    };
    double all = 0, done = 0;
    for (const auto& component : components.list()) all += boxOf(component);
    for (std::size_t number = 0; number < components.list().size(); ++number) {
        const double next = done + boxOf(components.list()[number]);
        visit(number, stretch.part(done / all, next / all));
        done = next;
    }
}

template <class Piece, class Grid>
std::vector<Piece> piecesOf(const Grid& grid, const Stretch& stretch) {
    const ComponentsOf<Grid> components = insideComponents(grid, stretch.part(0, 0.3));
    std::vector<Piece> pieces;
    forEachComponent(components, stretch.part(0.3, 1), [&](std::size_t number, const Stretch& part) {
        const auto& component = components.list()[number];
        pieces.push_back({figuresOf(grid, components, number, part), component.points, {}});
        for (std::size_t axis = 0; axis < component.first.size(); ++axis)
            pieces.back().inside[static_cast<int>(axis)] = component.first[axis];
    });
    return pieces;
}

/// A copy of a grid in which the components for which isTurned is set have changed their side.
template <class Grid>
Grid withTurned(const Grid& grid, const ComponentsOf<Grid>& components, const std::vector<bool>& isTurned,
                const Stretch& stretch) {
    Grid result = copyOf(grid, stretch.part(0, 0.1));
    if (std::find(isTurned.begin(), isTurned.end(), true) == isTurned.end()) return result;
    inBlocks(pointCount(result), stretch.part(0.1, 0.2), [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) {
            const std::uint32_t number = components.of(i);
            if (number != components.kNone && isTurned[number])
                result.data()[i] = complementOf(result.data()[i]);
        }
    });
    reinitializedIfCrossed(result, stretch.part(0.2, 1));
    return result;
}

template <class Grid>
Grid largestPiecesOf(const Grid& grid, std::size_t count, const Stretch& stretch) {
    const ComponentsOf<Grid> components = insideComponents(grid, stretch.part(0, 0.2));
    const std::size_t all = components.list().size();
    std::vector<double> contents(all);
    forEachComponent(components, stretch.part(0.2, 0.5), [&](std::size_t number, const Stretch& part) {
        contents[number] = contentOf(figuresOf(grid, components, number, part));
    });
    std::vector<std::size_t> order(all);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return contents[a] > contents[b]; });
    std::vector<bool> isLeftOut(all, false);
    for (std::size_t k = std::min(count, all); k < all; ++k) isLeftOut[order[k]] = true;
    return withTurned(grid, components, isLeftOut, stretch.part(0.5, 1));
}

/// The area or volume of a component of the outside that does not reach the border: what it takes from a grid
/// that is inside elsewhere.
template <class Grid>
double contentOfHole(const Grid& grid, const ComponentsOf<Grid>& outside, std::size_t number,
                     const Stretch& stretch) {
    typename ComponentsOf<Grid>::Point first;
    const double* const values = grid.data();
    const Grid part = cutOut(
        grid, outside.list()[number], first,
        [&](std::size_t i) { return values[i] <= 0 || outside.of(i) == number ? values[i] : -1.0; },
        stretch.part(0, 0.4));
    const auto sizes = DenseTraits<Grid>::sizes(part);
    const auto h = DenseTraits<Grid>::spacings(part);
    double box = 1;
    for (std::size_t axis = 0; axis < h.size(); ++axis) box *= h[axis] * (sizes[axis] - 1);
    return box - contentOf(toTheEnd(quorbin::measure(part, stretch.part(0.4, 1).function())));
}

template <class Grid>
Grid withoutHoles(const Grid& grid, double size, const Stretch& stretch) {
    if (std::isnan(size)) throw std::invalid_argument("the size of a hole must be a number");
    const double* const values = grid.data();
    const auto sizes = DenseTraits<Grid>::sizes(grid);
    const ComponentsOf<Grid> outside(
        sizes, Adjacency::kCorners, [=](std::size_t i) { return !(values[i] <= 0); }, stretch.part(0, 0.2));
    std::vector<bool> isFilled(outside.list().size(), false);
    forEachComponent(outside, stretch.part(0.2, 0.5), [&](std::size_t number, const Stretch& part) {
        const auto& component = outside.list()[number];
        bool reachesBorder = false;
        for (std::size_t axis = 0; axis < sizes.size(); ++axis)
            reachesBorder |= component.lowest[axis] == 0 || component.highest[axis] == sizes[axis] - 1;
        isFilled[number] = !reachesBorder && contentOfHole(grid, outside, number, part) < size;
    });
    return withTurned(grid, outside, isFilled, stretch.part(0.5, 1));
}

}  // namespace lset::detail
