#pragma once

#include <chrono>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <string>

/// A line of /proc/self/status in bytes: VmRSS is what is resident now, VmHWM the most since resetPeak().
inline double memory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == name + ":") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    throw std::runtime_error("no " + name);
}

/// Forgets the peak of the setup, which would hide that of the part measured.
inline void resetPeak() {
    std::ofstream clear("/proc/self/clear_refs");
    if (!(clear << 5 << std::flush)) throw std::runtime_error("the peak cannot be reset");
}

/// Wall time and processor time: they part where another program holds the core.
class Timer {
 public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }
    double cpuSeconds() const { return static_cast<double>(std::clock() - cpu_) / CLOCKS_PER_SEC; }

 private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::clock_t cpu_ = std::clock();
};
