#pragma once

#include <optional>
#include <string>

#include <quorbin2d.h>
#include <quorbin3d.h>

#include "formats/volume.h"
#include "raster.h"

/// How a picture or a volume becomes a field.
struct FieldOptions {
    std::optional<double> level;  ///< grey value of the outline; without it the picture's own or Otsu's
    std::optional<bool>
        insideAbove;  ///< whether what is above the level is inside; a picture's default is yes, a field's no
    std::optional<Spacing> spacing;  ///< instead of the file's own
};

/// Otsu's threshold (1979): the level that splits the samples into two classes with the largest variance
/// between them, half way between the greys on its two sides.
double otsuLevel(const std::vector<double>& samples);

/// Makes the field of a raster or a volume: ≤ 0 inside. A field is taken as it is, less the level if one is
/// given. A picture of two values is a mask. note says which level was taken, or stays empty.
void makeField(const Raster& raster, const FieldOptions& options, FullLevelSet2D& field, std::string& note);
void makeField(const Volume& volume, const FieldOptions& options, FullLevelSet3D& field, std::string& note);
