#include <map>
#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "fields/distance.h"
#include "io/failure.h"

namespace quorbin::tool {

namespace {

const std::map<std::string, DistanceMethod<FullLevelSet2D>> kMethods{{"projection", distanceByProjection},
                                                                     {"fmm", distanceByMarching},
                                                                     {"segments", distanceBySegments},
                                                                     {"brute", distanceByBruteForce}};
const std::map<std::string, DistanceMethod<FullLevelSet3D>> kMethodsInVolumes{
    {"projection", distanceByProjection}, {"fmm", distanceByMarching}};

struct Distance : FieldCommand {
    std::string method = "projection";

    void run() const {
        if (isGivenVolume()) return runOnVolume();
        Result result(*this, Kind::kPicture, "fl2d");
        FullLevelSet2D levelSet;
        readWithCrossing(levelSet);
        if ((method == "segments" || method == "brute") && !hasEqualSpacings(levelSet))
            refuse("{}: its spacings are {} and {}; --method {} wants equal ones, projection takes any",
                   input, levelSet.getXSpace(), levelSet.getYSpace(), method);
        measure(kMethods.at(method), levelSet);
        result.write(PictureDocument{levelSet});
    }

 private:
    template <class Grid>
    void measure(DistanceMethod<Grid> makeDistance, Grid& levelSet) const {
        smoothIfMask(levelSet);
        Progress progress(!quiet);
        makeDistance(levelSet, progress.function());
    }

    void runOnVolume() const {
        const auto found = kMethodsInVolumes.find(method);
        if (found == kMethodsInVolumes.end())
            refuse("{}: is a volume, whose distances are by --method projection or fmm", input);
        Result result(*this, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        const io::Image volume = readWithCrossing(levelSet);
        measure(found->second, levelSet);
        result.write(VolumeDocument{levelSet, volume.placement});
    }
};

}  // namespace

void addDistance(CLI::App& app) {
    auto distance = std::make_shared<Distance>();
    CLI::App& command = addCommand(app, "distance", "distance mask.png -o distance.npy",
                                   "Writes the signed distance to the outline, or to the surface in a "
                                   "volume, negative inside, in units\n"
                                   "of the spacing. A PNG shows it in colours, with the outline.",
                                   [distance] { runEach(*distance); });
    distance->addInput(command);
    distance->addVolume(command);
    distance->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    distance->addPixels(command);
    command
        .add_option("--method", distance->method,
                    "projection: to the outline that cubics through the samples have, and from the nearest "
                    "foot (default); fmm: fast marching, first order; segments: to the straight pieces of "
                    "the outline, swept; brute: to the nearest of all pieces; of volumes projection and fmm")
        ->check(CLI::IsMember(kMethods))
        ->type_name("projection|fmm|segments|brute");
}

}  // namespace quorbin::tool
