#pragma once

#include "quorbin2d/contours.h"

namespace lset::detail {

/// A line or ring in the making, scaled from grid-index units by the spacings. Of equal points in succession
/// one is kept.
class ScaledLine {
 public:
    ScaledLine(double xSpace, double ySpace, std::size_t expected) : xSpace_(xSpace), ySpace_(ySpace) {
        line_.reserve(expected);
    }

    void add(const brin::Vec2<double>& p) {
        const brin::Vec2<double> inWorld(p.x * xSpace_, p.y * ySpace_);
        if (line_.empty() || line_.back() != inWorld) line_.push_back(inWorld);
    }

    quorbin::Ring takeLine() { return std::move(line_); }
    quorbin::Ring takeRing() {
        while (line_.size() > 1 && line_.front() == line_.back()) line_.pop_back();
        return std::move(line_);
    }

 private:
    double xSpace_, ySpace_;
    quorbin::Ring line_;
};

}  // namespace lset::detail
