#include "flow.h"

#include <utility>

#include "common/flows/flow_parts.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/storage/dense_traits.h"

namespace {

using Parts = lset::detail::FlowParts<FullLevelSet2D, brin::Vec2<double>>;
using Front = Parts::Engine::Front;

void add(const quorbin::Ring& line, bool isClosed, Front& front) {
    const auto first = static_cast<int>(front.points.size());
    front.points.insert(front.points.end(), line.begin(), line.end());
    const auto last = static_cast<int>(front.points.size()) - 1;
    for (int i = first; i < last; ++i) front.simplices.push_back({i, i + 1});
    if (isClosed && last > first) front.simplices.push_back({last, first});
}

Front frontOf(const FullLevelSet2D& grid, quorbin::FlowOptions::Border border) {
    Front front;
    const auto addRegions = [&](const std::vector<quorbin::Polygon>& regions) {
        for (const quorbin::Polygon& region : regions) {
            add(region.outline, true, front);
            for (const quorbin::Ring& hole : region.holes) add(hole, true, front);
        }
    };
    if (border == quorbin::FlowOptions::Border::kOutside) {
        addRegions(quorbin::contours(grid));
    } else {
        const quorbin::OpenContours open = quorbin::openContours(grid);
        addRegions(open.regions);
        for (const quorbin::Ring& line : open.lines) add(line, false, front);
    }
    return front;
}

}  // namespace

namespace quorbin {

struct Flow2D::Engine : Parts::Engine {
    using Parts::Engine::Engine;
};

Flow2D::Flow2D(const FullLevelSet2D& start, Velocity2D velocity, double time, const FlowOptions& options)
    : engine_(Parts::start<Engine>(start, std::move(velocity), time, options, frontOf)) {}
Flow2D::~Flow2D() = default;
Flow2D::Flow2D(Flow2D&& other) noexcept = default;
Flow2D& Flow2D::operator=(Flow2D&& other) noexcept = default;

bool Flow2D::advance(double time) { return engine_->advance(time); }
double Flow2D::time() const { return engine_->time(); }
std::size_t Flow2D::steps() const { return engine_->steps(); }
std::size_t Flow2D::bytes() const { return engine_->bytes(); }
FullLevelSet2D Flow2D::field(int refinement) const { return Parts::fieldOf(*engine_, refinement); }
std::vector<double> Flow2D::values(const std::vector<brin::Vec2<double>>& points) const {
    return Parts::valuesOf(*engine_, points);
}

FullLevelSet2D advect(const FullLevelSet2D& field, const Velocity2D& velocity, double time,
                      const FlowOptions& options) {
    Flow2D flow(field, velocity, 0, options);
    return flow.advance(time) ? flow.field() : FullLevelSet2D();
}

Velocity2D velocityOnGrid(std::vector<brin::Vec2<double>> samples, int width, int height, double xSpace,
                          double ySpace) {
    return lset::detail::interpolatedVelocity<brin::Vec2<double>, 2>(std::move(samples),
                                                                     {{width, height}, {xSpace, ySpace}});
}

}  // namespace quorbin
