#include "from_samples.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
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

template <class Is>
bool anyOf(const Samples& samples, Is is) {
    bool found = false;
    samples([&](const double* block, std::size_t count) {
        if (!found) found = std::any_of(block, block + count, is);
    });
    return found;
}

Range rangeOf(const Samples& samples) {
    const Statistics known = statisticsOf(samples);
    const double lowest = known.lowest, highest = known.highest;
    return {lowest, highest, anyOf(samples, [=](double v) { return v != lowest && v != highest; })};
}

}  // namespace

Samples samplesOf(const std::vector<double>& samples) {
    return [&samples](const TakeSamples& take) { take(samples.data(), samples.size()); };
}

Samples samplesOf(const io::PackedRows& rows) {
    return [&rows](const TakeSamples& take) { rows.forEach(take); };
}

Statistics statisticsOf(const Samples& samples) {
    double lowest = HUGE_VAL, highest = -HUGE_VAL, sum = 0;
    std::size_t all = 0;
    samples([&](const double* block, std::size_t count) {
        const auto [low, high] = std::minmax_element(block, block + count);
        lowest = std::min(lowest, *low);
        highest = std::max(highest, *high);
        sum = std::accumulate(block, block + count, sum);
        all += count;
    });
    return {lowest, highest, sum / static_cast<double>(all)};
}

std::vector<double> labelsOf(const Samples& samples) {
    std::unordered_set<double> found;
    double last = 0;  // neighbours mostly have the same
    samples([&](const double* block, std::size_t count) {
        for (const double* value = block; value != block + count; ++value) {
            if (*value == last) continue;
            if (!isWhole(*value))
                io::refuse(
                    "holds {}, which is not whole and so no label; choose a range by --between LOW,HIGH or a "
                    "--level",
                    *value);
            found.insert(last = *value);
        }
    });
    found.erase(0);
    std::vector<double> labels(found.begin(), found.end());
    std::sort(labels.begin(), labels.end());
    return labels;
}

double otsuLevel(const std::vector<double>& samples) { return otsuLevel(samplesOf(samples)); }

