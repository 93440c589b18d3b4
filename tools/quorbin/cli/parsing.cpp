#include "parsing.h"

#include <algorithm>
#include <cstdio>

#include "field_command.h"

namespace quorbin::tool {

namespace {

bool isUsableSpacing(double h) { return h > 1e-100 && h < 1e100; }

/// Two or three whole numbers with commas between them: how many there are, 0 where it is something else.
int parseWhole(const std::string& text, int (&numbers)[3]) {
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%d,%d,%d%c", &numbers[0], &numbers[1], &numbers[2], &rest);
    const bool isWhole = std::count(text.begin(), text.end(), ',') == read - 1 &&
                         text.find_first_not_of("0123456789,-") == std::string::npos && text.back() != ',';
    return (read == 2 || read == 3) && isWhole ? read : 0;
}

}  // namespace

Spacing parseSpacing(const std::string& text) {
    Spacing spacing;
    double z = 0;
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%lf,%lf,%lf%c", &spacing.x, &spacing.y, &z, &rest);
    if (read == 3) spacing.z = z;
    const bool isWhole = read == 3 || (read == 2 && std::count(text.begin(), text.end(), ',') == 1);
    if (!isWhole || !isUsableSpacing(spacing.x) || !isUsableSpacing(spacing.y) ||
        !isUsableSpacing(spacing.z.value_or(1)))
        refuse(
            "--spacing {}: is no spacing; give two numbers from 1e-100 to 1e100, as in 0.5,0.5, and three "
            "for a volume",
            text);
    return spacing;
}

std::array<long long, 3> parseSize(const std::string& text) {
    std::array<long long, 3> size{};
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%lld,%lld,%lld%c", &size[0], &size[1], &size[2], &rest);
    if (read != 3 ||
        !std::all_of(size.begin(), size.end(), [](long long n) { return n >= 1 && n <= kMostAlongAnAxis; }))
        refuse("--size {}: is no size; give three whole numbers, as in 128,128,64", text);
    return size;
}

std::pair<double, double> parseRange(const std::string& text) {
    double low = 0, high = 0;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%lf,%lf%c", &low, &high, &rest) != 2 || !(low <= high))
        refuse("--between {}: is no range; give two numbers, the smaller one first, as in 100,200", text);
    requireUsableLevel(low);
    requireUsableLevel(high);
    return {low, high};
}

double parseLabel(const std::string& text) {
    int label = 0;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%d%c", &label, &rest) != 1)
        refuse("--label {}: is no label; give a whole number, or all", text);
    return label;
}

CountsOfAxes parseCounts(const std::string& text) {
    int counts[3] = {1, 1, 1};
    const int read = parseWhole(text, counts);
    if (read == 0 || !std::all_of(counts, counts + 3, [](int n) { return n >= 1 && n <= kMostAlongAnAxis; }))
        refuse("--resize {}: is no size; give two whole numbers, as in 256,256, and three for a volume",
               text);
    return {{counts[0], counts[1], counts[2]}, read};
}

StepsOfAxes parseSteps(const std::string& text) {
    std::array<double, 3> steps = {1, 1, 1};
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%lf,%lf,%lf%c", &steps[0], &steps[1], &steps[2], &rest);
    const bool isWhole = read >= 1 && read <= 3 && std::count(text.begin(), text.end(), ',') == read - 1;
    if (read == 1) steps[1] = steps[2] = steps[0];
    if (!isWhole || !std::all_of(steps.begin(), steps.end(), isUsableSpacing))
        refuse("--resample {}: is no spacing; give one number for all axes, or one for each, as in 0.5,0.5,2",
               text);
    return {steps, read};
}

PartOfAxes parseCrop(const std::string& text) {
    const std::size_t colon = text.find(':');
    PartOfAxes crop{{}, 0};
    int from[3] = {0, 0, 0}, to[3] = {1, 1, 1};
    if (colon != std::string::npos) {
        const int first = parseWhole(text.substr(0, colon), from);
        const int second = parseWhole(text.substr(colon + 1), to);
        crop.count = first == second ? first : 0;
    }
    if (crop.count == 0)
        refuse(
            "--crop {}: is no part; give the indices of its first sample and those one beyond its last, as "
            "in "
            "10,10:50,50, and three of each for a volume",
            text);
    std::copy(from, from + 3, crop.values.from.begin());
    std::copy(to, to + 3, crop.values.to.begin());
    return crop;
}

}  // namespace quorbin::tool
