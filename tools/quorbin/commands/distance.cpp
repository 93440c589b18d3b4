#include <map>
#include <memory>

#include "failure.h"
#include "options.h"
#include "signed_distance.h"

namespace {

const std::map<std::string, DistanceMethod> kMethods{
    {"fmm", distanceByMarching}, {"segments", distanceBySegments}, {"brute", distanceByBruteForce}};

struct Distance : FieldCommand {
    std::string method = "fmm";

    void run() const {
        Result result(*this, "fl2d");
        FullLevelSet2D levelSet;
        readWithCrossing(levelSet);
        if (method != "fmm" && !hasEqualSpacings(levelSet))
            refuse("{}: its spacings are {} and {}; --method {} wants equal ones, fmm takes any", input,
                   levelSet.getXSpace(), levelSet.getYSpace(), method);
        kMethods.at(method)(levelSet);
        result.write({levelSet});
    }
};

}  // namespace

void addDistance(CLI::App& app) {
    auto distance = std::make_shared<Distance>();
    CLI::App& command =
        addCommand(app, "distance", "distance mask.png -o distance.npy",
                   "Writes the signed distance to the outline, negative inside, in units of the spacing.",
                   [distance] { distance->run(); });
    distance->addInput(command);
    distance->addOutput(command, true);
    command
        .add_option(
            "--method", distance->method,
            "fmm: fast marching, first order (default); segments: to the straight pieces of the outline, "
            "swept; brute: to the nearest of all pieces")
        ->check(CLI::IsMember(kMethods))
        ->type_name("fmm|segments|brute");
}