double otsuLevel(const Samples& samples) {
    const Range range = rangeOf(samples);
    const double span = range.highest - range.lowest;
    if (span == 0) return range.lowest;
    // Whole numbers each have a bin. Others get as many as there may be: the fewer, the further the level may
    // lie from where it belongs.
    constexpr double kMostBins = 65536;
    const bool isEachABin = span < kMostBins && !anyOf(samples, [](double value) { return !isWhole(value); });
    const auto bins = static_cast<std::size_t>(isEachABin ? span + 1 : kMostBins);
    const auto lastBin = static_cast<double>(bins - 1);
    std::vector<double> count(bins);
    samples([&](const double* block, std::size_t size) {
        for (const double* v = block; v != block + size; ++v)
            ++count[static_cast<std::size_t>(std::lround((*v - range.lowest) / span * lastBin))];
    });

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

double chooseLevel(const Samples& samples, bool isField, std::string& note) {
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
    note = fmt::format("level {:.6g} (Otsu)", level);
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

void requireLabel(const Samples& samples, double label) {
    const std::vector<double> labels = labelsOf(samples);
    if (label != 0 && !std::binary_search(labels.begin(), labels.end(), label))
        io::refuse("has no label {}; it has 0{}{}", label, labels.empty() ? " alone" : ", ", listed(labels));
}

/// The spacing of a picture, given or its own.
Spacing spacingOf(const io::Image& picture, const FieldOptions& options) {
    const auto [ownX, ownY, none] = picture.placement.spacing;
    const Spacing spacing = options.spacing.value_or(Spacing{ownX, ownY});
    if (spacing.z) io::refuse("is a picture; its --spacing is two numbers");
    return spacing;
}

std::optional<double> fillField(const io::Image& image, const FieldOptions& options, double* field,
                                std::string& note) {
    const FieldRule rule(samplesOf(image.samples), image.isField, options, note);
    rule.apply(image.samples.data(), image.samples.size(), field);
    return rule.level();
}

bool isInside(double value) { return value <= 0; }

bool isOnBothSides(const double* values, std::size_t count) {
    return std::any_of(values, values + count, isInside) && !std::all_of(values, values + count, isInside);
}

}  // namespace

FieldRule::FieldRule(const Samples& samples, bool isField, const FieldOptions& options, std::string& note)
    : label_(options.label), between_(options.between) {
    note.clear();
    if (label_) {
        requireLabel(samples, *label_);
        note = fmt::format("label {}", *label_);
    } else if (!between_) {
        level_ = options.level ? *options.level : chooseLevel(samples, isField, note);
        insideAbove_ = options.insideAbove.value_or(!isField);
    }
}

void FieldRule::apply(const double* samples, std::size_t count, double* values) const {
    const auto fill = [&](auto valueOf) { std::transform(samples, samples + count, values, valueOf); };
    if (label_)
        fill([label = *label_](double value) { return value == label ? -0.5 : 0.5; });
    else if (between_)
        fill([low = between_->first, high = between_->second](double value) {
            return std::max(low - value, value - high);
        });
    else if (insideAbove_)
        fill([level = *level_](double grey) { return level - grey; });
    else
        fill([level = *level_](double grey) { return grey - level; });
}

void respace(io::Image& volume, const FieldOptions& options) {
    if (!options.spacing) return;
    if (!options.spacing->z) io::refuse("is a volume; its --spacing is three numbers");
    respace(volume.placement, {options.spacing->x, options.spacing->y, *options.spacing->z});
}

void makePart(const io::Image& plane, const FieldRule& rule, FullLevelSet2D& field) {
    initGrid(field, {plane.width, plane.height, 1}, plane.placement.spacing);
    rule.apply(plane.samples.data(), plane.samples.size(), field.data());
}

std::optional<double> makeField(const io::Image& picture, const FieldOptions& options, FullLevelSet2D& field,
                                std::string& note) {
    const Spacing spacing = spacingOf(picture, options);
    initGrid(field, {picture.width, picture.height, 1}, {spacing.x, spacing.y, 1});
    return fillField(picture, options, field.data(), note);
}

std::optional<double> makeField(io::Image& volume, const FieldOptions& options, FullLevelSet3D& field,
                                std::string& note) {
    respace(volume, options);
    initGrid(field, {volume.width, volume.height, volume.depth}, volume.placement.spacing);
    return fillField(volume, options, field.data(), note);
}

std::optional<double> makeField(const io::PackedPicture& picture, const FieldOptions& options,
                                FieldRows& field, std::string& note) {
    const io::Image& image = picture.image;
    const Spacing spacing = spacingOf(image, options);
    const FieldRule rule(samplesOf(picture.rows), image.isField, options, note);
    const auto width = static_cast<std::size_t>(image.width);
    const auto readSamples = [&rows = picture.rows](int y, double* row) {
        rows.read(static_cast<std::size_t>(y), row);
    };
    field = {image.width, image.height, spacing.x, spacing.y,
             [rule, readSamples, samples = std::vector<double>(width)](int y, double* row) mutable {
                 readSamples(y, samples.data());
                 rule.apply(samples.data(), samples.size(), row);
             }};
    if (options.label) field.readLabels = readSamples;
    return rule.level();
}

bool hasCrossing(const FieldRows& field) {
    std::vector<double> row(static_cast<std::size_t>(field.width));
    bool hasInside = false, hasOutside = false;
    for (int y = 0; y < field.height && !(hasInside && hasOutside); ++y) {
        field.read(y, row.data());
        hasInside = hasInside || std::any_of(row.begin(), row.end(), isInside);
        hasOutside = hasOutside || !std::all_of(row.begin(), row.end(), isInside);
    }
    return hasInside && hasOutside;
}

bool hasCrossing(const FullLevelSet2D& field) { return isOnBothSides(field.data(), io::pointsOf(field)); }
bool hasCrossing(const FullLevelSet3D& field) { return isOnBothSides(field.data(), io::pointsOf(field)); }

}  // namespace quorbin::fields
