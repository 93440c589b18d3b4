#include <cstdio>
#include <cstdlib>
#include <vector>

#include <quorbin3d.h>

#include "dented_balls.h"
#include "measure.h"

int main(int argc, char** argv) {
    constexpr int kSteps = 20;
    const int n = argc > 1 ? std::atoi(argv[1]) : 256;
    FastLevelSet3D band;
    {
        FullLevelSet3D grid;
        grid.init(n, n, n, 1, 1, 1);
        fillBlobs(grid.data(), n);
        const Timer timer;
        band = quorbin::bandOf(grid);
        std::printf("quorbin  n %d\n    band of a grid %.1f ms  points %d\n", n, timer.seconds() * 1e3,
                    band.size());
    }
    for (const char* name : {"warm-up", "curvature"}) {
        FastLevelSet3D moved = band;
        resetPeak();
        const double before = memory("VmRSS");
        const Timer timer;
        for (int step = 0; step < kSteps; ++step) {
            moved.moveAlongCurvature();
            moved.ensureSignedDistanceFMM();
        }
        const double ms = timer.seconds() * 1e3, cpu = timer.cpuSeconds() * 1e3;
        std::printf(
            "    %-14s %.1f ms, each %.2f (cpu %.1f)  points after %d  peak RSS %.1f MB, %.1f over the "
            "start\n",
            name, ms, ms / kSteps, cpu, moved.size(), memory("VmHWM") / 1e6,
            (memory("VmHWM") - before) / 1e6);
    }
    std::vector<brin::Vec3<double>> vertices, normals;
    std::vector<gpoint3> triangles;
    const Timer timer;
    quorbin::getTrianglesUnique(band, vertices, normals, triangles);
    std::printf("    mesh           %.1f ms  vertices %zu  triangles %zu\n", timer.seconds() * 1e3,
                vertices.size(), triangles.size());
}
