#pragma once

#include "common/states.h"
#include "common/watch.h"
#include "heap/march_queue.h"

namespace lset::detail {

/// Where a point lies as seen from its neighbour: a step (1 or −1) along an axis, known when the code is
/// compiled.
template <int axis, int step>
struct From {};

/// Fast marching (Sethian 1996) over one side of the interface, outward from the ids of its front points on
/// that side. What a point is, is the grid's affair:
///
///     id(p), point(id)
///     forEachNeighbour(p, visit)     visit(q, From<axis, step>()) for each neighbour in the grid, with p as
///                                    seen from q
///     isFar(q), isTrial(q)
///     reach(q, side)                 makes q a trial point; its tentative distance from all known
///                                    neighbours
///     reachFrom(q, from, side)       the same where p has just become known
///     improve(q, from, side, last)   its next tentative distance, from the last one, once p has become known
///                                    too
///     keepHandle(q, handle), handle(q)
///     accept(p, side, distance)
///     spreads(distance)              whether the neighbours of a point at this distance are looked at
///
/// The watch steps with every point of the front and every one that is accepted.
///
/// A grid takes visit by reference: a copy would be read back at once in one piece, for which the processor
/// waits until all that has been written before is in the cache. That took a quarter of the time.
template <class Grid, class Ids, class Watch = const Unwatched>
void march(Grid& grid, const Ids& front, State side, MarchQueue& queue, Watch&& watch = Unwatched()) {
    for (const int id : front) {
        watch.step();
        grid.forEachNeighbour(grid.point(id), [&](auto q, auto) {
            if (!grid.isFar(q)) return;
            const double distance = grid.reach(q, side);
            grid.keepHandle(q, queue.insert(grid.id(q), distance));
        });
    }
    while (!queue.empty()) {
        const auto p = grid.point(queue.id(0));
        const double distance = queue.value(0);
        queue.removeTop();
        grid.accept(p, side, distance);
        watch.step();
        if (!grid.spreads(distance)) continue;
        grid.forEachNeighbour(
            p, [&](auto q, auto from) __attribute__((always_inline)) {
                if (grid.isFar(q)) {
                    const double first = grid.reachFrom(q, from, side);
                    grid.keepHandle(q, queue.insert(grid.id(q), first));
                } else if (grid.isTrial(q)) {
                    const MarchQueue::Handle handle = grid.handle(q);
                    const double last = queue.valueOf(handle);
                    const double next = grid.improve(q, from, side, last);
                    if (next != last) queue.update(handle, next);
                }
            });
    }
}

}  // namespace lset::detail
