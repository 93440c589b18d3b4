// Finds a bright shape in a noisy picture: the outline moves outwards where the picture is more like the mean
// inside than like the mean outside (Chan and Vese 2001), and by its curvature, which keeps it short.
#include <quorbin.h>

#include <cmath>
#include <cstdio>
#include <random>

int main() {
    constexpr int kSize = 128;
    constexpr double kWeight = 0.2;
    quorbin::Image<double> picture(kSize, kSize, 1);
    std::mt19937 random(1);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            const bool isInShape = std::hypot(x - 70.0, y - 60.0) < 40 && std::hypot(x - 95.0, y - 60.0) > 20;
            picture(x, y) = (isInShape ? 0.7 : 0.3) + 0.2 * (random() / 4294967296.0 - 0.5);
        }

    quorbin::FullLevelSet2D outline;
    outline.init(kSize, kSize, 1.0, 1.0);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x)
            outline(x, y) = std::hypot(x - 64.0, y - 64.0) - 50;  // <= 0 is inside

    double inside = 0, outside = 0;  // the means
    const auto speed = [&](quorbin::LevelSet2D* levelSet, int x, int y, double* limit) {
        const double grey = picture(x, y);
        const double force = (grey - inside) * (grey - inside) - (grey - outside) * (grey - outside);
        *limit = 1 / (4 * kWeight + 2 * std::abs(force));  // stable, and at most half a pixel
        return kWeight * levelSet->getCurvature(x, y) + force;
    };
    for (int step = 0; step <= 600; ++step) {
        double sum[2] = {}, count[2] = {};
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                const int side = outline(x, y) <= 0 ? 0 : 1;
                sum[side] += picture(x, y);
                ++count[side];
            }
        inside = sum[0] / count[0];
        outside = sum[1] / count[1];
        if (step % 200 == 0)
            std::printf("after %3d steps: %4.0f pixels of mean %.2f inside, %.2f outside\n", step, count[0],
                        inside, outside);
        outline.moveWithCurvature(speed);
        if (step % 10 == 9) outline.ensureSignedDistance();
    }
}
