#include "quorbin2d/extraction/nested_rings.h"

#include <algorithm>
#include <cstddef>

#include "quorbin2d/contour.h"
#include "quorbin2d/extraction/scaled_line.h"

namespace lset::detail {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// For each ring the region that it belongs to, as outline or as hole.
struct Nesting {
    std::vector<std::size_t> region;
    std::vector<bool> isHole;
    std::size_t regionCount = 0;
};

/// A ring encloses nothing to the left of its first crossing in the order of rows. So it is the outline of a
/// region if it enters the inside there; and if it is a hole, the crossing before it in the row belongs to
/// the outline of the region around it, or to another hole of that. Either has been met already.
Nesting nest(const RingTrace& trace, const std::vector<std::size_t>& ringOf, std::size_t ringCount) {
    Nesting nesting{std::vector<std::size_t>(ringCount, kNone), std::vector<bool>(ringCount), 0};
    std::size_t unbounded = kNone;
    std::size_t around = kNone;  // the region to the right of the crossing before, if that is in the row
    int row = 0;
    for (const RingTrace::RowCrossing& crossing : trace.rowCrossings) {
        if (crossing.row != row) around = kNone;
        row = crossing.row;
        const std::size_t ring = ringOf[static_cast<std::size_t>(crossing.point)];
        if (ring == kNone) {  // of a contour that does not close: what lies beyond it is in no region
            around = kNone;
            continue;
        }
        if (nesting.region[ring] == kNone) {
            nesting.isHole[ring] = !crossing.entersInside;
            std::size_t& region = nesting.region[ring];
            if (crossing.entersInside) {
                region = nesting.regionCount++;
            } else if (around != kNone) {
                region = around;
            } else {
                if (unbounded == kNone) unbounded = nesting.regionCount++;
                region = unbounded;
            }
        }
        around = crossing.entersInside ? nesting.region[ring] : kNone;
    }
    return nesting;
}

quorbin::Ring ringOfPoints(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& indices,
                           double xSpace, double ySpace) {
    ScaledLine ring(xSpace, ySpace, indices.size());
    for (const int i : indices) ring.add(points[static_cast<std::size_t>(i)]);
    return ring.takeRing();
}

}  // namespace

std::vector<quorbin::Polygon> nestedRings(RingTrace& trace, double xSpace, double ySpace, Stretch stretch) {
    const std::vector<std::vector<int>> chains = getPolygons(trace.points, trace.segments);
    std::vector<std::size_t> ringOf(trace.points.size(), kNone);
    for (std::size_t ring = 0; ring < chains.size(); ++ring)
        for (const int point : chains[ring]) ringOf[static_cast<std::size_t>(point)] = ring;
    const Nesting nesting = nest(trace, ringOf, chains.size());

    std::vector<quorbin::Polygon> polygons(nesting.regionCount);
    stretch.expect(trace.points.size());
    for (std::size_t i = 0; i < chains.size(); ++i) {
        stretch.step(chains[i].size());
        if (quorbin::area(trace.points, chains[i]) == 0) continue;
        quorbin::Ring ring = ringOfPoints(trace.points, chains[i], xSpace, ySpace);
        quorbin::Polygon& polygon = polygons[nesting.region[i]];
        if (nesting.isHole[i])
            polygon.holes.push_back(std::move(ring));
        else
            polygon.outline = std::move(ring);
    }
    const auto isNothing = [](const quorbin::Polygon& p) { return p.outline.empty() && p.holes.empty(); };
    polygons.erase(std::remove_if(polygons.begin(), polygons.end(), isNothing), polygons.end());
    return polygons;
}

}  // namespace lset::detail
