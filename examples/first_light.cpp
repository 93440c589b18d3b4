#include <quorbin2d.h>

#include <cmath>
#include <cstdio>

int main() {
    FullLevelSet2D blob;
    blob.init(256, 256, 1.0, 1.0);
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) {
            const double angle = std::atan2(y - 128.0, x - 128.0);
            blob(x, y) =
                std::hypot(x - 128.0, y - 128.0) - 80.0 - 20.0 * std::cos(7 * angle);  // <= 0 is inside
        }
    blob.ensureSignedDistance();
    for (int step = 0; step <= 1200; ++step) {
        if (step % 400 == 0) {
            std::vector<brin::Vec2<double>> points;
            std::vector<std::pair<int, int>> segments;
            blob.getLinesUnique(points, segments);
            for (const std::vector<int>& polygon : getPolygons(points, segments))
                std::printf("after %4d steps: area %7.1f, length %5.1f\n", step, area(points, polygon),
                            length(points, polygon));
        }
        blob.moveAlongCurvature();
        if (step % 10 == 9) blob.ensureSignedDistance();
    }
}
