#pragma once

#include <string>
#include <type_traits>

#include "field_command.h"
#include "fields/grids.h"

namespace quorbin::tool {

/// Refuses a field without an outline, which an operation has left nothing of.
template <class Grid>
void requireCrossing(const FieldCommand& command, const Grid& levelSet) {
    if (!hasCrossing(levelSet))
        throw Failure(kNoCrossing, fmt::format("{}: nothing is left, all is {}", command.input,
                                               levelSet.data()[0] <= 0 ? "inside" : "outside"));
}

/// Refuses fields of unequal sizes or spacings.
template <class Grid>
void requireSameGrid(const FieldCommand& command, const Grid& one, const std::string& second,
                     const Grid& other) {
    const auto told = [](const Grid& grid) {
        const auto [width, height, depth] = sizeOf(grid);
        const auto [hx, hy, hz] = spacingOf(grid);
        return std::is_same_v<Grid, FullLevelSet3D>
                   ? fmt::format("{} × {} × {} with the spacings {}, {} and {}", width, height, depth, hx, hy,
                                 hz)
                   : fmt::format("{} × {} with the spacings {} and {}", width, height, hx, hy);
    };
    if (sizeOf(one) != sizeOf(other) || spacingOf(one) != spacingOf(other))
        refuse("{}: is {}, and {} is {}; bring them to one grid by quorbin convert --resize and --spacing",
               command.input, told(one), second, told(other));
}

/// Reads the input, a picture or a volume, lets change(field) make another one of its field, and writes it.
template <class Change>
void runOnField(const FieldCommand& command, Change change) {
    if (command.isGivenVolume()) {
        Result result(command, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        const io::Image volume = command.readWithCrossing(levelSet);
        change(levelSet);
        requireCrossing(command, levelSet);
        result.write(VolumeDocument{levelSet, volume.placement});
        return;
    }
    Result result(command, Kind::kPicture, "fl2d");
    FullLevelSet2D levelSet;
    command.readWithCrossing(levelSet);
    change(levelSet);
    requireCrossing(command, levelSet);
    result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
}

}  // namespace quorbin::tool
