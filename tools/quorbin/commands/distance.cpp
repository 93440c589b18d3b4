#include <memory>

#include "options.h"

namespace {

struct Distance : FieldCommand {
    std::string method = "fmm";

    void run() const {
        Result result(*this, "fl2d");
        FullLevelSet2D levelSet;
        readWithCrossing(levelSet);
        levelSet.ensureSignedDistanceFMM();
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
    command.add_option("--method", distance->method, "fmm: fast marching (default)")
        ->check(CLI::IsMember({"fmm"}))
        ->type_name("fmm");
}
