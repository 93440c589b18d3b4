#include <quorbin.h>

#include <cmath>
#include <cstdio>

int main() {
    quorbin::FullLevelSet2D blob;
    blob.init(256, 256, 1.0, 1.0);
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) {
            const double angle = std::atan2(y - 128.0, x - 128.0);
            blob(x, y) =
                std::hypot(x - 128.0, y - 128.0) - 80.0 - 20.0 * std::cos(7 * angle);  // <= 0 is inside
        }
    for (int time = 0; time <= 300; time += 100) {
        if (time > 0) quorbin::curvatureFlow(blob, 100);
        for (const quorbin::Polygon& region : quorbin::contours(blob))
            std::printf("at the time %3d: area %7.1f, length %5.1f\n", time, quorbin::area(region),
                        quorbin::length(region.outline));
    }
}
