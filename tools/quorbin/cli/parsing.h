#pragma once

#include <array>
#include <string>
#include <utility>

#include "fields/cropping.h"
#include "fields/from_samples.h"

/// Values of options. What cannot be read is refused with the option's name and an example.
namespace quorbin::tool {

/// DX,DY[,DZ]
fields::Spacing parseSpacing(const std::string& text);
/// W,H,D
std::array<long long, 3> parseSize(const std::string& text);
/// LOW,HIGH, of which the second is not the smaller one.
std::pair<double, double> parseRange(const std::string& text);
double parseLabel(const std::string& text);

/// Numbers along x, y and z, of which count are given: 2 for a picture, 3 for a volume, 1 for either.
template <class Values>
struct NumbersOfAxes {
    Values values;
    int count;
};
using CountsOfAxes = NumbersOfAxes<std::array<long long, 3>>;
using StepsOfAxes = NumbersOfAxes<std::array<double, 3>>;
using PartOfAxes = NumbersOfAxes<fields::Crop>;

/// W,H[,D]
CountsOfAxes parseCounts(const std::string& text);
/// DX[,DY[,DZ]]
StepsOfAxes parseSteps(const std::string& text);
/// X0,Y0[,Z0]:X1,Y1[,Z1]
PartOfAxes parseCrop(const std::string& text);

}  // namespace quorbin::tool
