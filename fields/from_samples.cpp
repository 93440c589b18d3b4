#include "from_samples.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <unordered_set>

#include "../io/documents.h"
#include "../io/failure.h"
#include "grids.h"
#include "placing.h"

namespace quorbin::fields {

namespace {

struct Range {
    double lowest, highest;
    bool hasOthers;  // besides these two
};

bool isWhole(double value) { return value == std::trunc(value); }

Range rangeOf(const std::vector<double>& samples) {
    const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
    const double lowest = *low, highest = *high;
    const bool others =
        std::any_of(samples.begin(), samples.end(), [=](double v) { return v != lowest && v != highest; });
    return {lowest, highest, others};
}

}  // namespace

std::vector<double> labelsOf(const std::vector<double>& samples) {
    std::unordered_set<double> found;
    double last = 0;  // neighbours mostly have the same
    for (const double value : samples) {
        if (value == last) continue;
        if (!isWhole(value))
            io::refuse(
                "holds {}, which is not whole and so no label; choose a range by --between LOW,HIGH or a "
                "--level",
                value);
        found.insert(last = value);
    }
    found.erase(0);
    std::vector<double> labels(found.begin(), found.end());
    std::sort(labels.begin(), labels.end());
    return labels;
}

double otsuLevel(const std::vector<double>& samples) {
    const Range range = rangeOf(samples);
    const double span = range.highest - range.lowest;
    if (span == 0) return range.lowest;
    // Whole numbers each have a bin. Others get as many as there may be: the fewer, the further the level may
    // lie from where it belongs.
    constexpr double kMostBins = 65536;
    const bool isEachABin = span < kMostBins && std::all_of(samples.begin(), samples.end(), isWhole);
    const auto bins = static_cast<std::size_t>(isEachABin ? span + 1 : kMostBins);
    const auto lastBin = static_cast<double>(bins - 1);
    std::vector<double> count(bins);
    for (const double v : samples)
        ++count[static_cast<std::size_t>(std::lround((v - range.lowest) / span * lastBin))];

    double total = 0, moment = 0;
    for (std::size_t b = 0; b < bins; ++b) {
        total += count[b];
        moment += static_cast<double>(b) * count[b];
    }
    double below = 0, momentBelow = 0, best = -1;
    std::size_t first = 0, last = 0;  // empty bins between the classes leave a plateau: its middle is taken
    for (std::size_t b = 0; b + 1 < bins; ++b) {
        below += count[b];
        momentBelow += static_cast<double>(b) * count[b];
        const double above = total - below;
        if (below == 0 || above == 0) continue;
        const double difference = momentBelow / below - (moment - momentBelow) / above;
        const double between = below * above * difference * difference;
        if (between > best) {
            best = between;
            first = b;
        }
        if (between == best) last = b;
    }
    return range.lowest + (static_cast<double>(first + last) / 2 + 0.5) * (span / lastBin);
}

namespace {

double chooseLevel(const std::vector<double>& samples, bool isField, std::string& note) {
    if (isField) return 0;
    const Range range = rangeOf(samples);
    if (range.lowest == range.highest) {
        // A mask all of one kind: black is outside.
        note = fmt::format("one value only, {}", range.lowest);
        return range.highest > 0 ? range.highest / 2 : range.highest + 0.5;
    }
    if (!range.hasOthers) {
        note = fmt::format("a mask of the values {:.7g} and {:.7g}", range.lowest, range.highest);
        return (range.lowest + range.highest) / 2;
    }
    const double level = otsuLevel(samples);
    note = fmt::format("level {} (Otsu)", level);
    return level;
}

/// "1, 2 and 3", or the first of many.
std::string listed(const std::vector<double>& labels) {
    constexpr std::size_t kMost = 10;
    const std::size_t shown = labels.size() > kMost ? kMost : labels.size();
    std::string text;
    for (std::size_t i = 0; i < shown; ++i)
        text += fmt::format("{}{}", i == 0 ? "" : i + 1 == labels.size() ? " and " : ", ", labels[i]);
    if (shown < labels.size()) text += fmt::format(" and {} more", labels.size() - shown);
    return text;
}

void requireLabel(const std::vector<double>& samples, double label) {
    const std::vector<double> labels = labelsOf(samples);
    if (label != 0 && !std::binary_search(labels.begin(), labels.end(), label))
        io::refuse("has no label {}; it has 0{}{}", label, labels.empty() ? " alone" : ", ", listed(labels));
}

/// By options in which nothing is left open.
void fillField(const std::vector<double>& samples, const FieldOptions& options, double* field) {
    if (options.label)
        std::transform(samples.begin(), samples.end(), field,
                       [label = *options.label](double value) { return value == label ? -0.5 : 0.5; });
    else if (options.between)
        std::transform(samples.begin(), samples.end(), field,
                       [low = options.between->first, high = options.between->second](double value) {
                           return std::max(low - value, value - high);
                       });
    else
        std::transform(samples.begin(), samples.end(), field,
                       [level = *options.level, insideAbove = *options.insideAbove](double grey) {
                           return insideAbove ? level - grey : grey - level;
                       });
}

bool isOnBothSides(const double* values, std::size_t count) {
    const auto isInside = [](double value) { return value <= 0; };
    return std::any_of(values, values + count, isInside) && !std::all_of(values, values + count, isInside);
}

}  // namespace

FieldOptions settled(const io::Image& whole, FieldOptions options, std::string& note) {
    note.clear();
    if (!options.label && !options.between) {
        if (!options.level) options.level = chooseLevel(whole.samples, whole.isField, note);
        options.insideAbove = options.insideAbove.value_or(!whole.isField);
        return options;
    }
    options.level.reset();
    if (options.label) {
        requireLabel(whole.samples, *options.label);
        note = fmt::format("label {}", *options.label);
    }
    return options;
}

void respace(io::Image& volume, const FieldOptions& options) {
    if (!options.spacing) return;
    if (!options.spacing->z) io::refuse("is a volume; its --spacing is three numbers");
    respace(volume.placement, {options.spacing->x, options.spacing->y, *options.spacing->z});
}

void makePart(const io::Image& plane, const FieldOptions& options, FullLevelSet2D& field) {
    initGrid(field, {plane.width, plane.height, 1}, plane.placement.spacing);
    fillField(plane.samples, options, field.data());
}

std::optional<double> makeField(const io::Image& picture, const FieldOptions& options, FullLevelSet2D& field,
                                std::string& note) {
    const auto [ownX, ownY, none] = picture.placement.spacing;
    const Spacing spacing = options.spacing.value_or(Spacing{ownX, ownY});
    if (spacing.z) io::refuse("is a picture; its --spacing is two numbers");
    initGrid(field, {picture.width, picture.height, 1}, {spacing.x, spacing.y, 1});
    const FieldOptions known = settled(picture, options, note);
    fillField(picture.samples, known, field.data());
    return known.level;
}

std::optional<double> makeField(io::Image& volume, const FieldOptions& options, FullLevelSet3D& field,
                                std::string& note) {
    respace(volume, options);
    initGrid(field, {volume.width, volume.height, volume.depth}, volume.placement.spacing);
    const FieldOptions known = settled(volume, options, note);
    fillField(volume.samples, known, field.data());
    return known.level;
}

bool hasCrossing(const FullLevelSet2D& field) { return isOnBothSides(field.data(), io::pointsOf(field)); }
bool hasCrossing(const FullLevelSet3D& field) { return isOnBothSides(field.data(), io::pointsOf(field)); }

}  // namespace quorbin::fields
