#include <algorithm>

#include "field_command.h"

namespace quorbin::tool {

FieldCommand::PlaneOfVolume FieldCommand::readPlane(const io::PlaneChoice& choice, bool needsRange) const {
    PlaneOfVolume result;
    std::string note;
    std::optional<FieldRule> rule;
    try {
        std::optional<io::Plane> plane;
        io::PlaneChoice alone = choice;
        alone.ofFieldsAlone = needsRange || !(field.level || field.between);
        if (!field.label)
            plane =
                raw ? io::readRawPlane(file(), *raw, alone, reading) : io::readPlane(file(), alone, reading);
        if (plane) {
            result.plane = std::move(*plane);
            rule.emplace(samplesOf(result.plane.volume.samples), result.plane.volume.isField, field, note);
        } else {
            const io::Image volume = image();
            file().forget();
            rule.emplace(samplesOf(volume.samples), volume.isField, field, note);
            result.plane = io::planeOf(volume, choice);
            if (!volume.isField) {
                const auto [low, high] = std::minmax_element(volume.samples.begin(), volume.samples.end());
                result.range = {*low, *high};
            }
        }
        io::Placement& placement = result.plane.volume.placement;
        fields::respace(result.plane.volume, field);
        const auto [across, down] = io::axesOfPlane(choice.axis);
        result.plane.picture.placement.spacing = {placement.spacing[across], placement.spacing[down], 1};
        makePart(result.plane.picture, *rule, result.field);
    } catch (const Failure& failure) {
        throw naming(input, failure);
    }
    const io::Image& volume = result.plane.volume;
    recordReading(volume, volume.placement.spacing, rule->level(), note);
    reportNotes(volume);
    if (!note.empty()) report("{}: {}", input, note);
    return result;
}

}  // namespace quorbin::tool
