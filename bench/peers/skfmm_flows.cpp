#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

#include "accuracy/grids.h"
#include "peer_flows.h"

namespace {

const char* const kField = "build/peers/field.raw";

/// Python, with scikit-fmm loaded: fields go to it and back in a file, orders and times through pipes.
class Python {
 public:
    Python() {
        int requests[2], answers[2];
        if (pipe(requests) != 0 || pipe(answers) != 0) throw std::runtime_error("there are no pipes");
        const pid_t child = fork();
        if (child < 0) throw std::runtime_error("there is no process for Python");
        if (child == 0) {
            dup2(requests[0], STDIN_FILENO);
            dup2(answers[1], STDOUT_FILENO);
            for (const int end : {requests[0], requests[1], answers[0], answers[1]}) close(end);
            execl("/usr/bin/python3", "python3", "bench/peers/skfmm_distance.py", kField, nullptr);
            _exit(1);
        }
        close(requests[0]);
        close(answers[1]);
        requests_ = fdopen(requests[1], "w");
        answers_ = fdopen(answers[0], "r");
    }
    Python(const Python&) = delete;
    Python& operator=(const Python&) = delete;
    ~Python() {
        std::fclose(requests_);  // the end of its input ends it
        std::fclose(answers_);
    }

    double secondsOf(int order, const std::string& sizes) {
        std::fprintf(requests_, "%d %s\n", order, sizes.c_str());
        std::fflush(requests_);
        double seconds = 0;
        if (std::fscanf(answers_, "%lf", &seconds) != 1) throw std::runtime_error("Python has ended");
        return seconds;
    }

 private:
    std::FILE* requests_ = nullptr;
    std::FILE* answers_ = nullptr;
};

std::string sizes(const FullLevelSet2D& grid) {
    return std::to_string(grid.getHeight()) + ' ' + std::to_string(grid.getWidth());
}
std::string sizes(const FullLevelSet3D& grid) {
    return std::to_string(grid.getDepth()) + ' ' + std::to_string(grid.getHeight()) + ' ' +
           std::to_string(grid.getWidth());
}

template <class Grid>
void measure(Python& python) {
    const auto distance = [&python](Grid& grid, int order) {
        std::streamsize bytes = 0;
        accuracy::visitSamples(grid, [&](double, const accuracy::Point&) { bytes += sizeof(double); });
        std::ofstream(kField, std::ios::binary).write(reinterpret_cast<const char*>(grid.data()), bytes);
        const double seconds = python.secondsOf(order, sizes(grid));
        std::ifstream(kField, std::ios::binary).read(reinterpret_cast<char*>(grid.data()), bytes);
        return seconds;
    };
    measurePeer<Grid>({{"scikit-fmm, order 1", false, [&](Grid& grid) { return distance(grid, 1); }},
                       {"scikit-fmm, order 2", false, [&](Grid& grid) { return distance(grid, 2); }}},
                      {});
}

}  // namespace

int main() {
    Python python;
    measure<FullLevelSet2D>(python);
    measure<FullLevelSet3D>(python);
}
