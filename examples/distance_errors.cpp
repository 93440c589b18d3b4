// How far the three distances are from the true one of a circle, and what they cost. The first two columns of
// errors are largest ones: near the circle (within three samples), and anywhere.
#include <quorbin.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace {

struct Method {
    const char* name;
    void (quorbin::FullLevelSet2D::*measure)();
};

void printRow(const Method& method, int size) {
    const double radius = 0.3 * size, centre = 0.5 * size - 0.2;
    const auto distance = [=](int x, int y) { return std::hypot(x - centre, y - centre) - radius; };
    quorbin::FullLevelSet2D grid;
    grid.init(size, size, 1.0, 1.0);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) grid(x, y) = distance(x, y);
    const auto start = std::chrono::steady_clock::now();
    (grid.*method.measure)();
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    double near = 0, anywhere = 0, sum = 0;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const double error = std::abs(grid(x, y) - distance(x, y));
            if (std::abs(distance(x, y)) <= 3) near = std::max(near, error);
            anywhere = std::max(anywhere, error);
            sum += error;
        }
    const double points = double(size) * size;
    std::printf("%-28s %5d   %8.4f   %8.4f   %8.4f   %6.0f\n", method.name, size, near, anywhere,
                sum / points, time.count() / points);
}

}  // namespace

int main() {
    const Method methods[] = {
        {"ensureSignedDistanceFMM", &quorbin::FullLevelSet2D::ensureSignedDistanceFMM},
        {"ensureSignedDistance", &quorbin::FullLevelSet2D::ensureSignedDistance},
        {"ensureSignedDistanceBrute", &quorbin::FullLevelSet2D::ensureSignedDistanceBrute}};
    std::printf("%-28s %5s   %8s   %8s   %8s   %6s\n", "", "size", "near", "anywhere", "mean", "ns/pt");
    for (const Method& method : methods)
        for (const int size : {64, 128, 256, 512}) printRow(method, size);
}
