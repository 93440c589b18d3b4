#pragma once

#include <optional>
#include <string>
#include <vector>

struct Spacing {
    double x = 1.0, y = 1.0;
    std::optional<double> z = std::nullopt;  ///< of a volume
};

/// The content of an input file, rows from the top of the file. A picture's samples are grey values, a
/// field's are the values of a level set.
struct Raster {
    std::string format;
    int width = 0, height = 0;
    std::vector<double> samples;
    bool isField = false;
    std::optional<Spacing> spacing;
};
