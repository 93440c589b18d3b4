#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <quorbin.h>

#include "../io/format.h"

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

/// Samples as something that hands them on, block by block and in order, as often as it is asked.
using TakeSamples = std::function<void(const double* samples, std::size_t count)>;
using Samples = std::function<void(const TakeSamples& take)>;

/// Those of an array or of rows, which must outlive them.
Samples samplesOf(const std::vector<double>& samples);
Samples samplesOf(const io::PackedRows& rows);

/// What is known of samples.
struct Statistics {
    double lowest, highest, mean;
};
Statistics statisticsOf(const Samples& samples);

/// Otsu's threshold (1979): the level that splits the samples into two classes with the largest variance
/// between them, half way between the greys on its two sides.
double otsuLevel(const Samples& samples);
double otsuLevel(const std::vector<double>& samples);

/// The values that samples take beside 0, in order: the labels of regions before a background. Refuses what
/// is not whole.
std::vector<double> labelsOf(const Samples& samples);

/// How samples become the values of a field, ≤ 0 inside, once all of them have been looked at. A field is
/// taken as it is, less the level if one is given. A picture of two values is a mask. The outline of a label
/// runs half way between its samples and others, so that it is the same for both neighbours.
class FieldRule {
 public:
    /// note says which level was taken, or stays empty.
    FieldRule(const Samples& samples, bool isField, const FieldOptions& options, std::string& note);

    void apply(const double* samples, std::size_t count, double* values) const;

    /// 0 of a field as it is; labels and ranges have none.
    std::optional<double> level() const { return level_; }

 private:
    std::optional<double> label_;
    std::optional<std::pair<double, double>> between_;
    std::optional<double> level_;
    bool insideAbove_ = false;
};

/// Makes the field of a picture or a volume by such a rule, whose level is returned. Where a volume gets
/// another spacing than its own, its placement changes with it.
std::optional<double> makeField(const io::Image& picture, const FieldOptions& options, FullLevelSet2D& field,
                                std::string& note);
std::optional<double> makeField(io::Image& volume, const FieldOptions& options, FullLevelSet3D& field,
                                std::string& note);

/// Gives a volume the spacings that are asked for, if any.
void respace(io::Image& volume, const FieldOptions& options);

/// Makes the field of a plane of a volume, by the rule of the whole.
void makePart(const io::Image& plane, const FieldRule& rule, FullLevelSet2D& field);

/// The same field of a picture row by row, for which nothing but its rows is held; they must outlive it.
std::optional<double> makeField(const io::PackedPicture& picture, const FieldOptions& options,
                                FieldRows& field, std::string& note);

/// Whether a field has values on both sides of zero.
bool hasCrossing(const FieldRows& field);
bool hasCrossing(const FullLevelSet2D& field);
bool hasCrossing(const FullLevelSet3D& field);

}  // namespace quorbin::fields
