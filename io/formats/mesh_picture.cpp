#include "../mesh_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "../png_image.h"

namespace quorbin::io {

namespace {

using Vec3 = brin::Vec3<double>;

constexpr int kSize = 800, kSamples = 3, kSide = kSize * kSamples;

Vec3 unitOf(const Vec3& v) {
    const double length = std::sqrt(dot(v, v));
    return length > 0 ? v / length : v;
}

/// The axes of the picture in the world: right, up, and towards the eye.
struct Camera {
    explicit Camera(const View& view) {
        const double azimuth = view.azimuth * M_PI / 180, elevation = view.elevation * M_PI / 180;
        eye = Vec3(std::sin(azimuth) * std::cos(elevation), std::cos(azimuth) * std::cos(elevation),
                   std::sin(elevation));
        right = Vec3(-std::cos(azimuth), std::sin(azimuth), 0);
        up = cross(eye, right);
    }
    Vec3 operator()(const Vec3& v) const { return {dot(v, right), dot(v, up), dot(v, eye)}; }

    Vec3 right, up, eye;
};

struct Sample {
    float depth = -std::numeric_limits<float>::infinity();
    float shade = 0;  // 0 is nothing, negative the inner side
};

double shadeOf(const Vec3& normal) {
    static const Vec3 light = unitOf({-0.4, 0.6, 0.9});
    const bool isInner = normal.z < 0;
    const Vec3 facing = isInner ? normal * -1.0 : normal;
    const double shade = 0.35 + 0.65 * std::max(0.0, dot(facing, light));
    return isInner ? -shade : shade;
}

/// Fills the samples of a triangle whose corners are in picture units: x to the right, y down, z towards the
/// eye.
void fillTriangle(const std::array<Vec3, 3>& corner, const std::array<Vec3, 3>& normal,
                  std::vector<Sample>& samples) {
    const auto [a, b, c] = corner;
    const double twiceArea = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (twiceArea == 0) return;
    const auto first = [](double v) { return std::max(0, static_cast<int>(std::ceil(v))); };
    const auto last = [](double v) { return std::min(kSide - 1, static_cast<int>(std::floor(v))); };
    for (int y = first(std::min({a.y, b.y, c.y})); y <= last(std::max({a.y, b.y, c.y})); ++y)
        for (int x = first(std::min({a.x, b.x, c.x})); x <= last(std::max({a.x, b.x, c.x})); ++x) {
            const double v = ((x - a.x) * (c.y - a.y) - (y - a.y) * (c.x - a.x)) / twiceArea;
            const double w = ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x)) / twiceArea;
            const double u = 1 - v - w;
            if (u < 0 || v < 0 || w < 0) continue;
            Sample& sample = samples[static_cast<std::size_t>(y) * kSide + static_cast<std::size_t>(x)];
            const auto depth = static_cast<float>(u * a.z + v * b.z + w * c.z);
            if (depth <= sample.depth) continue;
            sample.depth = depth;
            sample.shade = static_cast<float>(shadeOf(unitOf(normal[0] * u + normal[1] * v + normal[2] * w)));
        }
}

std::vector<Sample> render(const MeshDocument& mesh, const Camera& camera) {
    constexpr double kMargin = 0.04;
    std::vector<Vec3> points;
    points.reserve(mesh.vertices.size());
    for (const Vec3& v : mesh.vertices) points.push_back(camera(v));
    Vec3 low = points.front(), high = points.front();
    for (const Vec3& p : points) {
        low = Vec3(std::min(low.x, p.x), std::min(low.y, p.y), low.z);
        high = Vec3(std::max(high.x, p.x), std::max(high.y, p.y), high.z);
    }
    const double extent = std::max({high.x - low.x, high.y - low.y, 1e-300});
    const double scale = kSide * (1 - 2 * kMargin) / extent;
    for (Vec3& p : points)
        p = Vec3(kSide / 2.0 + scale * (p.x - (low.x + high.x) / 2),
                 kSide / 2.0 - scale * (p.y - (low.y + high.y) / 2), scale * p.z);

    std::vector<Sample> samples(static_cast<std::size_t>(kSide) * kSide);
    for (const gpoint3& t : mesh.triangles) {
        std::array<Vec3, 3> corner, normal;
        const int indices[3] = {t.first, t.second, t.third};
        for (std::size_t k = 0; k < 3; ++k) {
            corner[k] = points[static_cast<std::size_t>(indices[k])];
            normal[k] = camera(mesh.normals[static_cast<std::size_t>(indices[k])]);
        }
        fillTriangle(corner, normal, samples);
    }
    return samples;
}

}  // namespace

void writeMeshPicture(const MeshDocument& mesh, const View& view, OutputFile& out) {
    static constexpr double kOuter[3] = {236, 205, 170}, kInner[3] = {110, 125, 150}, kNothing = 255;
    const std::vector<Sample> samples = render(mesh, Camera(view));
    brin::Image<unsigned char> picture(kSize, kSize, 3);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x)
            for (int channel = 0; channel < 3; ++channel) {
                double sum = 0;
                for (int i = 0; i < kSamples * kSamples; ++i) {
                    const int row = kSamples * y + i / kSamples, column = kSamples * x + i % kSamples;
                    const double shade =
                        samples[static_cast<std::size_t>(row) * kSide + static_cast<std::size_t>(column)]
                            .shade;
                    sum += shade > 0   ? shade * kOuter[channel]
                           : shade < 0 ? -shade * kInner[channel]
                                       : kNothing;
                }
                picture(x, y, channel) =
                    static_cast<unsigned char>(std::min(255.0, sum / (kSamples * kSamples)));
            }
    writePng(picture, out);
}

}  // namespace quorbin::io
