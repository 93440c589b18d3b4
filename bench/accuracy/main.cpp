#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "flows.h"

namespace {

using namespace accuracy;

const auto distances2 = libraryDistances<FullLevelSet2D>();
const auto distances3 = libraryDistances<FullLevelSet3D>();
const auto motions2 = libraryMotions<FullLevelSet2D>();
const auto motions3 = libraryMotions<FullLevelSet3D>();

/// The part of the methods that are given a time rather than single steps.
template <class Methods>
Methods flowsOf(Methods methods) {
    Methods flows;
    for (auto& method : methods)
        if (method.name.rfind("curvatureFlow", 0) == 0) flows.push_back(method);
    return flows;
}

void printDrift(bool isSmall) {
    drift(distances2, isSmall ? 64 : 128);
    drift(distances3, isSmall ? 24 : 64);
}

void printDistances(bool isSmall) {
    for (const int n : isSmall ? std::vector{64, 128} : std::vector{128, 256, 512, 1024})
        circleDistances(distances2, n);
    for (const int n : isSmall ? std::vector{32} : std::vector{32, 64, 128}) circleDistances(distances3, n);
    for (const int n : isSmall ? std::vector{128} : std::vector{128, 256, 512})
        ellipsoidDistances(distances2, n);
    for (const int n : isSmall ? std::vector{32} : std::vector{64, 128}) ellipsoidDistances(distances3, n);
}

void printSlopes(bool isSmall) {
    for (const double slope : {0.01, 1.0, 100.0})
        for (const double stretch : {1.0, 10.0})
            circleDistances(distances2, isSmall ? 128 : 256, slope, stretch);
}

void printCorners(bool isSmall) {
    squareCorners(distances2, isSmall ? 64 : 128);
    thinRods(distances3, isSmall ? 24 : 48);
}

void printCurvature(bool isSmall) {
    for (const double stretch : {1.0, 2.0, 3.0}) {
        roundCurvature(motions2, isSmall ? 64 : 128, stretch);
        pointedCurvature(motions2, isSmall ? 64 : 128, stretch);
    }
    for (const double stretch : {1.0, 3.0}) roundCurvature(motions3, isSmall ? 24 : 64, stretch);
}

void printOrder(bool isSmall) {
    for (const int n : isSmall ? std::vector{32, 64} : std::vector{32, 64, 128, 256})
        roundCurvature(isSmall ? flowsOf(motions2) : motions2, n);
    for (const int n : isSmall ? std::vector{24} : std::vector{24, 48, 96})
        roundCurvature(flowsOf(motions3), n);
}

void printSize(bool isSmall) { constantSize(isSmall ? 64 : 128, isSmall ? 32 : 64); }

void printPinch(bool isSmall) { pinch(flowsOf(motions3), isSmall ? 48 : 96); }

void printTimes(bool isSmall) {
    reinitializeTimes(isSmall ? 128 : 1024, isSmall ? 32 : 128);
    bandStepTimes(isSmall ? 32 : 256);
    longFlowTimes(isSmall ? 64 : 1024);
}

const struct {
    const char* name;
    void (*print)(bool isSmall);
} kFlows[] = {{"drift", printDrift},        {"distances", printDistances}, {"slopes", printSlopes},
              {"corners", printCorners},    {"curvature", printCurvature}, {"order", printOrder},
              {"constant-size", printSize}, {"pinch", printPinch},         {"carried", carriedShapes},
              {"times", printTimes}};

/// Whether there is a flow of that name, which is then measured; all of them if the name is empty.
bool print(const std::string& name, bool isSmall) {
    bool found = false;
    for (const auto& flow : kFlows)
        if (name.empty() || name == flow.name) {
            flow.print(isSmall);
            found = true;
        }
    return found;
}

}  // namespace

/// quorbin_accuracy [--small] [flow ...]: measures flows with known answers, all of them if none is named,
/// and prints a JSON object a line. --small takes seconds and tells that everything runs, not how good it is.
int main(int argc, char** argv) try {
    std::vector<std::string> names(argv + 1, argv + argc);
    const bool isSmall = !names.empty() && names.front() == "--small";
    if (isSmall) names.erase(names.begin());
    if (names.empty()) names.emplace_back();
    for (const std::string& name : names)
        if (!print(name, isSmall)) {
            std::fprintf(stderr, "There is no flow %s. There are:", name.c_str());
            for (const auto& flow : kFlows) std::fprintf(stderr, " %s", flow.name);
            std::fprintf(stderr, "\n");
            return 2;
        }
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
