#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <quorbin.h>

#include "../io/image.h"

namespace quorbin::fields {

/// The distance between neighbouring samples along each axis.
struct Spacing {
    double x = 1.0, y = 1.0;
    std::optional<double> z = std::nullopt;  ///< of a volume
};

/// How a picture or a volume becomes a field.
struct FieldOptions {
    std::optional<double> level;  ///< grey value of the outline; without it the picture's own or Otsu's
    std::optional<bool>
        insideAbove;  ///< whether what is above the level is inside; a picture's default is yes, a field's no
    std::optional<Spacing> spacing;  ///< instead of the file's own

    // In the place of level and insideAbove, at most one of them:
    std::optional<std::pair<double, double>> between;  ///< inside is what is neither below nor above these
    std::optional<double> label;  ///< inside are the samples of this value; the others must be whole, too
};

/// Otsu's threshold (1979): the level that splits the samples into two classes with the largest variance
/// between them, half way between the greys on its two sides.
double otsuLevel(const std::vector<double>& samples);

/// The values that samples take beside 0, in order: the labels of regions before a background. Refuses what
/// is not whole.
std::vector<double> labelsOf(const std::vector<double>& samples);

/// Makes the field of a picture or a volume: ≤ 0 inside. A field is taken as it is, less the level if one is
/// given. A picture of two values is a mask. note says which level was taken, or stays empty. The outline of
/// a label runs half way between its samples and others, so that it is the same for both neighbours. Where a
/// volume gets another spacing than its own, its placement changes with it. Returns the level, 0 of a field
/// as it is; labels and ranges have none.
std::optional<double> makeField(const io::Image& picture, const FieldOptions& options, FullLevelSet2D& field,
                                std::string& note);
std::optional<double> makeField(io::Image& volume, const FieldOptions& options, FullLevelSet3D& field,
                                std::string& note);

/// The options with all that they leave to the samples of a whole, of which a part then becomes what it is in
/// the whole; a level is among them unless labels or ranges take its place. note as above.
FieldOptions settled(const io::Image& whole, FieldOptions options, std::string& note);

/// Gives a volume the spacings that are asked for, if any.
void respace(io::Image& volume, const FieldOptions& options);

/// Makes the field of a plane of a volume, by options that are settled.
void makePart(const io::Image& plane, const FieldOptions& options, FullLevelSet2D& field);

/// Whether a field has values on both sides of zero.
bool hasCrossing(const FullLevelSet2D& field);
bool hasCrossing(const FullLevelSet3D& field);

}  // namespace quorbin::fields
