#include <climits>

#include "quorbin2d/distance/march_dense.h"

using namespace lset::detail;

bool quorbin::ensureSignedDistanceFMM(FullLevelSet2D& field, const Progress& progress) {
    if (field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd(progress, [&](const Stretch& whole) { field.march<Watch>(whole); });
    field.ensureSignedDistanceFMM();
    return true;
}
