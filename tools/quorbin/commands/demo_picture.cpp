#include "commands/demo_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

namespace quorbin::tool {

namespace {

double stroke(double x, double y, double x0, double y0, double x1, double y1, double halfWidth) {
    const double dx = x1 - x0, dy = y1 - y0;
    const double t = std::clamp(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    return std::hypot(x - x0 - t * dx, y - y0 - t * dy) - halfWidth;
}

double ring(double x, double y, double cx, double cy, double radius, double halfWidth) {
    return std::abs(std::hypot(x - cx, y - cy) - radius) - halfWidth;
}

/// A circle whose radius goes up and down around it.
double blob(double x, double y, double cx, double cy, double radius, double lobes, double depth) {
    const double angle = std::atan2(y - cy, x - cx);
    return std::hypot(x - cx, y - cy) - radius * (1 + depth * std::cos(lobes * angle));
}

}  // namespace

double demoShapes(double x, double y) {
    constexpr double kHalfWidth = 15;
    const double q =
        std::min(ring(x, y, 100, 130, 55, kHalfWidth), stroke(x, y, 112, 142, 162, 192, kHalfWidth));
    const double uBowl = y > 130 ? ring(x, y, 255, 130, 48, kHalfWidth) : 1e9;
    const double u = std::min(
        {uBowl, stroke(x, y, 207, 80, 207, 130, kHalfWidth), stroke(x, y, 303, 80, 303, 130, kHalfWidth)});
    const double b =
        std::min(ring(x, y, 410, 145, 40, kHalfWidth), stroke(x, y, 370, 50, 370, 185, kHalfWidth));
    const double blobs = std::min({blob(x, y, 120, 380, 68, 5, 0.22), blob(x, y, 285, 350, 62, 3, 0.28),
                                   blob(x, y, 440, 330, 45, 0, 0), blob(x, y, 385, 455, 40, 2, 0.25)});
    return std::min({q, u, b, blobs});
}

io::Image demoPicture() {
    constexpr int kSize = 512;
    constexpr double kDark = 75, kBright = 180, kNoise = 24, kBlur = 2;
    // The standard's distributions differ from one library to the next, its generators do not.
    std::mt19937 random(2026);
    const auto normal = [&] {
        double sum = -6;
        for (int i = 0; i < 12; ++i) sum += static_cast<double>(random()) / 4294967296.0;
        return sum;
    };
    io::Image picture;
    picture.format = "demo";
    picture.width = picture.height = kSize;
    picture.samples.reserve(static_cast<std::size_t>(kSize) * kSize);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            const double inside = std::clamp(0.5 - demoShapes(x, y) / (2 * kBlur), 0.0, 1.0);
            const double grey = kDark + (kBright - kDark) * inside + kNoise * normal();
            picture.samples.push_back(std::round(std::clamp(grey, 0.0, 255.0)));
        }
    return picture;
}

}  // namespace quorbin::tool
