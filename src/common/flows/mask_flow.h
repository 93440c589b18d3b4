#pragma once

#include <cmath>
#include <cstddef>

#include "common/flows/flow_checks.h"
#include "curvature_flow.h"
#include "smooth_mask.h"

namespace lset::detail {

inline bool hasTwoSides(const double* values, std::size_t count) {
    double inside = NAN, outside = NAN;
    for (std::size_t i = 0; i < count; ++i) {
        double& value = values[i] <= 0 ? inside : outside;
        if (std::isnan(value)) value = values[i];
        if (values[i] != value) return false;
    }
    return !std::isnan(inside) && !std::isnan(outside);
}

template <std::size_t dimensions, class Grid>
bool smoothMaskOf(Grid& grid, const Vector<dimensions>& h, const quorbin::SmoothMaskOptions& options) {
    constexpr int kSteps = 30;
    quorbin::CurvatureFlowOptions flow;
    flow.steps = quorbin::CurvatureFlowOptions::Steps::kExplicit;
    flow.keepsSize = true;
    flow.keepsSides = options.keepsSides;
    flow.progress = options.progress;
    return !quorbin::curvatureFlow(grid, kSteps * longestExplicitStep(h, flow.rate), flow).isEnded;
}

}  // namespace lset::detail
