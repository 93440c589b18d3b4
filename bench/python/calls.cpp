// calls march|contours FILE SIDE TIMES: the least seconds that a call takes on a square of doubles from a
// file, with its grid made and filled anew each time where the call changes it. Written for
// bench/python/ratios.py.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <quorbin2d.h>

namespace {

template <class Call>
double leastSeconds(int times, Call call) {
    double least = 1e300;
    for (int i = 0; i < times; ++i) {
        const auto start = std::chrono::steady_clock::now();
        call();
        least =
            std::min(least, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return least;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    const std::string what = argv[1];
    const int side = std::atoi(argv[3]), times = std::atoi(argv[4]);
    const auto count = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    std::vector<double> values(count);
    std::ifstream file(argv[2], std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(8 * count))) return 1;
    if (what == "march") {
        std::printf("%.9f\n", leastSeconds(times, [&] {
                        FullLevelSet2D grid;
                        grid.init(side, side, 1, 1);
                        std::copy(values.begin(), values.end(), grid.data());
                        grid.ensureSignedDistanceFMM();
                    }));
    } else {
        FullLevelSet2D grid;
        grid.init(side, side, 1, 1);
        std::copy(values.begin(), values.end(), grid.data());
        std::printf("%.9f\n", leastSeconds(times, [&] { quorbin::contours(grid); }));
    }
}
