#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <quorbin3d.h>

#include "dented_balls.h"
#include "measure.h"

int main(int argc, char** argv) {
    const int n = argc > 1 ? std::atoi(argv[1]) : 256;
    const double points = static_cast<double>(cube(n));
    const double empty = memory("VmRSS");
    FullLevelSet3D grid;
    grid.init(n, n, n, 1, 1, 1);
    fillBlobs(grid.data(), n);

    resetPeak();
    const double before = memory("VmRSS");
    const Timer timer;
    grid.ensureSignedDistanceFMM();
    const double seconds = timer.seconds(), cpu = timer.cpuSeconds();

    const double peak = memory("VmHWM");
    double sum = 0;
    for (std::size_t i = 0; i < cube(n); ++i) sum += std::abs(grid.data()[i]);
    // The second array of the object may become resident only in the march: counted from the empty process.
    std::printf(
        "quorbin  n %d  %.3f s (cpu %.3f)  peak RSS %.1f MB  %.2f bytes a point beyond the two arrays "
        "(resident before the march: %.1f)  mean distance %.9f\n",
        n, seconds, cpu, peak / 1e6, (peak - empty) / points - 16, (before - empty) / points, sum / points);
}
