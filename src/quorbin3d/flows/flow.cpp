#include "flow.h"

#include <utility>

#include "common/flows/flow_parts.h"
#include "quorbin3d/mesh.h"
#include "quorbin3d/storage/dense_traits.h"

namespace {

using Parts = lset::detail::FlowParts<FullLevelSet3D, brin::Vec3<double>>;
using Front = Parts::Engine::Front;

Front frontOf(const FullLevelSet3D& grid, quorbin::FlowOptions::Border border) {
    quorbin::Mesh surface = quorbin::mesh(grid, {border == quorbin::FlowOptions::Border::kOutside});
    Front front;
    front.points = std::move(surface.vertices);
    front.simplices.reserve(surface.triangles.size());
    for (const gpoint3& triangle : surface.triangles)
        front.simplices.push_back({triangle.first, triangle.second, triangle.third});
    return front;
}

}  // namespace

namespace quorbin {

struct Flow3D::Engine : Parts::Engine {
    using Parts::Engine::Engine;
};

Flow3D::Flow3D(const FullLevelSet3D& start, Velocity3D velocity, double time, const FlowOptions& options)
    : engine_(Parts::start<Engine>(start, std::move(velocity), time, options, frontOf)) {}
Flow3D::~Flow3D() = default;
Flow3D::Flow3D(Flow3D&& other) noexcept = default;
Flow3D& Flow3D::operator=(Flow3D&& other) noexcept = default;

bool Flow3D::advance(double time) { return engine_->advance(time); }
double Flow3D::time() const { return engine_->time(); }
std::size_t Flow3D::steps() const { return engine_->steps(); }
std::size_t Flow3D::bytes() const { return engine_->bytes(); }
FullLevelSet3D Flow3D::field(int refinement) const { return Parts::fieldOf(*engine_, refinement); }
std::vector<double> Flow3D::values(const std::vector<brin::Vec3<double>>& points) const {
    return Parts::valuesOf(*engine_, points);
}

FullLevelSet3D advect(const FullLevelSet3D& field, const Velocity3D& velocity, double time,
                      const FlowOptions& options) {
    Flow3D flow(field, velocity, 0, options);
    return flow.advance(time) ? flow.field() : FullLevelSet3D();
}

Velocity3D velocityOnGrid(std::vector<brin::Vec3<double>> samples, int width, int height, int depth,
                          double xSpace, double ySpace, double zSpace) {
    return lset::detail::interpolatedVelocity<brin::Vec3<double>, 3>(
        std::move(samples), {{width, height, depth}, {xSpace, ySpace, zSpace}});
}

}  // namespace quorbin
