#include <memory>
#include <string>
#include <type_traits>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/result_of.h"
#include "fields/distance.h"

namespace quorbin::tool {

namespace {

struct Combine : FieldCommand {
    enum class Operation { kNone, kUnion, kIntersect, kSubtract } operation = Operation::kNone;
    std::string second;

    void run() const {
        if (operation == Operation::kNone) refuse("combine: give --union, --intersect or --subtract");
        runOnField(*this, [this](auto& levelSet) {
            std::decay_t<decltype(levelSet)> other;
            readOther(second, other);
            requireSameGrid(*this, levelSet, second, other);
            for (auto* one : {&levelSet, &other})
                if (isMask(*one)) distanceByMarching(*one);
            levelSet = withBar(!quiet, [&](const quorbin::Progress& progress) {
                return operation == Operation::kUnion       ? unite(levelSet, other, progress)
                       : operation == Operation::kIntersect ? intersect(levelSet, other, progress)
                                                            : subtract(levelSet, other, progress);
            });
        });
    }
};

}  // namespace

void addCombine(CLI::App& app) {
    auto combine = std::make_shared<Combine>();
    CLI::App& command = addCommand(app, "combine", "combine a.png b.png --union -o both.png",
                                   "Makes one field of two of the same size and spacings, as a signed "
                                   "distance. A mask is taken as it is. "
                                   "A PNG\nthat is written is a mask, white inside.",
                                   [combine] {
                                       if (combine->inputs.size() != 2) refuse("combine: takes two inputs");
                                       Combine one = *combine;
                                       one.second = one.inputs.back();
                                       one.inputs.pop_back();
                                       runEach(one);
                                   });
    combine->addInput(command);
    combine->addVolume(command);
    combine->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    const auto add = [&](const char* name, Combine::Operation operation, const char* description) {
        return command.add_flag_callback(
            name, [combine, operation] { combine->operation = operation; }, description);
    };
    auto* unite = add("--union", Combine::Operation::kUnion, "inside of either");
    auto* intersect = add("--intersect", Combine::Operation::kIntersect, "inside of both");
    add("--subtract", Combine::Operation::kSubtract, "inside of the first and not of the second")
        ->excludes(unite)
        ->excludes(intersect);
    unite->excludes(intersect);
}

}  // namespace quorbin::tool
